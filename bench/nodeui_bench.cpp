// Position managers of 10, 1,000 and 100,000 records: built record by record, packed, unpacked
// and searched, per record and per byte. Each line carries its ratio to a peer measured in the
// same run, before it:
//   x_flat   our speed as a share of a flat codec's, which writes or reads the same bytes from or
//            into a plain array, with no objects, no layers and no list (pack and unpack)
//   x_scan   how many times faster findRec is than the plain walk of the list it stands for
// Times are CPU times of the measured thread.
#include <benchmark/benchmark.h>

#include <time.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "host/Edit.h"
#include "host/FXGraphNodeBase.h"
#include "host/PStream.h"
#include "host/StreamFile.h"
#include "nodeui/NodeUIPosManager.h"
#include "nodeui/NodeUIPosRec.h"

namespace {

double cpuSeconds() {
    timespec ts{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
    return static_cast<double>(ts.tv_sec) + static_cast<double>(ts.tv_nsec) * 1e-9;
}

// CPU seconds of the measured parts of a run, per iteration, for the ratios.
class CpuClock {
public:
    void start() { at_ = cpuSeconds(); }
    void stop() { total_ += cpuSeconds() - at_; }
    double perIteration(const benchmark::State& state) const {
        return total_ / static_cast<double>(std::max<benchmark::IterationCount>(1, state.iterations()));
    }

private:
    double at_ = 0;
    double total_ = 0;
};

std::map<std::pair<std::string, int64_t>, double>& peerSeconds() {
    static std::map<std::pair<std::string, int64_t>, double> seconds;
    return seconds;
}

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

// The peer of pack and unpack: the records as plain values, and the bytes of a manager of them
// written and read by straight code.
struct FlatRec {
    uint32_t a, b, c;
    std::string cookie;
    double x, y, anchorX, anchorY;
    bool hasAnchor;
};

class FlatCodec {
public:
    static std::vector<FlatRec> from(const NodeUIPosManager& m) {
        std::vector<FlatRec> out;
        for (NodeUIRecBase* r = m.firstRec(); r; r = m.nextRec(r)) {
            auto* p = static_cast<NodeUIPosRec*>(r);
            const IdStamp& id = p->getNodeId();
            out.push_back({id.a(), id.b(), id.c(), p->getHostEditCookie().asString().str(), p->x(), p->y(),
                           p->anchorX(), p->anchorY(), p->hasAnchor()});
        }
        return out;
    }

    static std::string write(const std::vector<FlatRec>& recs) {
        std::size_t total = 15 + 19 + 19 + 15;
        for (const FlatRec& r : recs)
            total += 15 + 15 + 17 + r.cookie.size() + 15 + 33;
        std::string out(total, '\0');
        char* p = out.data();
        const uint32_t nBody = static_cast<uint32_t>(total - 15 - 19 - 15 - 15);
        p = header(p, '$', 2, 0, 0, static_cast<uint32_t>(total - 15));
        p = header(p, 'T', 1, 0, 4, static_cast<uint32_t>(total - 15 - 15));
        p = u32(p, 0);
        p = header(p, 'N', 1, 0, nBody, nBody + 15);
        p = u32(p, static_cast<uint32_t>(recs.size()));
        for (const FlatRec& r : recs) {
            const uint32_t lBody = static_cast<uint32_t>(17 + r.cookie.size());
            p = header(p, '$', 2, 0, 0, lBody + 15 + 15 + 33);
            p = header(p, 'L', 1, 1, lBody, lBody + 15 + 33);
            *p++ = 2;
            p = u32(u32(u32(p, r.a), r.b), r.c);
            p = u32(p, static_cast<uint32_t>(r.cookie.size()));
            std::memcpy(p, r.cookie.data(), r.cookie.size());
            p += r.cookie.size();
            p = header(p, 'K', 1, 0, 33, 33);
            for (double v : {r.x, r.y, r.anchorX, r.anchorY}) {
                std::memcpy(p, &v, 8);
                p += 8;
            }
            *p++ = r.hasAnchor ? 1 : 0;
        }
        header(p, 'J', 1, 0, 0, 0);
        return out;
    }

    // Reads what write writes, trusting only lengths that fit; false on anything else.
    static bool read(const std::string& bytes, std::vector<FlatRec>& recs) {
        const char* p = bytes.data();
        const char* end = p + bytes.size();
        uint32_t count = 0, n = 0;
        if (end - p < 15 + 19 + 15 + 4)
            return false;
        p += 15 + 19 + 15;
        std::memcpy(&count, p, 4);
        p += 4;
        recs.clear();
        recs.reserve(std::min<std::size_t>(count, static_cast<std::size_t>(end - p) / 110));
        for (uint32_t i = 0; i < count; ++i) {
            FlatRec r{};
            if (end - p < 15 + 15 + 17)
                return false;
            p += 30 + 1;
            std::memcpy(&r.a, p, 4);
            std::memcpy(&r.b, p + 4, 4);
            std::memcpy(&r.c, p + 8, 4);
            std::memcpy(&n, p + 12, 4);
            p += 16;
            if (static_cast<std::size_t>(end - p) < std::size_t{n} + 15 + 33)
                return false;
            r.cookie.assign(p, n);
            p += n + 15;
            std::memcpy(&r.x, p, 8);
            std::memcpy(&r.y, p + 8, 8);
            std::memcpy(&r.anchorX, p + 16, 8);
            std::memcpy(&r.anchorY, p + 24, 8);
            r.hasAnchor = p[32] != 0;
            p += 33;
            recs.push_back(std::move(r));
        }
        return end - p == 15;
    }

private:
    static char* u32(char* p, uint32_t v) {
        std::memcpy(p, &v, 4);
        return p + 4;
    }
    static char* header(char* p, char name, unsigned char major, unsigned char minor, uint32_t layer,
                        uint32_t chunk) {
        p = u32(p, 1);
        *p++ = name;
        *p++ = static_cast<char>(major);
        *p++ = static_cast<char>(minor);
        return u32(u32(p, layer), chunk);
    }
};

// Per record and per byte; with `peer`, the ratio of its time to `seconds` as x_flat.
void setCounters(benchmark::State& state, std::size_t bytes, double seconds, const char* peer) {
    using C = benchmark::Counter;
    const double records = static_cast<double>(state.range(0));
    state.counters["bytes/s"] = C(static_cast<double>(bytes), C::kIsIterationInvariantRate);
    state.counters["s/record"] = C(records, C::kIsIterationInvariantRate | C::kInvert);
    state.counters["B/record"] = static_cast<double>(bytes) / records;
    if (!peer)
        return;
    auto it = peerSeconds().find({peer, state.range(0)});
    if (it != peerSeconds().end() && seconds > 0)
        state.counters["x_flat"] = it->second / seconds;
}

// Output files are let go outside the measured time, a batch at a time: letting go of the bytes
// is not writing them.
template <class Out, class Make>
void batched(benchmark::State& state, CpuClock& clock, Make make) {
    std::vector<Out> kept;
    const std::size_t batch = std::max<std::size_t>(1, 100000 / static_cast<std::size_t>(state.range(0)));
    clock.start();
    for (auto _ : state) {
        kept.push_back(make());
        benchmark::DoNotOptimize(&kept.back());
        if (kept.size() == batch) {
            clock.stop();
            state.PauseTiming();
            kept.clear();
            state.ResumeTiming();
            clock.start();
        }
    }
    clock.stop();
}

void BM_Flat_Pack(benchmark::State& state) {
    Fixture fx(static_cast<int>(state.range(0)));
    const std::vector<FlatRec> recs = FlatCodec::from(*fx.manager);
    const std::string bytes = FlatCodec::write(recs);
    if (bytes != fx.pack()) {
        state.SkipWithError("the flat codec writes other bytes than the manager");
        return;
    }
    CpuClock clock;
    batched<std::string>(state, clock, [&] { return FlatCodec::write(recs); });
    peerSeconds()[{"pack/flat", state.range(0)}] = clock.perIteration(state);
    setCounters(state, bytes.size(), 0, nullptr);
}

void BM_Flat_Unpack(benchmark::State& state) {
    const std::string bytes = Fixture(static_cast<int>(state.range(0))).pack();
    std::vector<FlatRec> check;
    if (!FlatCodec::read(bytes, check) || check.size() != static_cast<std::size_t>(state.range(0))) {
        state.SkipWithError("the flat codec cannot read the manager's bytes");
        return;
    }
    CpuClock clock;
    batched<std::vector<FlatRec>>(state, clock, [&] {
        std::vector<FlatRec> recs;
        FlatCodec::read(bytes, recs);
        return recs;
    });
    peerSeconds()[{"unpack/flat", state.range(0)}] = clock.perIteration(state);
    setCounters(state, bytes.size(), 0, nullptr);
}

void BM_PackPosManager(benchmark::State& state) {
    Fixture fx(static_cast<int>(state.range(0)));
    const std::size_t bytes = fx.pack().size();
    CpuClock clock;
    batched<std::unique_ptr<StreamFile>>(state, clock, [&] {
        auto f = std::make_unique<StreamFile>();
        PStream s(f.get());
        s << *fx.manager;
        return f;
    });
    setCounters(state, bytes, clock.perIteration(state), "pack/flat");
}

void BM_UnpackPosManager(benchmark::State& state) {
    const std::string bytes = Fixture(static_cast<int>(state.range(0))).pack();
    CpuClock clock;
    batched<Zk::Ptr<Streamable>>(state, clock, [&] {
        StreamFile f(bytes);
        PStream s(&f);
        return NodeUIPosManager::STRM_L_NodeUIPosManager_builder(s);
    });
    setCounters(state, bytes.size(), clock.perIteration(state), "unpack/flat");
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
    state.counters["s/record"] = C(static_cast<double>(n), C::kIsIterationInvariantRate | C::kInvert);
}

// Lookups of 100 ids spread over the manager, half of them present; the plain walk first
// finds the first record of each id in list order, as findRec must.
constexpr int kLookups = 100;

IdStamp lookedFor(int i, int64_t records) {
    return IdStamp(10, 0, static_cast<uint32_t>((static_cast<int64_t>(i) * 7919) % (2 * records) + 1));
}

NodeUIRecBase* scan(const NodeUIPosManager& m, const IdStamp& id) {
    for (NodeUIRecBase* r = m.firstRec(); r; r = m.nextRec(r))
        if (r->getNodeId() == id)
            return r;
    return nullptr;
}

void lookupCounters(benchmark::State& state, double seconds, bool peer) {
    using C = benchmark::Counter;
    state.counters["s/lookup"] = C(kLookups, C::kIsIterationInvariantRate | C::kInvert);
    if (peer)
        return;
    auto it = peerSeconds().find({"find/scan", state.range(0)});
    if (it != peerSeconds().end() && seconds > 0)
        state.counters["x_scan"] = it->second / seconds;
}

void BM_Scan_FindRec(benchmark::State& state) {
    Fixture fx(static_cast<int>(state.range(0)));
    CpuClock clock;
    clock.start();
    for (auto _ : state)
        for (int i = 0; i < kLookups; ++i)
            benchmark::DoNotOptimize(scan(*fx.manager, lookedFor(i, state.range(0))));
    clock.stop();
    peerSeconds()[{"find/scan", state.range(0)}] = clock.perIteration(state);
    lookupCounters(state, 0, true);
}

void BM_FindRec(benchmark::State& state) {
    Fixture fx(static_cast<int>(state.range(0)));
    for (int i = 0; i < kLookups; ++i)
        if (fx.manager->findRec(lookedFor(i, state.range(0))) !=
            scan(*fx.manager, lookedFor(i, state.range(0)))) {
            state.SkipWithError("findRec and the walk disagree");
            return;
        }
    CpuClock clock;
    clock.start();
    for (auto _ : state)
        for (int i = 0; i < kLookups; ++i)
            benchmark::DoNotOptimize(fx.manager->findRec(lookedFor(i, state.range(0))));
    clock.stop();
    lookupCounters(state, clock.perIteration(state), false);
}

} // namespace

// The peers first: the lines after them quote them.
BENCHMARK(BM_Flat_Pack)->Arg(10)->Arg(1000)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_PackPosManager)->Arg(10)->Arg(1000)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Flat_Unpack)->Arg(10)->Arg(1000)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_UnpackPosManager)->Arg(10)->Arg(1000)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_BuildPosManager)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Scan_FindRec)->Arg(1000)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_FindRec)->Arg(1000)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK_MAIN();
