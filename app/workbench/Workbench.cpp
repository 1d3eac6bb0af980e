// Workbench: the main window: its view above, the time line below.
#include "app/workbench/Workbench.h"

#include <algorithm>

#include "app/workbench/WelcomeView.h"

Workbench::Workbench(int width, int height) : StandardPanel(StandardPanel::InitArgs(width, height)) {
    setResizable(true);
    setMovable(true);
    setPersistable(true);
    setTitle(UIString(L"nodedesk"));
    addStandardWidgets(CloseButton);
    setView(nullptr);
}

Zk::Box<int> Workbench::viewArea() const {
    Zk::Box<int> ua = getUserArea();
    if (timeline_)
        ua.y1 = std::min(ua.y2, ua.y1 + timelineHeight_);
    return ua;
}

Workbench::~Workbench() {
    if (auto f = std::move(onClose_))
        f();
}

void Workbench::setView(const ViewMaker& maker) {
    if (view_ && is_good_glob_ptr(view_))
        removeWidget(view_, true);
    const Zk::Box<int> area = viewArea();
    GlobCreationInfo info(area.width(), area.height());
    info.canvas = canvas();
    info.palette = getPalette();
    view_ = maker ? maker(info) : new WelcomeView(info);
    if (view_)
        addChild(view_, BottomLeft(area.x1, area.y1));
    layout();
    update();
}

void Workbench::setTimeline(const ViewMaker& maker, int height) {
    if (timeline_)
        removeWidget(timeline_, true);
    const Zk::Box<int> ua = getUserArea();
    // The view keeps at least three fifths of the window.
    timelineHeight_ = maker ? std::clamp(height, 0, ua.height() * 2 / 5) : 0;
    if (maker) {
        GlobCreationInfo info(ua.width(), timelineHeight_);
        info.canvas = canvas();
        info.palette = getPalette();
        timeline_ = maker(info);
        if (timeline_)
            addChild(timeline_, BottomLeft(ua.x1, ua.y1));
    }
    layout();
    update();
}

void Workbench::layout() {
    if (view_ && !is_good_glob_ptr(view_))
        view_ = nullptr; // closed from its own title row
    const Zk::Box<int> ua = getUserArea();
    if (timeline_) {
        timeline_->setPos(ua.x1, ua.y1);
        timeline_->setDimensions(ua.width(), timelineHeight_);
    }
    if (view_) {
        const Zk::Box<int> v = viewArea();
        view_->setPos(v.x1, v.y1);
        view_->setDimensions(v.width(), v.height());
    }
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
    layout();
}
