// The canvas: recorded primitives, clip and translation, and pixels written headless.
#include <gtest/gtest.h>

#include <QImage>
#include <cstdio>

#include "host/Canvas.h"
#include "host/GlibDraw.h"
#include "host/GlibFonts.h"
#include "host/StandardPanel.h"
#include "host/StateSaver.h"
#include "host/UpdateDeferrer.h"

namespace {

class Painted : public Glob {
public:
    explicit Painted(const GlobCreationInfo& i) : Glob(i) {}
    void drawBackground() override {
        Glob::drawBackground();
        Glib::drawRect(Colour(1, 0, 0), Zk::Box<int>{0, 0, 10, 10});
    }
};

} // namespace

TEST(Canvas, RecordsPrimitivesWithTheirState) {
    Glob g(GlobCreationInfo(100, 60));
    CanvasRenderer& r = g.canvas()->renderer();
    ASSERT_TRUE(r.isReadyToRender());
    r.startRecording();
    g.makeCanvasCurrent();
    Glib::drawFrame(Colour(0, 1, 0), Zk::Box<int>{5, 6, 20, 30}, 2);
    r.setClipRect(Zk::Box<int>{0, 0, 50, 50});
    r.translateCanvas(3, 4);
    r.setTranslucency(0.5);
    Glib::BezierCurveDescription c;
    c.p0 = XY<int>(1, 1);
    c.c0 = XY<int>(10, 1);
    c.c1 = XY<int>(10, 20);
    c.p1 = XY<int>(20, 20);
    c.thickness = 3;
    r.renderPrimitive(c);
    Glib::drawRoundedRect(r, Colour(1, 1, 1), Colour(0, 0, 0), Zk::Box<int>{0, 0, 8, 8}, 2, 0, 1);

    const auto& rec = r.recorded();
    ASSERT_EQ(rec.size(), 4u);
    const auto* frame = rec[0].as<Glib::RectDescription>();
    ASSERT_NE(frame, nullptr);
    EXPECT_FALSE(frame->filled);
    EXPECT_EQ(frame->lineWidth, 2);
    EXPECT_EQ(frame->box, (Zk::Box<int>{5, 6, 20, 30}));
    EXPECT_EQ(frame->colour, (NormalisedRGB{0, 1, 0, 1}));
    const auto* curve = rec[1].as<Glib::BezierCurveDescription>();
    ASSERT_NE(curve, nullptr);
    EXPECT_EQ(curve->boundingBox(), (Zk::Box<int>{-2, -2, 23, 23}))
        << "the points' box grown by the thickness";
    EXPECT_EQ(rec[1].clip, (Zk::Box<int>{0, 0, 50, 50}));
    EXPECT_EQ(rec[1].translation, XY<int>(3, 4));
    EXPECT_DOUBLE_EQ(rec[1].translucency, 0.5);
    ASSERT_NE(rec[2].as<Glib::RectDescription>(), nullptr);
    EXPECT_TRUE(rec[2].as<Glib::RectDescription>()->filled) << "a rounded rect is its fill, then its frame";
    EXPECT_EQ(rec[2].as<Glib::RectDescription>()->cornerRadius, 2);
    EXPECT_FALSE(rec[3].as<Glib::RectDescription>()->filled);

    r.addModifiedArea(Zk::Box<int>{0, 0, 0, 5});
    EXPECT_TRUE(r.modifiedAreas().empty()) << "a box of no area changes nothing";
}

TEST(Canvas, StateSaverRestoresCurrentCanvasAndClip) {
    Glob a(GlobCreationInfo(50, 50));
    Glob b(GlobCreationInfo(50, 50));
    a.makeCanvasCurrent();
    a.canvas()->renderer().setClipRect(Zk::Box<int>{1, 1, 9, 9});
    {
        Glib::StateSaver saved;
        a.canvas()->renderer().setClipRect(Zk::Box<int>{0, 0, 2, 2});
        a.canvas()->renderer().translateCanvas(5, 5);
        b.makeCanvasCurrent();
        EXPECT_EQ(Glib::currentRenderer(), &b.canvas()->renderer());
    }
    EXPECT_EQ(Glib::currentRenderer(), &a.canvas()->renderer());
    EXPECT_EQ(a.canvas()->renderer().getClipRect(), (Zk::Box<int>{1, 1, 9, 9}));
    EXPECT_EQ(a.canvas()->renderer().getTranslation(), XY<int>(0, 0));

    Glob* gone = new Glob(GlobCreationInfo(10, 10));
    {
        Glib::StateSaver saved;
        gone->makeCanvasCurrent();
        Glib::StateSaver inner;
        delete gone;
    }
    EXPECT_EQ(Glib::currentRenderer(), &a.canvas()->renderer())
        << "a deleted widget's canvas is not restored";
}

TEST(Canvas, FitTextShortensWithDots) {
    FontDesc f = Glib::getDefaultFont();
    WString longText(L"a rather long node name");
    EXPECT_EQ(Glib::fitTextToWidth(longText, f, 10000), longText);
    WString fitted = Glib::fitTextToWidth(longText, f, 60);
    EXPECT_LE(Glib::textWidth(fitted, f), 60);
    EXPECT_TRUE(fitted.view().size() > 2 && fitted.view().substr(fitted.size() - 2) == L"..");
    EXPECT_TRUE(Glib::fitTextToWidth(longText, f, 1).empty());
    int off = getFontYOffset(20, f);
    EXPECT_GT(off, 0);
    EXPECT_LT(off, 20);
}

TEST(Canvas, HeadlessPngHasBackgroundWhereItBelongs) {
    Palette pal(Colour(0.0, 0.0, 1.0));
    GlobCreationInfo info(80, 60);
    info.palette = pal;
    Painted g(info);
    g.draw();
    EXPECT_EQ(g.canvas()->pixel(2, 2) & 0xffffff, 0xff0000u) << "the red box sits at the bottom left";
    EXPECT_EQ(g.canvas()->pixel(70, 50) & 0xffffff, 0x0000ffu);

    std::string path = std::string(NODEDESK_BINARY_DIR) + "/toolkit-snapshot.png";
    ASSERT_TRUE(g.saveSnapshot(path.c_str()));
    QImage img(QString::fromStdString(path));
    ASSERT_EQ(img.size(), QSize(80, 60));
    EXPECT_EQ(img.pixelColor(2, 57), QColor(255, 0, 0)) << "y upward: the bottom rows of the picture";
    EXPECT_EQ(img.pixelColor(2, 2), QColor(0, 0, 255));
    std::remove(path.c_str());
}

// Within a deferral the primitives share one painter; clip, translation and translucency changes
// between them must still take effect, and the result must be what painting one by one gives.
TEST(Canvas, ADeferredRepaintPaintsWhatPrimitiveByPrimitiveDoes) {
    auto paintAll = [](Glob& g) {
        CanvasRenderer& r = g.canvas()->renderer();
        g.makeCanvasCurrent();
        Glib::drawRect(r, Colour(0, 0, 1), Zk::Box<int>{0, 0, 40, 40});
        r.setClipRect(Zk::Box<int>{5, 5, 20, 20});
        Glib::drawRect(r, Colour(1, 0, 0), Zk::Box<int>{0, 0, 40, 40});
        r.clearClipRect();
        r.translateCanvas(20, 0);
        r.setTranslucency(0.5);
        Glib::drawRect(r, Colour(0, 1, 0), Zk::Box<int>{0, 20, 10, 30});
        r.setTranslucency(1.0);
        r.translateCanvas(-20, 0);
    };
    Glob one(GlobCreationInfo(40, 40)), deferred(GlobCreationInfo(40, 40));
    ASSERT_TRUE(one.canvas()->renderer().isReadyToRender());
    ASSERT_TRUE(deferred.canvas()->renderer().isReadyToRender());
    paintAll(one);
    unsigned midway = 0;
    {
        Glib::UpdateDeferrer defer(deferred.canvas(), 1);
        paintAll(deferred);
        midway = deferred.canvas()->pixel(10, 10);
    }
    EXPECT_EQ(midway, one.canvas()->pixel(10, 10)) << "a read in the middle sees what was painted";
    for (int y = 0; y < 40; y += 3)
        for (int x = 0; x < 40; x += 3)
            ASSERT_EQ(deferred.canvas()->pixel(x, y), one.canvas()->pixel(x, y)) << x << "," << y;
    EXPECT_EQ(one.canvas()->pixel(10, 10) & 0xffffff, 0xff0000u) << "the clipped red";
    EXPECT_EQ(one.canvas()->pixel(2, 2) & 0xffffff, 0x0000ffu) << "outside the clip, blue";
}

// A kept copy of the surface comes back box by box, and only while it still fits the surface.
TEST(Canvas, AKeptSurfaceComesBackBoxByBoxWhileItFits) {
    Glob g(GlobCreationInfo(40, 30));
    CanvasRenderer& r = g.canvas()->renderer();
    ASSERT_TRUE(r.isReadyToRender());
    Canvas& c = *g.canvas();
    g.makeCanvasCurrent();
    Glib::drawRect(r, Colour(0, 0, 1), Zk::Box<int>{0, 0, 40, 30});
    EXPECT_FALSE(c.hasKeptSurface());
    c.keepSurface();
    Glib::drawRect(r, Colour(1, 0, 0), Zk::Box<int>{0, 0, 40, 30});
    ASSERT_TRUE(c.restoreKept(Zk::Box<int>{10, 5, 20, 15}));
    EXPECT_EQ(c.pixel(12, 7) & 0xffffff, 0x0000ffu) << "inside the box: the kept blue";
    EXPECT_EQ(c.pixel(19, 14) & 0xffffff, 0x0000ffu);
    EXPECT_EQ(c.pixel(20, 15) & 0xffffff, 0xff0000u) << "the box's far edges are outside it";
    EXPECT_EQ(c.pixel(5, 25) & 0xffffff, 0xff0000u);
    EXPECT_TRUE(c.restoreKept(Zk::Box<int>{-10, -10, -1, -1})) << "a box off the surface puts nothing back";

    g.setDimensions(50, 30);
    ASSERT_TRUE(r.isReadyToRender());
    EXPECT_FALSE(c.hasKeptSurface()) << "a copy of another size no longer fits";
    EXPECT_FALSE(c.restoreKept(Zk::Box<int>{0, 0, 10, 10}));
    c.dropKeptSurface();
}
