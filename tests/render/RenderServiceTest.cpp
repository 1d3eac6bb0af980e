// The render service on pictures with known answers, on every effect the samples use, and on
// graphs that cannot be rendered.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>

#include "host/AliasedInputEffect.h"
#include "host/EffectTemplateManager.h"
#include "host/ImageImportEffect.h"
#include "host/Log.h"
#include "host/VobManager.h"
#include "refhost/edit/EditFile.h"
#include "refhost/render/module/EffectOperations.h"
#include "refhost/render/module/GeneratedPictures.h"
#include "refhost/render/module/ImageFileCache.h"
#include "refhost/render/module/SurfacePixels.h"
#include "tests/render/RenderTestSupport.h"

using namespace rendertest;

namespace {

void expectNear(Rgba p, int r, int g, int b, int tol, const char* what) {
    EXPECT_NEAR(p.r, r, tol) << what;
    EXPECT_NEAR(p.g, g, tol) << what;
    EXPECT_NEAR(p.b, b, tol) << what;
}

TEST(RenderService, FlatColourThroughColourCorrection) {
    GraphBuilder g;
    int v1 = g.channel(L"V1");
    auto cc = g.effect(1, 1, "PixShader:Colour:correct.fx");
    GraphBuilder::link(cc, 0, flat(g, 2, 0.2, 0.4, 0.6));
    g.graphEvent(v1, 0, 10, cc);

    auto s = still(g.edit, v1, 1.0);
    ASSERT_TRUE(s);
    EXPECT_EQ(s->width(), 64);
    EXPECT_EQ(s->height(), 36);
    EXPECT_EQ(s->formatUID(), DigitalVideoFormats::kThumbnailFormatUID);
    expectNear(at(*s, 10, 10), to255(0.2), to255(0.4), to255(0.6), 1, "no parameters: unchanged");
    EXPECT_EQ(at(*s, 63, 35).a, 255);

    cc->setParam("red", 2.0);
    cc->setParam("blue", 0.5);
    expectNear(at(*still(g.edit, v1, 1.0), 5, 5), to255(0.4), to255(0.4), to255(0.3), 1, "channel gains");

    cc->setParam("red", 1.0);
    cc->setParam("blue", 1.0);
    cc->setParam("saturation", 0.0);
    const int luma = to255(0.2126 * 0.2 + 0.7152 * 0.4 + 0.0722 * 0.6);
    expectNear(at(*still(g.edit, v1, 1.0), 30, 20), luma, luma, luma, 1, "saturation 0 is Rec. 709 grey");

    cc->setParam("saturation", 1.0);
    cc->setParam("gain", 10.0);
    expectNear(at(*still(g.edit, v1, 1.0), 30, 20), 255, 255, 255, 0, "gains clip at white");
}

TEST(RenderService, MixOfTwoFlatColours) {
    GraphBuilder g;
    int v1 = g.channel(L"V1");
    auto mix = g.effect(1, 3, "PixShader:Mix:mix3.fx");
    GraphBuilder::link(mix, 0, flat(g, 2, 1.0, 0.0, 0.0));
    GraphBuilder::link(mix, 2, flat(g, 3, 0.0, 0.0, 1.0)); // slot 1 stays open
    g.graphEvent(v1, 0, 10, mix);

    expectNear(at(*still(g.edit, v1, 0), 3, 3), 128, 0, 128, 1, "an even mix; the open slot takes no part");
    mix->setParam("balance", 0.25);
    expectNear(at(*still(g.edit, v1, 0), 3, 3), to255(0.75), 0, to255(0.25), 1, "balance toward the first");
    mix->setParam("balance", 1.0);
    expectNear(at(*still(g.edit, v1, 0), 3, 3), 0, 0, 255, 0, "balance at the last input");
}

TEST(RenderService, BlurKeepsTheMean) {
    GraphBuilder g;
    int v1 = g.channel(L"V1");
    auto blur = g.effect(1, 1, "PixShader:Blur:gaussian.fx");
    auto src = g.material(2);
    GraphBuilder::link(blur, 0, src);
    g.graphEvent(v1, 0, 10, blur);
    // In edit pixels: at 64 x 36 a deviation of 1.3 pixels (a kernel) and of 4 (box blurs).
    for (auto [source, radius] :
         {std::pair{"bars", 40.0}, {"grid", 40.0}, {"noise", 40.0}, {"bars", 120.0}, {"grid", 120.0}}) {
        blur->setParam("radius", radius);
        src->setSource(source);
        src->noteChanged();
        blur->setEnabled(false);
        auto sharp = still(g.edit, v1, 0);
        blur->setEnabled(true);
        auto soft = still(g.edit, v1, 0);
        ASSERT_TRUE(sharp && soft) << source;
        double a[3], b[3];
        meanOf(*sharp, a);
        meanOf(*soft, b);
        for (int c = 0; c < 3; ++c)
            EXPECT_NEAR(a[c], b[c], 2.0) << source << " channel " << c;
        // And it did blur: neighbouring pixels are closer than before.
        long edgesSharp = 0, edgesSoft = 0;
        for (int y = 0; y < 36; ++y)
            for (int x = 1; x < 64; ++x) {
                edgesSharp += std::abs(at(*sharp, x, y).g - at(*sharp, x - 1, y).g);
                edgesSoft += std::abs(at(*soft, x, y).g - at(*soft, x - 1, y).g);
            }
        EXPECT_LT(edgesSoft, edgesSharp) << source;
    }

    // A flat picture stays flat to its edges.
    GraphBuilder::link(blur, 0, flat(g, 3, 0.3, 0.5, 0.7));
    auto s = still(g.edit, v1, 0);
    for (auto [x, y] : {std::pair{0, 0}, {63, 35}, {32, 18}, {0, 35}})
        expectNear(at(*s, x, y), to255(0.3), to255(0.5), to255(0.7), 1, "flat under a blur");
}

// The two ways of blurring meet where one hands over to the other.
TEST(RenderService, BlurKernelAndBoxesAgree) {
    OIIO::ImageBuf bars = GeneratedPictures::bars(96, 54);
    auto kernel = RenderPixels::toSurface(EffectOperations::blur(bars, 1.999));
    auto boxes = RenderPixels::toSurface(EffectOperations::blur(bars, 2.0));
    ASSERT_TRUE(kernel && boxes);
    int worst = 0;
    for (int y = 0; y < 54; ++y)
        for (int x = 0; x < 96; ++x) {
            Rgba a = at(*kernel, x, y), b = at(*boxes, x, y);
            worst = std::max(
                {worst, std::abs(a.r - b.r), std::abs(a.g - b.g), std::abs(a.b - b.b), std::abs(a.a - b.a)});
        }
    EXPECT_LE(worst, 12);
}

TEST(RenderService, MattesSplitsKeysAndGeometry) {
    GraphBuilder g;
    int v1 = g.channel(L"V1");
    auto split = g.effect(1, 2, "PixShader:Mix:split.fx");
    GraphBuilder::link(split, 0, flat(g, 2, 1, 0, 0));
    GraphBuilder::link(split, 1, flat(g, 3, 0, 1, 0));
    g.graphEvent(v1, 0, 10, split);
    auto s = still(g.edit, v1, 0);
    expectNear(at(*s, 31, 10), 255, 0, 0, 0, "left of the split");
    expectNear(at(*s, 32, 10), 0, 255, 0, 0, "right of the split");
    split->setParam("position", 0.25);
    expectNear(at(*still(g.edit, v1, 0), 20, 10), 0, 255, 0, 0, "split moved left");

    // A gradient at 90 degrees runs from black at the bottom to white at the top.
    auto grad = g.effect(4, 0, "PixShader:Mattes:gradients:linear.fx");
    grad->setParam("angle", 90);
    g.graphEvent(v1, 10, 20, grad);
    s = still(g.edit, v1, 15);
    EXPECT_LT(at(*s, 32, 35).r, 10);
    EXPECT_GT(at(*s, 32, 0).r, 245);
    EXPECT_NEAR(at(*s, 0, 18).r, at(*s, 63, 18).r, 1) << "no change across";

    // A green key over blue: the green bar of the bars goes, the others stay.
    auto key = g.effect(5, 2, "PixShader:Mix:key.fx");
    auto bars = g.material(6);
    GraphBuilder::link(key, 0, bars);
    GraphBuilder::link(key, 1, flat(g, 7, 0, 0, 1));
    g.graphEvent(v1, 20, 30, key);
    s = still(g.edit, v1, 25, 70, 36);
    expectNear(at(*s, 35, 5), 0, 0, 255, 1, "green keyed out");
    expectNear(at(*s, 5, 5), 191, 191, 191, 1, "white bar stays");
    expectNear(at(*s, 15, 5), 191, 191, 0, 1, "yellow bar stays");

    // Crop leaves clear black outside; picture in picture puts a small copy top right.
    auto crop = g.effect(8, 1, "PixShader:Geometry:crop.fx");
    GraphBuilder::link(crop, 0, flat(g, 9, 1, 1, 1));
    crop->setParam("left", 0.5);
    g.graphEvent(v1, 30, 40, crop);
    s = still(g.edit, v1, 35);
    EXPECT_EQ(at(*s, 10, 10).a, 0);
    expectNear(at(*s, 50, 10), 255, 255, 255, 0, "kept half");

    auto pip = g.effect(10, 2, "PixShader:Mix:pip.fx");
    GraphBuilder::link(pip, 0, flat(g, 11, 0, 0, 0));
    GraphBuilder::link(pip, 1, flat(g, 12, 1, 1, 0));
    g.graphEvent(v1, 40, 50, pip);
    s = still(g.edit, v1, 45);
    expectNear(at(*s, 48, 9), 255, 255, 0, 0, "inset centred at three quarters across and up");
    expectNear(at(*s, 16, 27), 0, 0, 0, 0, "background elsewhere");
}

TEST(RenderService, DissolveFollowsTheTransitionCel) {
    GraphBuilder g;
    int v1 = g.channel(L"V1");
    auto dissolve = g.effect(1, 2, "Transition:Dissolve");
    GraphBuilder::link(dissolve, 0, flat(g, 2, 1, 0, 0));
    GraphBuilder::link(dissolve, 1, flat(g, 3, 0, 0, 1));
    g.graphEvent(v1, 4, 6, dissolve);
    expectNear(at(*still(g.edit, v1, 4.0), 1, 1), 255, 0, 0, 0, "start: all outgoing");
    expectNear(at(*still(g.edit, v1, 4.5), 1, 1), to255(0.75), 0, to255(0.25), 1, "a quarter through");
    expectNear(at(*still(g.edit, v1, 5.0), 1, 1), 128, 0, 128, 1, "half way");
}

TEST(RenderService, PassThroughRules) {
    GraphBuilder g;
    int v1 = g.channel(L"V1");
    auto unknown = g.effect(1, 2, "PixShader:Nobody:knows.fx");
    auto mono = g.effect(2, 1, "PixShader:Colour:mono.fx");
    GraphBuilder::link(unknown, 0, mono);
    GraphBuilder::link(unknown, 1, flat(g, 3, 0, 0, 1));
    GraphBuilder::link(mono, 0, flat(g, 4, 1, 0, 0));
    g.graphEvent(v1, 0, 10, unknown);
    const int red = to255(0.2126);
    expectNear(at(*still(g.edit, v1, 0), 2, 2), red, red, red, 1, "unknown tag: its first input");
    mono->setEnabled(false);
    expectNear(at(*still(g.edit, v1, 0), 2, 2), 255, 0, 0, 0, "switched off: its input unchanged");
    unknown->input(0).node = nullptr;
    unknown->input(0).track = IdStamp();
    unknown->noteChanged();
    EXPECT_EQ(at(*still(g.edit, v1, 0), 2, 2).a, 0) << "first input open: nothing";
}

TEST(RenderService, TracksAliasesAndCycles) {
    GraphBuilder g;
    int v1 = g.channel(L"V1");
    int v2 = g.channel(L"V2");
    int v3 = g.channel(L"V3");
    auto over = g.effect(1, 2, "PixShader:Mix:over.fx");
    over->setParam("opacity", 1.0);
    g.feed(over, 1, v3); // a channel's content feeds the background
    auto alias = Zk::make<AliasedInputEffect>(IdStamp(1, 0, 5));
    g.edit->addNode(alias);
    auto crop = g.effect(6, 1, "PixShader:Geometry:crop.fx");
    crop->setParam("right", 0.5);
    GraphBuilder::link(crop, 0, alias);
    GraphBuilder::link(over, 0, crop);
    auto green = flat(g, 7, 0, 1, 0);
    alias->setAliasOf(green->getId());
    g.graphEvent(v1, 0, 10, over);
    g.graphEvent(v2, 0, 10, green);
    g.graphEvent(v3, 0, 10, flat(g, 8, 0, 0, 1));

    auto s = still(g.edit, v1, 1);
    expectNear(at(*s, 5, 5), 0, 255, 0, 0, "the alias repeats V2's green matte");
    expectNear(at(*s, 60, 5), 0, 0, 255, 0, "V3 shows blue beside the crop");

    // An effect fed by itself through another does not hang the render.
    auto a = g.effect(20, 1, "PixShader:Colour:mono.fx");
    auto b = g.effect(21, 2, "PixShader:Mix:mix3.fx");
    GraphBuilder::link(a, 0, b);
    GraphBuilder::link(b, 0, a);
    GraphBuilder::link(b, 1, flat(g, 22, 1, 1, 1));
    g.graphEvent(v1, 30, 40, a);
    s = still(g.edit, v1, 35);
    ASSERT_TRUE(s);
    expectNear(at(*s, 3, 3), 255, 255, 255, 0, "the loop's input gives nothing; the matte mixes alone");

    // An alias of its own parent is a cycle too.
    auto selfAlias = Zk::make<AliasedInputEffect>(IdStamp(1, 0, 30));
    g.edit->addNode(selfAlias);
    auto top = g.effect(31, 1, "PixShader:Colour:sepia.fx");
    GraphBuilder::link(top, 0, selfAlias);
    selfAlias->setAliasOf(top->getId());
    g.graphEvent(v1, 50, 60, top);
    s = still(g.edit, v1, 55);
    ASSERT_TRUE(s);
    EXPECT_EQ(at(*s, 0, 0).a, 0);
}

// A long chain renders to its bottom; past the depth limit the rest is cut off, not recursed.
TEST(RenderService, LongChainsAreCutAtTheDepthLimit) {
    GraphBuilder g;
    int v1 = g.channel(L"V1");
    Zk::Ptr<FXGraphNodeBase> below = flat(g, 1, 0, 0, 1);
    std::vector<Zk::Ptr<EffectInstance_opu4h5a4j>> chain;
    for (uint32_t n = 0; n < 400; ++n) {
        auto fx = g.effect(10 + n, 1, "PixShader:Colour:correct.fx");
        GraphBuilder::link(fx, 0, below);
        chain.push_back(fx);
        below = fx;
    }
    g.graphEvent(v1, 0, 10, chain.back());
    auto s = still(g.edit, v1, 1, 8, 8, chain[200].get());
    ASSERT_TRUE(s);
    expectNear(at(*s, 1, 1), 0, 0, 255, 0, "200 links down");
    s = still(g.edit, v1, 1, 8, 8);
    ASSERT_TRUE(s);
    EXPECT_EQ(at(*s, 1, 1).a, 0) << "the matte is past the limit";
}

TEST(RenderService, FailuresGiveNullStills) {
    std::vector<std::string> log;
    setLogSink([&](const std::string& line) { log.push_back(line); });
    GraphBuilder g;
    int v1 = g.channel(L"V1");
    int v2 = g.channel(L"V2");
    auto over = g.effect(1, 2, "PixShader:Mix:over.fx");
    auto missing = Zk::make<ImageImportEffect>(IdStamp(1, 0, 2));
    missing->setFile("no/such/picture.png");
    g.edit->addNode(missing);
    GraphBuilder::link(over, 0, missing);
    GraphBuilder::link(over, 1, flat(g, 3, 0, 0, 1));
    over->setParam("opacity", 1.0);
    g.graphEvent(v1, 0, 10, over);

    const std::string notAPicture = std::string(NODEDESK_BINARY_DIR) + "/render-not-a-picture.png";
    std::ofstream(notAPicture) << "this is text, not a picture";
    auto garbage = Zk::make<ImageImportEffect>(IdStamp(1, 0, 4));
    garbage->setFile(String(notAPicture.c_str()));
    g.edit->addNode(garbage);
    g.graphEvent(v2, 0, 10, garbage);

    EXPECT_FALSE(still(g.edit, v1, 1, 64, 36, missing.get())) << "a missing file";
    EXPECT_FALSE(still(g.edit, v2, 1)) << "a file that is no picture";
    auto parent = still(g.edit, v1, 1);
    ASSERT_TRUE(parent) << "the parent of a failed node still renders";
    expectNear(at(*parent, 3, 3), 0, 0, 255, 0, "with nothing from the failed input");

    EXPECT_FALSE(still(g.edit, v1, 50)) << "black: no node, invalid iterator";
    EXPECT_FALSE(still(g.edit, v1, 1, 0, 36)) << "no width";
    EXPECT_FALSE(still(g.edit, v1, 1, 64, -3)) << "negative height";
    EXPECT_FALSE(still(g.edit, v1, 1, 100000, 100000)) << "far too large";
    EXPECT_FALSE(Render::VidRenderUtils::renderStill(context(EditGraphIterator(), 64, 36), true));

    still(g.edit, v1, 2);
    still(g.edit, v2, 2);
    setLogSink(nullptr);
    int missingLines = 0, garbageLines = 0;
    for (const auto& line : log) {
        missingLines += line.find("no/such/picture.png") != std::string::npos;
        garbageLines += line.find("render-not-a-picture.png") != std::string::npos;
    }
    EXPECT_EQ(missingLines, 1) << "told once, however often it is drawn";
    EXPECT_EQ(garbageLines, 1);
    std::filesystem::remove(notAPicture);
}

TEST(RenderService, GeneratedMaterialsLookLikeTheirNames) {
    GraphBuilder g;
    int v1 = g.channel(L"V1");
    auto m = g.material(1);
    g.materialEvent(v1, 0, 10, m);

    auto s = still(g.edit, v1, 0, 140, 72);
    const int bar = 20; // seven bars of 20 pixels
    const Rgba expected[7] = {{191, 191, 191, 255}, {191, 191, 0, 255}, {0, 191, 191, 255}, {0, 191, 0, 255},
                              {191, 0, 191, 255},   {191, 0, 0, 255},   {0, 0, 191, 255}};
    for (int k = 0; k < 7; ++k) {
        Rgba p = at(*s, k * bar + bar / 2, 10);
        EXPECT_EQ(p.r, expected[k].r) << "bar " << k;
        EXPECT_EQ(p.g, expected[k].g) << "bar " << k;
        EXPECT_EQ(p.b, expected[k].b) << "bar " << k;
    }

    m->setSource("ramp");
    m->noteChanged();
    s = still(g.edit, v1, 0, 140, 72);
    EXPECT_LT(at(*s, 0, 30).r, 5);
    EXPECT_GT(at(*s, 139, 30).r, 250);
    EXPECT_NEAR(at(*s, 70, 30).r, 128, 3);
    EXPECT_EQ(at(*s, 70, 0).r, at(*s, 70, 71).r);

    m->setSource("grid");
    m->noteChanged();
    s = still(g.edit, v1, 0, 160, 90);
    EXPECT_GT(at(*s, 0, 45).r, 200) << "a line at the left edge";
    EXPECT_LT(at(*s, 5, 5).r, 10) << "black inside a cell";

    m->setSource("noise");
    m->noteChanged();
    auto n1 = still(g.edit, v1, 0);
    auto n2 = still(g.edit, v1, 1);
    double mean[3];
    meanOf(*n1, mean);
    EXPECT_NEAR(mean[0], 127.5, 12);
    EXPECT_EQ(*n1->pixels(), *n2->pixels()) << "the same noise on every frame";

    m->setSource("tone");
    m->noteChanged();
    s = still(g.edit, v1, 0);
    ASSERT_TRUE(s);
    EXPECT_EQ(at(*s, 10, 10).a, 0) << "sound shows nothing";
}

// Every video effect of the template catalogue and of the samples is a real operation, not a
// pass-through: on a picture of known colours each gives a picture of the frame's size.
TEST(RenderService, EveryCatalogueEffectHasAnOperation) {
    std::set<std::string> tags{"PixShader:Mix:split.fx"};
    for (const auto& t : EffectTemplateManager::instance().templates())
        if (t->getType() == kVideoChan)
            for (const auto& c : t->getComponents(0))
                tags.insert(c->tagTypeId().str());
    EXPECT_GE(tags.size(), 15u);
    OIIO::ImageBuf a = RenderPixels::blank(16, 9, 0.2f, 0.9f, 0.1f, 1.f);
    OIIO::ImageBuf b = RenderPixels::blank(16, 9, 0.5f, 0.1f, 0.7f, 1.f);
    EffectOperations::Frame frame;
    frame.width = 16;
    frame.height = 9;
    frame.progress = 0.5;
    for (const auto& tag : tags) {
        EffectInstance_opu4h5a4j fx(IdStamp(1, 0, 1));
        fx.setTagTypeId(String(tag.c_str()));
        fx.setParam("offset", 8);
        fx.setParam("left", 0.1);
        OIIO::ImageBuf out;
        EXPECT_TRUE(EffectOperations::apply(fx, {&a, &b, nullptr}, frame, out)) << tag;
        EXPECT_EQ(out.spec().width, 16) << tag;
        EXPECT_EQ(out.spec().height, 9) << tag;
        EXPECT_TRUE(EffectOperations::apply(fx, {nullptr, nullptr}, frame, out)) << tag << " with nothing in";
    }
    EffectInstance_opu4h5a4j unknown(IdStamp(1, 0, 2));
    unknown.setTagTypeId("Audio:Level:gain");
    OIIO::ImageBuf out;
    EXPECT_FALSE(EffectOperations::apply(unknown, {&a}, frame, out));
}

// Every sample edit's video graphs render; the pictures go to /tmp/render_stills for a look.
TEST(RenderService, SampleEditsRender) {
    const std::string dir = "/tmp/render_stills";
    std::filesystem::create_directories(dir);
    int written = 0;
    for (const char* name : {"chain", "multitrack", "shared", "transition", "mattes", "showcase"}) {
        std::string error;
        EditPtr edit =
            EditFile::open(std::string(NODEDESK_SOURCE_DIR "/samples/") + name + ".edit.json", error);
        ASSERT_TRUE(edit) << error;
        for (int c = 0; c < edit->numChans(); ++c) {
            if (edit->getChanType(c) != kVideoChan)
                continue;
            for (const auto& ev : edit->chan(c).cel->events()) {
                if (!ev.node)
                    continue;
                const double t = (ev.start + ev.end) / 2;
                EditGraphIterator it(edit, c, t, 0);
                ShotVideoMetadata m = edit->getVideoMetadata();
                m.width = 320;
                m.height = 180;
                auto s =
                    Render::VidRenderUtils::renderStill(Render::RenderContextRep(it, m, 0, 0, 1, true), true);
                ASSERT_TRUE(s) << name << " channel " << c << " at " << t;
                EXPECT_TRUE(writePng(*s, dir + "/" + name + "-ch" + std::to_string(c) + "-t" +
                                             std::to_string(static_cast<int>(t * 10)) + ".png"));
                ++written;
            }
        }
        VobManager::instance().reset();
    }
    EXPECT_GT(written, 10);
}

} // namespace

// A clip whose media can't be shown is a slate with its name on it, never black.
TEST(RenderService, SlatesShowTheClipsName) {
    auto named = RenderPixels::toSurface(GeneratedPictures::slate(200, 112, "interview_take3.mov", 7));
    auto blank = RenderPixels::toSurface(GeneratedPictures::slate(200, 112, "", 7));
    ASSERT_TRUE(named && blank);
    int differing = 0, lit = 0;
    for (int y = 0; y < 112; ++y)
        for (int x = 0; x < 200; ++x) {
            const Rgba a = at(*named, x, y), b = at(*blank, x, y);
            differing += a.r != b.r || a.g != b.g || a.b != b.b;
            lit += a.r + a.g + a.b > 30;
        }
    EXPECT_GT(differing, 100) << "the name is drawn on the band";
    EXPECT_LT(differing, 200 * 112 / 4) << "and only there";
    EXPECT_GT(lit, 200 * 112 / 2) << "the card is not black";
}
