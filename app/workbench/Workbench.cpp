// Workbench: the main window and its one view.
#include "app/workbench/Workbench.h"

#include "app/workbench/WelcomeView.h"

Workbench::Workbench(int width, int height) : StandardPanel(StandardPanel::InitArgs(width, height)) {
    setResizable(true);
    setMovable(true);
    setTitle(UIString(L"nodedesk"));
    addStandardWidgets(CloseButton);
    setView(nullptr);
}

void Workbench::setView(const ViewMaker& maker) {
    if (view_)
        removeWidget(view_, true);
    Zk::Box<int> ua = getUserArea();
    GlobCreationInfo info(ua.width(), ua.height());
    info.canvas = canvas();
    info.palette = getPalette();
    view_ = maker ? maker(info) : new WelcomeView(info);
    if (view_)
        addChild(view_, UserBottomLeft(0, 0));
    layoutUserArea();
    update();
}

void Workbench::dockLeft(Glob* side) {
    if (docked_)
        removeWidget(docked_, true);
    docked_ = side;
    if (docked_)
        addChild(docked_, UserBottomLeft(0, 0));
    layoutUserArea();
}

void Workbench::resize(double w, double h) {
    StandardPanel::resize(w, h);
    layoutUserArea();
}

void Workbench::layoutUserArea() {
    Zk::Box<int> ua = getUserArea();
    if (docked_) {
        docked_->setPos(ua.x1, ua.y1);
        docked_->setDimensions(docked_->width(), ua.height());
        ua.x1 += docked_->width();
    }
    if (view_) {
        view_->setPos(ua.x1, ua.y1);
        view_->setDimensions(ua.width(), ua.height());
    }
}
