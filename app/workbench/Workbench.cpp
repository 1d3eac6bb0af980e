// Workbench: the main window and its one view.
#include "app/workbench/Workbench.h"

#include "app/workbench/WelcomeView.h"

Workbench::Workbench(int width, int height) : StandardPanel(StandardPanel::InitArgs(width, height)) {
    setResizable(true);
    setMovable(true);
    setPersistable(true);
    setTitle(UIString(L"nodedesk"));
    addStandardWidgets(CloseButton);
    setView(nullptr);
}

Workbench::~Workbench() {
    if (auto f = std::move(onClose_))
        f();
}

void Workbench::setView(const ViewMaker& maker) {
    if (view_ && is_good_glob_ptr(view_))
        removeWidget(view_, true);
    Zk::Box<int> ua = getUserArea();
    GlobCreationInfo info(ua.width(), ua.height());
    info.canvas = canvas();
    info.palette = getPalette();
    view_ = maker ? maker(info) : new WelcomeView(info);
    if (view_)
        addChild(view_, UserBottomLeft(0, 0));
    update();
}

void Workbench::dump(configb& c) {
    Glob::dump(c);
    if (view_ && is_good_glob_ptr(view_) && view_->isPersistable()) {
        configb view;
        view_->dump(view);
        c.set("VIEW", view.toText());
    }
}

void Workbench::resize(double w, double h) {
    StandardPanel::resize(w, h);
    if (view_ && !is_good_glob_ptr(view_))
        view_ = nullptr; // closed from its own title row
    if (view_) {
        Zk::Box<int> ua = getUserArea();
        view_->setPos(ua.x1, ua.y1);
        view_->setDimensions(ua.width(), ua.height());
    }
}
