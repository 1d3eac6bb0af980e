// The tree tidier on generated graphs, per node, with Graphviz dot laying out the same trees as
// the peer and the first tidier as the baseline, both in the same run and both before the tidier,
// so that each tidier line carries its ratios to them:
//   s/node    the time per node
//   x_dot     how many times faster than dot on the same tree (where dot ran)
//   x_first   how many times faster than the first tidier on the same tree
//   x_plain   for shared-node graphs, their time over that of a plain tree of the same size
//   x_walk    for plain trees, the time over that of BM_HostWalk on the same tree
// BM_HostWalk is the part of it all that is the host's: the iterator and the source alone.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "graphview/TreeTidier.h"
#include "graphview/TreeTidierReference.h"
#include "host/FXEditor.h"
#include "refhost/edit/EditGenerator.h"
#include "refhost/edit/EditPosSource.h"

namespace {

enum class Shape { Plain, Shared, Chain };

// Generated edits are kept between benchmark runs: building them is not what is measured.
EditPtr edit(uint32_t nodes, Shape shape) {
    static std::map<std::pair<uint32_t, Shape>, EditPtr> cache;
    auto key = std::make_pair(nodes, shape);
    auto it = cache.find(key);
    if (it != cache.end())
        return it->second;
    GeneratorOptions o;
    o.seed = 7;
    o.nodes = nodes;
    o.sharedLinks = shape == Shape::Shared ? 0.2 : 0.0;
    o.chain = shape == Shape::Chain;
    return cache[key] = generateEdit(o);
}

// Seconds per layout, by tree, of what has run so far.
std::map<std::pair<uint32_t, Shape>, double>& dotSeconds() {
    static std::map<std::pair<uint32_t, Shape>, double> m;
    return m;
}
std::map<std::pair<uint32_t, Shape>, double>& firstSeconds() {
    static std::map<std::pair<uint32_t, Shape>, double> m;
    return m;
}
std::map<uint32_t, double>& walkSeconds() {
    static std::map<uint32_t, double> m;
    return m;
}
std::map<std::pair<uint32_t, Shape>, double>& tidierSeconds() {
    static std::map<std::pair<uint32_t, Shape>, double> m;
    return m;
}

// Lays the tree out over and over with one source, as a view does: the records are made by a run
// before the measured ones, as the view makes them with its nodes.
template <class Tidier>
void runTidier(benchmark::State& state, Shape shape, std::map<std::pair<uint32_t, Shape>, double>& log) {
    const uint32_t n = static_cast<uint32_t>(state.range(0));
    const auto key = std::make_pair(n, shape);
    EditPtr e = edit(n, shape);
    EditPosSource source(e, VidRouting::Orientations::LeftToRight);
    auto once = [&] {
        EditGraphIterator it = FXEditor::getIteratorFor(e, IdStamp(1, 0, 1), 1.0, 9);
        Tidier tidier(&source, 0.1875, 0.1875);
        return tidier.run(it, 0, 0);
    };
    once();
    const size_t placed = source.records().size();
    const auto start = std::chrono::steady_clock::now();
    for (auto _ : state)
        benchmark::DoNotOptimize(once());
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count() /
                           static_cast<double>(state.iterations());
    log[key] = seconds;

    using C = benchmark::Counter;
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * placed));
    state.counters["nodes"] = static_cast<double>(placed);
    state.counters["s/node"] = C(static_cast<double>(placed), C::kIsIterationInvariantRate | C::kInvert);
    if (auto it = dotSeconds().find(key); it != dotSeconds().end())
        state.counters["x_dot"] = it->second / seconds;
    if (&log != &firstSeconds())
        if (auto it = firstSeconds().find(key); it != firstSeconds().end())
            state.counters["x_first"] = it->second / seconds;
    if (shape == Shape::Shared)
        if (auto it = log.find(std::make_pair(n, Shape::Plain)); it != log.end())
            state.counters["x_plain"] = seconds / it->second;
    if (shape == Shape::Plain)
        if (auto it = walkSeconds().find(n); it != walkSeconds().end())
            state.counters["x_walk"] = seconds / it->second;
}

void BM_TreeTidier_Plain(benchmark::State& state) {
    runTidier<TreeTidier>(state, Shape::Plain, tidierSeconds());
}
void BM_TreeTidier_SharedNodes(benchmark::State& state) {
    runTidier<TreeTidier>(state, Shape::Shared, tidierSeconds());
}
void BM_TreeTidier_DeepChain(benchmark::State& state) {
    runTidier<TreeTidier>(state, Shape::Chain, tidierSeconds());
}
void BM_FirstTidier_Plain(benchmark::State& state) {
    runTidier<TreeTidierReference>(state, Shape::Plain, firstSeconds());
}
void BM_FirstTidier_SharedNodes(benchmark::State& state) {
    runTidier<TreeTidierReference>(state, Shape::Shared, firstSeconds());
}
void BM_FirstTidier_DeepChain(benchmark::State& state) {
    runTidier<TreeTidierReference>(state, Shape::Chain, firstSeconds());
}

// The floor under any tidier on this host: the iterator's descent of the same tree, once per
// path, with the source asked for each node's record, and nothing else.
void BM_HostWalk_Plain(benchmark::State& state) {
    const uint32_t n = static_cast<uint32_t>(state.range(0));
    EditPtr e = edit(n, Shape::Plain);
    EditPosSource source(e, VidRouting::Orientations::LeftToRight);
    auto once = [&] {
        EditGraphIterator it = FXEditor::getIteratorFor(e, IdStamp(1, 0, 1), 1.0, 9);
        size_t visits = 0;
        std::vector<std::pair<unsigned, unsigned>> stack{{it.getNode(-1)->getNumInputs(), 0}};
        benchmark::DoNotOptimize(source.getPosRecForNode(it.getNodeId(-1)));
        while (!stack.empty()) {
            auto& [inputs, next] = stack.back();
            if (next >= inputs) {
                stack.pop_back();
                if (!stack.empty())
                    it.moveBack();
                continue;
            }
            if (!it.moveToInput(next++))
                continue;
            const Zk::Ptr<FXGraphNodeBase> node = it.getNode(-1);
            benchmark::DoNotOptimize(source.getPosRecForNode(node->getId()));
            stack.emplace_back(node->getNumInputs(), 0);
            ++visits;
        }
        return visits;
    };
    once();
    const auto start = std::chrono::steady_clock::now();
    for (auto _ : state)
        benchmark::DoNotOptimize(once());
    walkSeconds()[n] = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count() /
                       static_cast<double>(state.iterations());
    using C = benchmark::Counter;
    state.counters["s/node"] = C(static_cast<double>(n), C::kIsIterationInvariantRate | C::kInvert);
}

// The peer: dot reads the same tree and writes its layout as plain text.
void BM_Peer_GraphvizDot(benchmark::State& state) {
    if (std::system("command -v dot > /dev/null 2>&1") != 0) {
        state.SkipWithError("dot is not installed (Debian package graphviz)");
        return;
    }
    const uint32_t n = static_cast<uint32_t>(state.range(0));
    std::string path = "/tmp/nodedesk-bench-" + std::to_string(n) + ".dot";
    std::ofstream(path) << graphToDot(*edit(n, Shape::Plain));
    const std::string cmd = "dot -Tplain " + path + " > /dev/null";
    const auto start = std::chrono::steady_clock::now();
    for (auto _ : state)
        if (std::system(cmd.c_str()) != 0)
            state.SkipWithError("dot failed");
    dotSeconds()[std::make_pair(n, Shape::Plain)] =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count() /
        static_cast<double>(state.iterations());
    using C = benchmark::Counter;
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * n));
    state.counters["s/node"] = C(static_cast<double>(n), C::kIsIterationInvariantRate | C::kInvert);
    std::remove(path.c_str());
}

} // namespace

// The peer and the baseline first: the tidier's lines quote them.
BENCHMARK(BM_Peer_GraphvizDot)
    ->Arg(1000)
    ->Arg(10000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(1);
BENCHMARK(BM_FirstTidier_Plain)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_FirstTidier_Plain)->Arg(100000)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(1);
BENCHMARK(BM_FirstTidier_SharedNodes)->Arg(10000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_FirstTidier_DeepChain)->Arg(10000)->Unit(benchmark::kMillisecond)->UseRealTime();

BENCHMARK(BM_HostWalk_Plain)
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(100000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK(BM_TreeTidier_Plain)
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(100000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK(BM_TreeTidier_SharedNodes)
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(100000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK(BM_TreeTidier_DeepChain)->Arg(10000)->Unit(benchmark::kMillisecond)->UseRealTime();

BENCHMARK_MAIN();
