// Workbench: the workbench's main window, a panel whose user area holds one plugged-in view.
#pragma once

#include <functional>

#include "host/StandardPanel.h"

// A view maker gets the size of the user area and the panel's palette, and returns a new
// widget; the workbench places it in the user area and keeps it sized to it.
class Workbench : public StandardPanel {
public:
    using ViewMaker = std::function<Glob*(const GlobCreationInfo& info)>;

    Workbench(int width, int height);
    const char* idstring() const override { return "Workbench"; }

    // Replaces the view; a null maker puts back the welcome view.
    void setView(const ViewMaker& maker);
    Glob* view() const { return view_; }
    // Docks a widget along the left of the user area at its own width; the view takes the rest.
    void dockLeft(Glob* side);
    Glob* docked() const { return docked_; }
    void resize(double w, double h) override;

private:
    void layoutUserArea();
    Glob* view_ = nullptr;
    Glob* docked_ = nullptr;
};
