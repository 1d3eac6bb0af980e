// Render contexts as cache keys, and the stills cache: what makes a still stale, what is shared,
// what is let go.
#include <gtest/gtest.h>

#include "host/CurrentProject.h"
#include "host/StillsCache.h"
#include "refhost/render/StillsLru.h"
#include "tests/render/RenderTestSupport.h"

using namespace rendertest;
using Render::RenderContextRep;

namespace {

// V1: a colour correction over a blur over a material; V2: a flat matte.
struct Chain {
    Chain() {
        v1 = g.channel(L"V1");
        v2 = g.channel(L"V2");
        cc = g.effect(1, 1, "PixShader:Colour:correct.fx");
        blur = g.effect(2, 1, "PixShader:Blur:gaussian.fx");
        src = g.material(3);
        GraphBuilder::link(cc, 0, blur);
        GraphBuilder::link(blur, 0, src);
        g.graphEvent(v1, 0, 10, cc);
        g.graphEvent(v2, 0, 10, flat(g, 4, 1, 0, 0));
    }
    std::string keyAt(const FXGraphNodeBase* node, double t = 1.0, int w = 64, int h = 36) {
        EditGraphIterator it(g.edit, v1, t, 0);
        if (node)
            it.search(node);
        return context(it, w, h).key();
    }
    GraphBuilder g;
    int v1, v2;
    Zk::Ptr<EffectInstance_opu4h5a4j> cc, blur;
    Zk::Ptr<MaterialUsageNode> src;
};

TEST(StillsCache, KeysChangeWithWhatTheStillShows) {
    Chain c;
    const std::string top = c.keyAt(nullptr), mid = c.keyAt(c.blur.get());
    EXPECT_EQ(top, c.keyAt(nullptr)) << "the same frame twice";
    EXPECT_EQ(top, c.keyAt(nullptr, 1.0 + 1e-9)) << "times within a microsecond are one";
    EXPECT_NE(top, mid) << "another node";
    EXPECT_NE(top, c.keyAt(nullptr, 2.0)) << "another time";
    EXPECT_NE(top, c.keyAt(nullptr, 1.0, 128, 72)) << "another size";

    c.blur->setParam("radius", 9);
    EXPECT_NE(top, c.keyAt(nullptr)) << "a node below changed";
    EXPECT_NE(mid, c.keyAt(c.blur.get())) << "the node itself changed";
    const std::string midNow = c.keyAt(c.blur.get());
    c.cc->setParam("gain", 2);
    EXPECT_EQ(midNow, c.keyAt(c.blur.get())) << "a change above does not touch the still below";

    const std::string before = c.keyAt(c.src.get());
    c.src->setSource("grid");
    c.src->noteChanged();
    EXPECT_NE(before, c.keyAt(c.src.get())) << "the material changed";

    const std::string wired = c.keyAt(nullptr);
    c.blur->input(0).node = nullptr;
    EXPECT_NE(wired, c.keyAt(nullptr)) << "an input unplugged, even without a change count";

    const std::string plain = c.keyAt(nullptr);
    c.g.edit->addModification(EditModifications(EditModification(11)), false);
    EXPECT_NE(plain, c.keyAt(nullptr)) << "the edit changed";

    const std::string noLut = c.keyAt(nullptr);
    Zk::CurrentProject::setViewLUT("ACEScct", true);
    EXPECT_NE(noLut, c.keyAt(nullptr)) << "the view transform is part of the picture";
    Zk::CurrentProject::setViewLUT("ACEScct", false);
    EXPECT_EQ(noLut, c.keyAt(nullptr));

    // An edit whose graph feeds itself still gives a key.
    auto loop = c.g.effect(9, 1, "PixShader:Colour:mono.fx");
    GraphBuilder::link(loop, 0, loop);
    c.g.graphEvent(c.v1, 20, 30, loop);
    EXPECT_FALSE(c.keyAt(nullptr, 25).empty());
}

TEST(StillsCache, SameFrameRendersOnceAndNodesShare) {
    auto& cache = StillsLru::instance();
    cache.clear();
    cache.resetCounters();
    Chain c;
    EditGraphIterator a(c.g.edit, c.v1, 1.0, 0), b(c.g.edit, c.v1, 1.0, 0);
    const RenderContextRep ca = context(a, 64, 36), cb = context(b, 64, 36);
    EXPECT_TRUE(ca == cb) << "two view nodes on one frame of one node";

    EXPECT_FALSE(Render::StillsCache::instance().getStillImage(ca));
    auto still = Render::VidRenderUtils::renderStill(ca, true);
    ASSERT_TRUE(still);
    Render::StillsCache::instance().add(ca, still, Render::StillsCache::kKeep);
    EXPECT_EQ(Render::StillsCache::instance().getStillImage(cb), still) << "shared, not rendered again";
    EXPECT_EQ(cache.hits(), 1u);
    EXPECT_EQ(cache.misses(), 1u);

    c.src->setSource("ramp");
    c.src->noteChanged();
    EXPECT_FALSE(cache.getStillImage(context(EditGraphIterator(c.g.edit, c.v1, 1.0, 0), 64, 36)))
        << "stale after a change below";

    // A context given a view transform after it was made is another picture.
    RenderContextRep withLut = context(a, 64, 36);
    withLut.setViewLUT("sRGB - Display/ACES 1.0 - SDR Video");
    EXPECT_FALSE(cache.getStillImage(withLut));
    cache.add(ca, nullptr, Render::StillsCache::kKeep);
    EXPECT_EQ(cache.size(), 1u) << "null stills are not kept";
}

TEST(StillsCache, BoundedLeastRecentlyUsed) {
    auto& cache = StillsLru::instance();
    cache.clear();
    Chain c;
    cache.setLimits(3, StillsLru::kDefaultMaxBytes);
    std::vector<RenderContextRep> ctx;
    for (int t = 0; t < 5; ++t)
        ctx.push_back(context(EditGraphIterator(c.g.edit, c.v1, t, 0), 8, 8));
    cache.add(ctx[0], Zk::make<Zk::Image::Surface>(8, 8), Render::StillsCache::kKeep);
    cache.add(ctx[1], Zk::make<Zk::Image::Surface>(8, 8), Render::StillsCache::kKeep);
    cache.add(ctx[2], Zk::make<Zk::Image::Surface>(8, 8), Render::StillsCache::kKeep);
    EXPECT_TRUE(cache.getStillImage(ctx[0])); // now the most recent
    cache.add(ctx[3], Zk::make<Zk::Image::Surface>(8, 8), Render::StillsCache::kKeep);
    EXPECT_EQ(cache.size(), 3u);
    EXPECT_FALSE(cache.getStillImage(ctx[1])) << "the least recently used went";
    EXPECT_TRUE(cache.getStillImage(ctx[0]));
    EXPECT_EQ(cache.bytes(), 3u * 8 * 8 * 4);

    // Re-adding under a key replaces, and the byte budget bounds too.
    cache.add(ctx[3], Zk::make<Zk::Image::Surface>(16, 16), Render::StillsCache::kKeep);
    EXPECT_EQ(cache.size(), 3u);
    cache.setLimits(100, 16 * 16 * 4 + 8 * 8 * 4);
    EXPECT_EQ(cache.size(), 2u);
    EXPECT_TRUE(cache.getStillImage(ctx[3]));
    cache.setLimits(StillsLru::kDefaultMaxStills, StillsLru::kDefaultMaxBytes);
    cache.clear();
    EXPECT_EQ(cache.size(), 0u);
    EXPECT_EQ(cache.bytes(), 0u);
}

TEST(StillsCache, UnRenderDropsTheCelsStills) {
    auto& cache = StillsLru::instance();
    cache.clear();
    Chain c;
    c.g.graphEvent(c.v1, 10, 20, c.g.material(20));
    for (double t : {1.0, 5.0, 12.0})
        cache.add(context(EditGraphIterator(c.g.edit, c.v1, t, 0), 8, 8), Zk::make<Zk::Image::Surface>(8, 8),
                  Render::StillsCache::kKeep);
    GraphBuilder other;
    int o = other.channel(L"O1");
    other.graphEvent(o, 0, 10, other.material(1));
    cache.add(context(EditGraphIterator(other.edit, o, 1.0, 0), 8, 8), Zk::make<Zk::Image::Surface>(8, 8),
              Render::StillsCache::kKeep);

    CelEventPair cel(c.g.edit, c.v1, 3.0);
    Render::VidRenderUtils::unRender(cel, true);
    EXPECT_EQ(cache.size(), 2u);
    EXPECT_FALSE(cache.getStillImage(context(EditGraphIterator(c.g.edit, c.v1, 5.0, 0), 8, 8)));
    EXPECT_TRUE(cache.getStillImage(context(EditGraphIterator(c.g.edit, c.v1, 12.0, 0), 8, 8)));
    EXPECT_TRUE(cache.getStillImage(context(EditGraphIterator(other.edit, o, 1.0, 0), 8, 8)))
        << "another edit keeps its stills";
    CelEventPair none;
    Render::VidRenderUtils::unRender(none, true);
    EXPECT_EQ(cache.size(), 2u);
    cache.clear();
}

} // namespace
