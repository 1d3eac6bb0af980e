// RoutingWindow: the workbench's routing panel in a window of its own beside the main window.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/LightweightString.h"
#include "host/XY.h"

class CompoundEffectMonitor;
class Glob;
class MenuGlob;
class MultiTrackRoutingView;
class Vob;

// Holds the effect monitor of the workbench's Vob, which the panel follows and which outlives
// it, and opens, closes and drives the panel. Scripted sessions and the command line choose a
// tab, click rows and drag them through the same pointer events a user's hand would make.
class RoutingWindow {
public:
    // What the command line asks of the routing panel: script commands, in the order given.
    struct Options {
        std::vector<std::string> commands;
        // Takes the routing flag at argv[i] (and its value); false if argv[i] is none of them or
        // its value is missing.
        bool parse(int argc, char** argv, int& i);
        static const char* usage();
    };

    RoutingWindow(Vob* vob, Glob* beside);
    ~RoutingWindow();
    RoutingWindow(const RoutingWindow&) = delete;
    RoutingWindow& operator=(const RoutingWindow&) = delete;

    bool isOpen() const;
    void open();
    void close();
    void toggle();
    MultiTrackRoutingView* panel() const;
    // Gives a panel's menu the item that opens and closes the routing panel.
    void addToggleTo(MenuGlob* menu);

    // Chooses the tab with that label, as a click on it would; false if there is none.
    bool selectTab(const WString& label);
    // A click on a row of the audio table; false if no audio table is up or no such row.
    bool clickRow(int row);
    // Drags a row onto another, a half line at a time; false as for clickRow.
    bool dragRow(int from, int to);
    // One command of a script: "routing" (opens the panel), "routing-toggle", "routing-tab
    // LABEL", "routing-click ROW", "routing-drag FROM TO", "routing-snapshot FILE". Every
    // command but the toggle opens the panel first. False with a message when it fails or is
    // no routing command.
    bool runCommand(const std::string& line, std::string& error);
    // Carries out the options' commands in order; false with the message of the first failure.
    bool run(const Options& options, std::string& error);

private:
    Vob* vob_;
    Glob* beside_;
    std::unique_ptr<CompoundEffectMonitor> monitor_;
    MultiTrackRoutingView* panel_ = nullptr;
};
