// Cost of rendering one 1080p still: a material, a chain of three effects, a mix of three
// inputs; and of finding a still already in the stills cache.
#include <benchmark/benchmark.h>

#include "host/DigitalVideoFormats.h"
#include "host/Edit.h"
#include "host/EffectInstance_opu4h5a4j.h"
#include "host/MaterialUsageNode.h"
#include "host/StillsCache.h"
#include "host/VidRenderUtils.h"

namespace {

// V1: bars. V2: colour correction over a blur over black and white over a ramp. V3: a mix of
// the grid, V1 and V2's chain.
struct BenchEdit {
    BenchEdit() : edit(new Edit()) {
        edit->setTimes(0, 10);
        for (int c = 0; c < 3; ++c) {
            EditChannel ch;
            ch.id = IdStamp(100, 0, static_cast<uint32_t>(c + 1));
            ch.name = L"V";
            edit->addChannel(ch);
        }
        auto bars = material(1, "bars");
        event(0, bars);
        auto cc = effect(2, "PixShader:Colour:correct.fx", 1);
        cc->setParam("saturation", 1.3);
        auto blur = effect(3, "PixShader:Blur:gaussian.fx", 1);
        blur->setParam("radius", 4);
        auto mono = effect(4, "PixShader:Colour:mono.fx", 1);
        cc->input(0).node = blur;
        blur->input(0).node = mono;
        mono->input(0).node = material(5, "ramp");
        event(1, cc);
        auto mix = effect(6, "PixShader:Mix:mix3.fx", 3);
        mix->input(0).node = material(7, "grid");
        mix->input(1).track = edit->chan(0).id;
        mix->input(2).track = edit->chan(1).id;
        event(2, mix);
    }
    Zk::Ptr<MaterialUsageNode> material(uint32_t n, const char* source) {
        auto m =
            Zk::make<MaterialUsageNode>(IdStamp(1, 0, n), Cookie(Cookie::MaterialKind, IdStamp(3, 0, n)));
        m->setSource(source);
        edit->addNode(m);
        return m;
    }
    Zk::Ptr<EffectInstance_opu4h5a4j> effect(uint32_t n, const char* tag, unsigned inputs) {
        auto fx = Zk::make<EffectInstance_opu4h5a4j>(IdStamp(1, 0, n));
        fx->setTagTypeId(tag);
        fx->setNumInputs(inputs);
        edit->addNode(fx);
        return fx;
    }
    void event(int chan, const Zk::Ptr<FXGraphNodeBase>& node) {
        CelEvent e;
        e.start = 0;
        e.end = 10;
        e.kind = CelEvent::Graph;
        e.node = node;
        edit->chan(chan).cel->events().push_back(e);
    }
    Render::RenderContextRep context(int chan) const {
        ShotVideoMetadata m;
        m.formatUID = DigitalVideoFormats::k1080pFormatUID;
        return Render::RenderContextRep(EditGraphIterator(edit, chan, 1.0, 0), m, 0, 0, 1, true);
    }
    EditPtr edit;
};

void BM_RenderStill1080p(benchmark::State& state) {
    BenchEdit e;
    const Render::RenderContextRep ctx = e.context(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        auto still = Render::VidRenderUtils::renderStill(ctx, true);
        if (!still)
            state.SkipWithError("render failed");
        benchmark::DoNotOptimize(still);
    }
    state.SetItemsProcessed(state.iterations() * 1920 * 1080);
}
// 0: a material; 1: a chain of three effects over a material; 2: a mix of three inputs.
BENCHMARK(BM_RenderStill1080p)->ArgName("graph")->Arg(0)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

void BM_StillsCacheHit(benchmark::State& state) {
    BenchEdit e;
    auto& cache = Render::StillsCache::instance();
    cache.clear();
    const Render::RenderContextRep ctx = e.context(1);
    cache.add(ctx, Render::VidRenderUtils::renderStill(ctx, true), Render::StillsCache::kKeep);
    for (auto _ : state) {
        // A drawing node makes its context afresh each time, then asks the cache.
        const Render::RenderContextRep again = e.context(1);
        auto still = cache.getStillImage(again);
        if (!still)
            state.SkipWithError("no hit");
        benchmark::DoNotOptimize(still);
    }
    cache.clear();
}
BENCHMARK(BM_StillsCacheHit)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
