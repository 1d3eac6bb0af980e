// WorkbenchLayout: the workbench's part of the saved screen layout.
#include "app/workbench/WorkbenchLayout.h"

#include "app/workbench/Workbench.h"
#include "host/ScreenLayout.h"
#include "panels/FXGraphTool.h"

WorkbenchLayout::WorkbenchLayout(const std::string& path)
    : path_(path.empty() ? ScreenLayout::defaultPath().str() : path) {
    ScreenLayout::registerMaker(FXGraphTool::getUITypeString(), FXGraphTool::make);
    // The workbench window is made by the program itself; its record is only read here.
    ScreenLayout::registerMaker("Workbench", [](GlobCreationInfo*) { return static_cast<Glob*>(nullptr); });
}

WorkbenchLayout::~WorkbenchLayout() {
    ScreenLayout::unregisterMaker("Workbench");
}

bool WorkbenchLayout::read(std::string& error) {
    std::vector<configb> windows;
    String message;
    if (!ScreenLayout::read(String(path_), windows, message)) {
        error = message.str();
        return false;
    }
    for (configb& c : windows) {
        String type;
        c.in("TYPE", type);
        if (type != "Workbench") {
            others_.push_back(std::move(c));
            continue;
        }
        if (workbench_)
            continue;
        String viewText, why;
        configb view;
        if (c.in("VIEW", viewText) == 0 && !viewText.empty()) {
            if (!configb::fromText(viewText, view, why)) {
                error = path_ + ": the workbench's view: " + why.str();
                others_.clear();
                return false;
            }
            view_ = view;
        }
        workbench_ = c;
    }
    return true;
}

FXGraphTool* WorkbenchLayout::makeTool(const GlobCreationInfo& info, Vob* vob) const {
    if (view_) {
        GlobCreationInfo saved = info;
        saved.config = *view_;
        return static_cast<FXGraphTool*>(FXGraphTool::make(&saved));
    }
    FXGraphTool::InitArgs args(info.width, info.height, vob);
    args.canvas = info.canvas;
    args.palette = info.palette;
    return new FXGraphTool(args);
}

void WorkbenchLayout::restoreOthers() const {
    ScreenLayout::restore(others_);
}

bool WorkbenchLayout::save(std::string& error) const {
    String message;
    if (!ScreenLayout::save(String(path_), message)) {
        error = message.str();
        return false;
    }
    return true;
}
