// RoutingWindow: the workbench's routing panel in a window of its own beside the main window.
#pragma once

#include <memory>
#include <string>

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
    // What the command line asks of the routing panel.
    struct Options {
        bool open = false;
        std::wstring tab;
        std::string snapshot;
        int clickRow = -1;
        int dragFrom = -1, dragTo = -1;
        // Takes the routing flags at argv[i] (and their values); false if argv[i] is none of them.
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
    // Carries out the options; false with a message for what failed.
    bool run(const Options& options, std::string& error);

private:
    Vob* vob_;
    Glob* beside_;
    std::unique_ptr<CompoundEffectMonitor> monitor_;
    MultiTrackRoutingView* panel_ = nullptr;
};
