// nodedesk-workbench: opens an edit in the workbench window with the effect graph view, or with
// --headless --snapshot FILE writes the same picture to a file.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "app/workbench/RoutingWindow.h"
#include "app/workbench/ViewDump.h"
#include "app/workbench/Workbench.h"
#include "graphview/FXGraphView.h"
#include "host/Edit.h"
#include "host/GlobManager.h"
#include "host/ToolkitApp.h"
#include "host/UIString.h"
#include "host/Vob.h"
#include "host/VobManager.h"
#include "refhost/edit/AnyEditFile.h"

namespace {

int usage() {
    std::fprintf(
        stderr,
        "usage: nodedesk-workbench [EDIT] [--time T] [--headless] [--snapshot FILE] [--size WxH] [--dump-view FILE.json] %s\n",
        RoutingWindow::Options::usage());
    return 2;
}

int fail(const std::string& message) {
    std::fprintf(stderr, "nodedesk-workbench: %s\n", message.c_str());
    return 2;
}

// Opens on the whole graph: zoomed so that it fits the window with a margin, centred on it.
void fitGraph(FXGraphView& graph) {
    if (graph.nodes().empty())
        return;
    graph.updateMinAndMaxPositions(); // the canvas the scale is worked out on
    const Zk::Box<double> ext = graph.getGraphExtents();
    const Zk::Box<int> window = graph.getWindowPos();
    const double margin = 0.9;
    const double wanted = margin * std::min(window.width() / std::max(ext.x2 - ext.x1, 1e-9),
                                            window.height() / std::max(ext.y2 - ext.y1, 1e-9));
    const double s0 = graph.calcPhysicalScale(0.0), s1 = graph.calcPhysicalScale(1.0);
    const double zoom = s1 > s0 ? std::clamp((wanted - s0) / (s1 - s0), 0.0, 1.0) : 0.0;
    graph.setViewZoom(zoom);
    graph.setViewCentre((ext.x1 + ext.x2) * 0.5, (ext.y1 + ext.y2) * 0.5);
    graph.update();
}

} // namespace

int main(int argc, char** argv) {
    bool headless = false;
    RoutingWindow::Options routingOptions;
    std::string snapshot;
    std::string dumpPath;
    std::string editPath = std::string(NODEDESK_SOURCE_DIR) + "/samples/showcase.edit.json";
    double time = NAN;
    int w = 900, h = 600;
    for (int i = 1; i < argc; ++i) {
        if (!std::strcmp(argv[i], "--headless")) {
            headless = true;
        } else if (!std::strcmp(argv[i], "--snapshot") && i + 1 < argc) {
            snapshot = argv[++i];
        } else if (!std::strcmp(argv[i], "--dump-view") && i + 1 < argc) {
            dumpPath = argv[++i];
        } else if (!std::strcmp(argv[i], "--size") && i + 1 < argc) {
            if (std::sscanf(argv[++i], "%dx%d", &w, &h) != 2 || w < 200 || h < 150 || w > 8000 || h > 8000)
                return usage();
        } else if (!std::strcmp(argv[i], "--time") && i + 1 < argc) {
            char* end = nullptr;
            time = std::strtod(argv[++i], &end);
            if (*end != '\0' || !std::isfinite(time))
                return fail(std::string("--time takes a number of seconds, not '") + argv[i] + "'");
        } else if (routingOptions.parse(argc, argv, i)) {
        } else if (argv[i][0] != '-') {
            editPath = argv[i];
        } else {
            return usage();
        }
    }
    if (headless)
        setenv("QT_QPA_PLATFORM", "offscreen", 1);

    std::string error;
    EditPtr edit = AnyEditFile::open(editPath, error);
    if (!edit)
        return fail(error);
    Zk::Ptr<Vob> vob = VobManager::instance().vobFor(edit, "workbench");
    vob->storeCurrentTime(std::isnan(time) ? edit->getStartTime() : time);

    ensureToolkitApplication();
    auto* bench = new Workbench(w, h);
    bench->setTitle(UIString(L"nodedesk \u2014 " + edit->name().str()));
    FXGraphView* graph = nullptr;
    bench->setView([&](const GlobCreationInfo& info) -> Glob* {
        FXGraphView::InitArgs args(info.width, info.height, vob.get(), 1);
        args.palette = info.palette;
        return graph = new FXGraphView(args);
    });
    Glob::setupRootPos(bench->canvas(), glib_getPosForWindow(w, h));
    GlobManager::instance().realize(bench);
    auto routing = std::make_unique<RoutingWindow>(vob.get(), bench);
    bench->addStandardWidgets(StandardPanel::MenuButton);
    routing->addToggleTo(bench);
    if (graph)
        fitGraph(*graph);
    if (!dumpPath.empty()) {
        // What a person would see: the stills, boxes and flags of a drawn view.
        processToolkitEvents();
        if (graph)
            graph->draw();
        std::string error;
        const FXGraphView* views[] = {graph};
        if (!writeViewDump(views, graph ? 1 : 0, dumpPath, error)) {
            GlobManager::instance().destroyAll();
            VobManager::instance().reset();
            return fail(error);
        }
    }

    int rc = 0;
    std::string routingError;
    if (!routing->run(routingOptions, routingError)) {
        std::fprintf(stderr, "nodedesk-workbench: %s\n", routingError.c_str());
        rc = 1;
    }
    if (!snapshot.empty() && !bench->saveSnapshot(snapshot.c_str())) {
        std::fprintf(stderr, "nodedesk-workbench: can't write %s\n", snapshot.c_str());
        rc = 1;
    }
    if (!headless && rc == 0)
        rc = runToolkitApplication();
    routing.reset();
    GlobManager::instance().destroyAll();
    VobManager::instance().reset();
    return rc;
}
