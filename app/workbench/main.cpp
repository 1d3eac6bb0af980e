// nodedesk-workbench: opens an edit in the workbench window with the effect graph view, or with
// --headless --snapshot FILE writes the same picture to a file.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "app/workbench/RoutingWindow.h"
#include "app/workbench/ScriptRunner.h"
#include "app/workbench/TimelineView.h"
#include "app/workbench/TimesList.h"
#include "app/workbench/ViewDump.h"
#include "app/workbench/Workbench.h"
#include "app/workbench/WorkbenchLayout.h"
#include "graphview/FXGraphView.h"
#include "host/Edit.h"
#include "host/EffectTemplateManager.h"
#include "host/GlobManager.h"
#include "host/ToolkitApp.h"
#include "host/UIString.h"
#include "host/Vob.h"
#include "host/VobManager.h"
#include "panels/DDVideoEffectsList.h"
#include "panels/FXGraphTool.h"
#include "refhost/edit/AnyEditFile.h"

namespace {

const char kUsage[] =
    "usage: nodedesk-workbench [EDIT] [--time T] [--headless --snapshot FILE.png] [--size WxH] "
    "[--dump-view FILE.json] [--times T1,T2,... --snapshot-each DIR] [--script FILE.json [--snapshot-each "
    "DIR]] "
    "[--layout FILE]";

// The usage line with the routing panel's flags.
std::string usageLine() {
    return std::string(kUsage) + " " + RoutingWindow::Options::usage();
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

// True when a window can be shown: a display server to talk to, and a platform that draws on it.
bool haveDisplay() {
    const char* platform = std::getenv("QT_QPA_PLATFORM");
    if (platform && (!std::strcmp(platform, "offscreen") || !std::strcmp(platform, "minimal")))
        return false;
    const char* x = std::getenv("DISPLAY");
    const char* wayland = std::getenv("WAYLAND_DISPLAY");
    return (x && *x) || (wayland && *wayland);
}

// The picture of step n (from 1) of a run that writes one per step.
std::string stepSnapshotPath(const std::string& dir, size_t n) {
    char name[32];
    std::snprintf(name, sizeof name, "/step-%03zu.png", n);
    return dir + name;
}

} // namespace

int main(int argc, char** argv) {
    bool headless = false;
    RoutingWindow::Options routingOptions;
    std::string snapshot;
    std::string dumpPath;
    std::string editPath;
    std::vector<double> times;
    std::string snapshotEach;
    std::string scriptPath;
    std::string layoutPath;
    double time = NAN;
    int w = 900, h = 600;
    bool sizeGiven = false;
    for (int i = 1; i < argc; ++i) {
        const std::string a = argv[i];
        if (a == "--help" || a == "-h") {
            std::puts(usageLine().c_str());
            return 0;
        }
        if (a == "--headless") {
            headless = true;
            continue;
        }
        if (a == "--times" || a == "--snapshot-each") {
            if (i + 1 >= argc)
                return fail(a + " needs a value; " + usageLine());
            const std::string v = argv[++i];
            if (a == "--snapshot-each") {
                if (v.empty())
                    return fail("--snapshot-each needs a folder");
                snapshotEach = v;
            } else if (!parseTimesList(v, times)) {
                return fail("--times takes seconds separated by commas, not '" + v + "'");
            }
            continue;
        }
        if (a == "--snapshot" || a == "--size" || a == "--time" || a == "--dump-view" || a == "--script" ||
            a == "--layout") {
            if (i + 1 >= argc)
                return fail(a + " needs a value; " + usageLine());
            const std::string v = argv[++i];
            if (a == "--snapshot") {
                if (v.empty())
                    return fail("--snapshot needs a file name");
                snapshot = v;
            } else if (a == "--script") {
                if (v.empty())
                    return fail("--script needs a file name");
                scriptPath = v;
            } else if (a == "--layout") {
                if (v.empty())
                    return fail("--layout needs a file name");
                layoutPath = v;
            } else if (a == "--dump-view") {
                if (v.empty())
                    return fail("--dump-view needs a file name");
                dumpPath = v;
            } else if (a == "--size") {
                int used = 0;
                if (std::sscanf(v.c_str(), "%dx%d%n", &w, &h, &used) != 2 ||
                    used != static_cast<int>(v.size()) || w < 200 || h < 150 || w > 8000 || h > 8000)
                    return fail("--size takes WIDTHxHEIGHT from 200x150 to 8000x8000, not '" + v + "'");
                sizeGiven = true;
            } else {
                char* end = nullptr;
                time = std::strtod(v.c_str(), &end);
                if (v.empty() || *end != '\0' || !std::isfinite(time))
                    return fail("--time takes a number of seconds, not '" + v + "'");
            }
        } else if (routingOptions.parse(argc, argv, i)) {
        } else if (!a.empty() && a[0] == '-') {
            return fail("unknown flag '" + a + "'; " + usageLine());
        } else if (editPath.empty()) {
            editPath = a;
        } else {
            return fail(std::string("one edit at a time; ") + usageLine());
        }
    }
    if (!times.empty() && snapshotEach.empty())
        return fail("--times writes one picture per step into --snapshot-each DIR; give one");
    if (!times.empty() && !scriptPath.empty())
        return fail("--times and --script each play their own steps; give one of them");
    // A script is read whole before anything opens: a bad one plays no step.
    Script script;
    if (!snapshotEach.empty() && scriptPath.empty() && times.empty())
        return fail("--snapshot-each needs a --script or --times");
    if (!scriptPath.empty()) {
        std::string error;
        auto known = [](const std::string& name) {
            return EffectTemplateManager::instance().find(toWide(String(name.c_str()))) != nullptr;
        };
        if (!loadScript(scriptPath, script, error, known))
            return fail(error);
        std::error_code ec;
        if (!snapshotEach.empty() && !std::filesystem::create_directories(snapshotEach, ec) && ec)
            return fail("can't make the folder " + snapshotEach);
        if (!haveDisplay())
            headless = true;
    }
    // Headless, something must come out: a picture, the view's state or the routing panel's picture.
    if (headless && snapshot.empty() && snapshotEach.empty() && dumpPath.empty() &&
        routingOptions.commands.empty() && scriptPath.empty())
        return fail("--headless draws only into a --snapshot FILE; give one");
    if (!headless && snapshot.empty() && !haveDisplay())
        return fail("no display to open a window on; use --headless --snapshot FILE.png");
    if (editPath.empty())
        editPath = std::string(NODEDESK_SOURCE_DIR) + "/samples/showcase.edit.json";
    if (headless)
        setenv("QT_QPA_PLATFORM", "offscreen", 1);

    std::string error;
    EditPtr edit = AnyEditFile::open(editPath, error);
    if (!edit)
        return fail(error);
    Zk::Ptr<Vob> vob = VobManager::instance().vobFor(edit, "workbench");
    vob->storeCurrentTime(std::isnan(time) ? edit->getStartTime() : time);

    ensureToolkitApplication();
    // The screen layout of the last interactive session: windows, places, sizes, the view's zoom.
    // Headless runs read a layout only when given one, and never write one.
    WorkbenchLayout layout(layoutPath);
    if (!headless || !layoutPath.empty()) {
        std::string layoutError;
        if (!layout.read(layoutError))
            std::fprintf(stderr, "nodedesk-workbench: layout ignored: %s\n", layoutError.c_str());
    }
    XY<int> place = glib_getPosForWindow(w, h);
    if (auto saved = layout.workbench(); saved && !sizeGiven) {
        saved->in("W", w);
        saved->in("H", h);
        place = glib_getPosForWindow(w, h);
        saved->in("X", place.x);
        saved->in("Y", place.y);
    }
    auto* bench = new Workbench(w, h);
    bench->setTitle(UIString(L"nodedesk \u2014 " + edit->name().str()));
    // The time line first, so that the graph takes the room above it.
    TimelineView* timeline = nullptr;
    bench->setTimeline(
        [&](const GlobCreationInfo& info) -> Glob* { return timeline = new TimelineView(info, vob.get()); },
        TimelineView::preferredHeight(*edit));
    FXGraphView* graph = nullptr;
    bench->setView([&](const GlobCreationInfo& info) -> Glob* {
        FXGraphTool* tool = layout.makeTool(info, vob.get());
        graph = tool->view();
        return tool;
    });
    if (timeline) {
        timeline->watch(graph);
        timeline->setPath(editPath);
        timeline->setOpenedListener([&] {
            bench->setTitle(UIString(L"nodedesk \u2014 " + edit->name().str()));
            if (graph)
                fitGraph(*graph);
        });
    }
    Glob::setupRootPos(bench->canvas(), place);
    GlobManager::instance().realize(bench);
    layout.restoreOthers();
    auto routing = std::make_unique<RoutingWindow>(vob.get(), bench);
    bench->addStandardWidgets(StandardPanel::MenuButton);
    routing->addToggleTo(bench);
    if (graph && !layout.restoresView()) {
        fitGraph(*graph);
    } else if (graph) {
        // The tool keeps the saved centre without applying it; the workbench puts the view back
        // where it was.
        graph->setViewCentre(FXGraphTool::savedCentreX(), FXGraphTool::savedCentreY());
        graph->update();
    }
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
    // One picture per playhead move, as the host would move it.
    if (!times.empty()) {
        std::error_code made;
        std::filesystem::create_directories(snapshotEach, made);
        if (made) {
            std::fprintf(stderr, "nodedesk-workbench: can't make %s\n", snapshotEach.c_str());
            rc = 1;
        }
    }
    for (size_t n = 0; rc == 0 && n < times.size(); ++n) {
        vob->setCurrentTime(times[n]);
        processToolkitEvents();
        const std::string file = stepSnapshotPath(snapshotEach, n + 1);
        if (!bench->saveSnapshot(file.c_str())) {
            std::fprintf(stderr, "nodedesk-workbench: can't write %s\n", file.c_str());
            rc = 1;
        }
    }
    if (!snapshot.empty() && !bench->saveSnapshot(snapshot.c_str())) {
        std::fprintf(stderr, "nodedesk-workbench: can't write %s\n", snapshot.c_str());
        rc = 1;
    }
    if (!scriptPath.empty() && rc == 0) {
        // A scripted session ends with its last step.
        std::string error;
        auto* tool = dynamic_cast<FXGraphTool*>(bench->view());
        EffectsBrowser* templates = tool ? tool->templatesList() : nullptr;
        ScriptRunner runner({bench, graph, templates, vob.get()}, snapshotEach);
        rc = runner.run(script, error);
        if (rc != ScriptRunner::Played)
            std::fprintf(stderr, "nodedesk-workbench: %s: %s\n", scriptPath.c_str(), error.c_str());
    } else if (!headless && rc == 0) {
        // The layout is written as the workbench closes, while its windows are all still there.
        bool saved = false;
        auto saveLayout = [&saved, &layout] {
            std::string layoutError;
            if (!saved && !layout.save(layoutError))
                std::fprintf(stderr, "nodedesk-workbench: %s\n", layoutError.c_str());
            saved = true;
        };
        bench->setOnClose(saveLayout);
        rc = runToolkitApplication();
        if (is_good_glob_ptr(bench)) {
            saveLayout();
            bench->setOnClose(nullptr);
        }
    }
    routing.reset();
    GlobManager::instance().destroyAll();
    VobManager::instance().reset();
    return rc;
}
