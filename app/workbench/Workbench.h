// Workbench: the workbench's main window, a panel whose user area holds one plugged-in view
// above an optional time line.
#pragma once

#include <functional>

#include "host/StandardPanel.h"

// A view maker gets the size of the user area and the panel's palette, and returns a new
// widget; the workbench places it in the user area and keeps it sized to it.
class Workbench : public StandardPanel {
public:
    using ViewMaker = std::function<Glob*(const GlobCreationInfo& info)>;

    Workbench(int width, int height);
    ~Workbench() override;
    // Runs once, as the window closes, before anything of it goes.
    void setOnClose(std::function<void()> f) { onClose_ = std::move(f); }
    const char* idstring() const override { return "Workbench"; }

    // Replaces the view; a null maker puts back the welcome view.
    void setView(const ViewMaker& maker);
    Glob* view() const { return view_; }
    // Puts a time line of the given height along the bottom of the user area, under the view;
    // a null maker takes it away. The maker gets the time line's size.
    void setTimeline(const ViewMaker& maker, int height);
    Glob* timeline() const { return timeline_; }
    void resize(double w, double h) override;
    // The window's record, and under "VIEW" the text of its view's own record when the view
    // keeps one (a persistable view).
    void dump(configb& c) override;

private:
    // The user area left to the view: all of it above the time line.
    Zk::Box<int> viewArea() const;
    void layout();

    Glob* view_ = nullptr;
    Glob* timeline_ = nullptr;
    int timelineHeight_ = 0;
    std::function<void()> onClose_;
};
