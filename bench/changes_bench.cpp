// What the view does when the playhead moves over a generated 1,000-node graph: a move inside the
// span of the node list (the stills repainted, no rebuild), the same move while the transport
// runs fast (nothing done), and a move across a cut (rebuild, tidy and repaint).
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <memory>

#include "graphnodes/FXGraphViewNode.h"
#include "graphview/FXGraphView.h"
#include "host/Canvas.h"
#include "host/ToolkitApp.h"
#include "host/TransitStatus.h"
#include "host/Vob.h"
#include "host/VobManager.h"
#include "refhost/edit/EditGenerator.h"

namespace {

// A generated graph whose one event is cut in two at `cut`: the same graph on both sides, so a
// move across the cut rebuilds a list of the same size.
struct CutGraph {
    explicit CutGraph(uint32_t nodes, const char* name) {
        setenv("QT_QPA_PLATFORM", "offscreen", 0);
        ensureToolkitApplication();
        GeneratorOptions o;
        o.seed = 11;
        o.nodes = nodes;
        edit = generateEdit(o);
        for (int c = 0; c < edit->numChans(); ++c) {
            auto& events = edit->chan(c).cel->events();
            if (events.size() == 1 && events[0].kind == CelEvent::Graph && events[0].end > 2 * cut) {
                CelEvent second = events[0];
                events[0].end = second.start = cut;
                events.push_back(second);
            }
        }
        vob = VobManager::instance().vobFor(edit, name);
        vob->storeCurrentTime(1.0);
        view = std::make_unique<FXGraphView>(FXGraphView::InitArgs(1280, 720, vob.get(), 1));
        view->calcMorphologyExtents(1.0);
        view->draw();
    }
    ~CutGraph() {
        view.reset();
        VobManager::instance().reset();
    }
    static constexpr double cut = 2.0;
    EditPtr edit;
    Zk::Ptr<Vob> vob;
    std::unique_ptr<FXGraphView> view;
};

void BM_PlayheadInsideSpan(benchmark::State& state) {
    CutGraph g(static_cast<uint32_t>(state.range(0)), "bench-inside");
    const unsigned builds = g.view->nodeListBuilds();
    int frame = 0;
    for (auto _ : state)
        g.vob->setCurrentTime(1.0 + 0.04 * (++frame % 20));
    if (g.view->nodeListBuilds() != builds || g.view->lastRefresh() != FXGraphView::Refresh::Stills)
        state.SkipWithError("a move inside the span did more than repaint the stills");
    state.counters["nodes"] = static_cast<double>(g.view->nodes().size());
}

void BM_PlayheadInsideSpan_FastTransport(benchmark::State& state) {
    CutGraph g(static_cast<uint32_t>(state.range(0)), "bench-fast");
    g.vob->setRecording(true);
    TransitStatus::manager().setSpeed(4 * 1024);
    int frame = 0;
    for (auto _ : state)
        g.vob->setCurrentTime(1.0 + 0.04 * (++frame % 20));
    TransitStatus::manager().setSpeed(0);
    g.vob->setRecording(false);
    if (g.view->lastRefresh() != FXGraphView::Refresh::Nothing)
        state.SkipWithError("a fast transport was followed");
}

void BM_PlayheadAcrossCut(benchmark::State& state) {
    CutGraph g(static_cast<uint32_t>(state.range(0)), "bench-across");
    int frame = 0;
    for (auto _ : state) {
        g.vob->setCurrentTime(++frame % 2 ? CutGraph::cut + 0.5 : 1.0);
        g.view->draw();
    }
    if (g.view->lastRefresh() != FXGraphView::Refresh::Rebuild)
        state.SkipWithError("a move across the cut did not rebuild");
    state.counters["nodes"] = static_cast<double>(g.view->nodes().size());
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * g.view->nodes().size()));
}

// After a rebuild in manual mode: the cure for nodes on one point, through the hash of points
// and by the pairwise scan that tidies again for every node still sharing a point.
void coincident(benchmark::State& state, bool byScan) {
    CutGraph g(static_cast<uint32_t>(state.range(0)), byScan ? "bench-coincident-scan" : "bench-coincident");
    for (auto _ : state) {
        state.PauseTiming();
        for (const auto& n : g.view->nodes())
            n->setPos(0.0, 0.0, false);
        state.ResumeTiming();
        if (byScan)
            g.view->checkForCoincidentNodesByScan();
        else
            g.view->checkForCoincidentNodes();
    }
    state.counters["nodes"] = static_cast<double>(g.view->nodes().size());
}

void BM_CoincidentNodes_Hashed(benchmark::State& state) {
    coincident(state, false);
}
void BM_CoincidentNodes_PairwiseScan(benchmark::State& state) {
    coincident(state, true);
}

} // namespace

BENCHMARK(BM_CoincidentNodes_Hashed)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CoincidentNodes_PairwiseScan)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PlayheadInsideSpan)->Arg(1000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_PlayheadInsideSpan_FastTransport)->Arg(1000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_PlayheadAcrossCut)->Arg(1000)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
