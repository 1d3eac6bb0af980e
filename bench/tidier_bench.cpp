// The tree tidier on generated graphs, per node, with Graphviz dot laying out the same tree as
// the peer in the same run.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <string>

#include "graphview/TreeTidier.h"
#include "host/FXEditor.h"
#include "refhost/edit/EditGenerator.h"
#include "refhost/edit/EditPosSource.h"

namespace {

// Generated edits are kept between benchmark runs: building them is not what is measured.
EditPtr edit(uint32_t nodes, bool shared, bool chain = false) {
    static std::map<std::tuple<uint32_t, bool, bool>, EditPtr> cache;
    auto key = std::make_tuple(nodes, shared, chain);
    auto it = cache.find(key);
    if (it != cache.end())
        return it->second;
    GeneratorOptions o;
    o.seed = 7;
    o.nodes = nodes;
    o.sharedLinks = shared ? 0.2 : 0.0;
    o.chain = chain;
    return cache[key] = generateEdit(o);
}

void runTidier(benchmark::State& state, EditPtr e) {
    EditPosSource source(e, VidRouting::Orientations::LeftToRight);
    size_t placed = 0;
    for (auto _ : state) {
        EditGraphIterator it = FXEditor::getIteratorFor(e, IdStamp(1, 0, 1), 1.0, 9);
        TreeTidier tidier(&source, 0.1875, 0.1875);
        benchmark::DoNotOptimize(tidier.run(it, 0, 0));
        placed = source.records().size();
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * placed));
    state.counters["nodes"] = static_cast<double>(placed);
}

void BM_TreeTidier_Plain(benchmark::State& state) {
    runTidier(state, edit(static_cast<uint32_t>(state.range(0)), false));
}
void BM_TreeTidier_SharedNodes(benchmark::State& state) {
    runTidier(state, edit(static_cast<uint32_t>(state.range(0)), true));
}
void BM_TreeTidier_DeepChain(benchmark::State& state) {
    runTidier(state, edit(static_cast<uint32_t>(state.range(0)), false, true));
}

// The peer: dot reads the same tree and writes its layout as plain text.
void BM_Peer_GraphvizDot(benchmark::State& state) {
    if (std::system("command -v dot > /dev/null 2>&1") != 0) {
        state.SkipWithError("dot is not installed (Debian package graphviz)");
        return;
    }
    const uint32_t n = static_cast<uint32_t>(state.range(0));
    std::string path = "/tmp/nodedesk-bench-" + std::to_string(n) + ".dot";
    std::ofstream(path) << graphToDot(*edit(n, false));
    const std::string cmd = "dot -Tplain " + path + " > /dev/null";
    for (auto _ : state)
        if (std::system(cmd.c_str()) != 0)
            state.SkipWithError("dot failed");
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * n));
    std::remove(path.c_str());
}

} // namespace

BENCHMARK(BM_TreeTidier_Plain)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TreeTidier_SharedNodes)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TreeTidier_DeepChain)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Peer_GraphvizDot)
    ->Arg(1000)
    ->Arg(10000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(1);

BENCHMARK_MAIN();
