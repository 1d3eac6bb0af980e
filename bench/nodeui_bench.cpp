// Building, packing and unpacking a position manager of 10, 1,000 and 100,000 records, per
// record and per byte.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <string>
#include <vector>

#include "host/Edit.h"
#include "host/FXGraphNodeBase.h"
#include "host/PStream.h"
#include "host/StreamFile.h"
#include "nodeui/NodeUIPosManager.h"
#include "nodeui/NodeUIPosRec.h"

namespace {

// An edit with one node per record, so that the sweep in pack keeps every record. Each has a
// cookie of its own, and lets go of its manager at the end: the manager holds its edit.
struct Fixture {
    explicit Fixture(int records) : edit(new Edit) {
        static uint32_t serial = 0;
        edit->setCookie(Cookie(Cookie::EditKind, IdStamp(1, 0, ++serial)));
        manager = NodeUIPosManager::getManagerFor(edit);
        for (int i = 1; i <= records; ++i) {
            IdStamp id(10, 0, static_cast<uint32_t>(i));
            edit->addNode(Zk::Ptr<FXGraphNodeBase>(new FXGraphNodeBase(id)));
            manager->getRec(id, edit->cookie(), i * 0.25, -i * 0.5);
        }
    }
    ~Fixture() { edit->clearObjects(); }
    std::string pack() const {
        StreamFile f;
        PStream s(&f);
        s << *manager;
        return f.bytes();
    }
    EditPtr edit;
    Zk::Ptr<NodeUIPosManager> manager;
};

void setCounters(benchmark::State& state, std::size_t bytes) {
    using C = benchmark::Counter;
    state.counters["bytes/s"] = C(static_cast<double>(bytes), C::kIsIterationInvariantRate);
    state.counters["records/s"] = C(static_cast<double>(state.range(0)), C::kIsIterationInvariantRate);
}

void BM_PackPosManager(benchmark::State& state) {
    Fixture fx(static_cast<int>(state.range(0)));
    std::size_t bytes = 0;
    for (auto _ : state) {
        std::string out = fx.pack();
        bytes = out.size();
        benchmark::DoNotOptimize(out.data());
    }
    setCounters(state, bytes);
}

void BM_UnpackPosManager(benchmark::State& state) {
    const std::string bytes = Fixture(static_cast<int>(state.range(0))).pack();
    // What was read is let go outside the measured time, a batch at a time: letting go is not
    // reading.
    std::vector<Zk::Ptr<Streamable>> read;
    const std::size_t batch = std::max<std::size_t>(1, 100000 / static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        StreamFile f(bytes);
        PStream s(&f);
        read.push_back(NodeUIPosManager::STRM_L_NodeUIPosManager_builder(s));
        benchmark::DoNotOptimize(read.back().get());
        if (read.size() == batch) {
            state.PauseTiming();
            read.clear();
            state.ResumeTiming();
        }
    }
    setCounters(state, bytes.size());
}

// A manager made record by record with getRec, each new id looked for first. The edit and its
// nodes are made, and everything let go, outside the measured time.
void BM_BuildPosManager(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        {
            Fixture fx(0);
            for (int i = 1; i <= n; ++i)
                fx.edit->addNode(
                    Zk::Ptr<FXGraphNodeBase>(new FXGraphNodeBase(IdStamp(10, 0, static_cast<uint32_t>(i)))));
            state.ResumeTiming();
            for (int i = 1; i <= n; ++i)
                fx.manager->getRec(IdStamp(10, 0, static_cast<uint32_t>(i)), fx.edit->cookie(), i * 0.25,
                                   -i * 0.5);
            state.PauseTiming();
        }
        state.ResumeTiming();
    }
    using C = benchmark::Counter;
    state.counters["records/s"] = C(static_cast<double>(n), C::kIsIterationInvariantRate);
}

} // namespace

BENCHMARK(BM_PackPosManager)->Arg(10)->Arg(1000)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_UnpackPosManager)->Arg(10)->Arg(1000)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_BuildPosManager)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
