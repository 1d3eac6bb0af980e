// Painting the graph, read back from the recording canvas: the order of the passes, the colours
// of the two connection passes, the curve forms, what small scales leave out, and the changed
// areas fed with each primitive's clipped box.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "../support/BuiltGraphView.h"
#include "graphnodes/FXGraphViewNode.h"
#include "graphview/FXGraphView.h"
#include "host/Canvas.h"
#include "host/EditorPreferences.h"
#include "host/Palette.h"
#include "host/ToolkitApp.h"
#include "host/UpdateDeferrer.h"
#include "host/VobManager.h"

namespace {

struct DrawFixture : BuiltGraphView<> {
    void SetUp() override {
        BuiltGraphView::SetUp();
        root = g.effect(1, 2, "PixShader:Mix:over.fx");
        GraphBuilder::link(root, 0, g.effect(2, 0, "PixShader:Blur:gauss.fx"));
        g.graphEvent(chan, 0, 10, root);
        openView(800, 600, "drawing-test");
    }
    const std::vector<Glib::RecordedPrimitive>& record() {
        CanvasRenderer& r = view->canvas()->renderer();
        r.clearRecording();
        r.startRecording();
        {
            Glib::UpdateDeferrer hold(view->canvas(), 1);
            view->drawBackground();
            areas = r.modifiedAreas();
            clip = r.getClipRect();
        }
        r.stopRecording();
        return r.recorded();
    }
    template <class D>
    std::vector<size_t> indicesOf(const std::vector<Glib::RecordedPrimitive>& rec) {
        std::vector<size_t> out;
        for (size_t i = 0; i < rec.size(); ++i)
            if (rec[i].as<D>())
                out.push_back(i);
        return out;
    }
    std::vector<Zk::Box<int>> areas;
    Zk::Box<int> clip;
    Zk::Ptr<EffectInstance_opu4h5a4j> root;
};

TEST_F(DrawFixture, PassesRunInOrderAndConnectionsTakeTheirSourcesColour) {
    view->setViewZoom(1.0);
    view->setViewCentre(0, -0.1);
    ASSERT_GT(view->physicalScale(), 300) << "a scale at which connectors, titles and dots all show";
    // Connections are drawn between the boxes of the last draw, so the first draw at a new scale
    // places the nodes and the second is the one to read.
    record();
    const auto& rec = record();
    const auto curves = indicesOf<Glib::BezierCurveDescription>(rec);
    ASSERT_EQ(curves.size(), 2u) << "one connection, outline then main";
    const auto* outline = rec[curves[0]].as<Glib::BezierCurveDescription>();
    const auto* main = rec[curves[1]].as<Glib::BezierCurveDescription>();
    FXGraphViewNode* source = view->findViewRecForNode(IdStamp(1, 0, 2));
    EXPECT_EQ(main->colour, fromColour(source->getColour()));
    EXPECT_EQ(outline->colour, fromColour(Palette(source->getColour()).window(-3)));
    EXPECT_EQ(outline->thickness, main->thickness + 1);

    // Nodes lie between the two passes: their frames, fills, connectors and titles.
    const auto rects = indicesOf<Glib::RectDescription>(rec);
    const auto texts = indicesOf<Glib::TextDescription>(rec);
    const auto dots = indicesOf<Glib::EllipseDescription>(rec);
    ASSERT_FALSE(texts.empty()) << "titles show at this scale";
    ASSERT_FALSE(dots.empty()) << "connectors show at this scale";
    EXPECT_TRUE(rec[0].as<Glib::RectDescription>()) << "the background comes first";
    for (size_t i : texts) {
        EXPECT_GT(i, curves[0]);
        EXPECT_LT(i, curves[1]);
    }
    const size_t nodeRects =
        std::count_if(rects.begin(), rects.end(), [&](size_t i) { return i > curves[0] && i < curves[1]; });
    EXPECT_GE(nodeRects, 2u * 3u) << "each node: outer frame, inner frame, fill";
    // The main curve runs from the source's output (its top) to the root's input 0 (its bottom).
    FXGraphViewNode* consumer = view->findViewRecForNode(IdStamp(1, 0, 1));
    EXPECT_EQ(main->p0, source->getOutputPos(0));
    EXPECT_EQ(main->p1, consumer->getInputPos(0));

    // Every primitive that was drawn marked its box as changed, inside the clip.
    EXPECT_GE(areas.size(), rec.size() - 1) << "one changed area per primitive (the margins' fill aside)";
    size_t insideClip = 0;
    for (const auto& a : areas)
        if (a.x1 >= clip.x1 && a.x2 <= clip.x2 && a.y1 >= clip.y1 && a.y2 <= clip.y2)
            ++insideClip;
    EXPECT_GE(insideClip, areas.size() - 1) << "each area is the primitive's box cut to the clip";
}

TEST_F(DrawFixture, SmallScalesDropConnectorsAndTitles) {
    view->resize(200, 150);
    view->setViewZoom(0.0);
    ASSERT_LT(view->physicalScale() * 0.025, 3.0);
    record();
    const auto& rec = record();
    for (size_t i : indicesOf<Glib::TextDescription>(rec))
        for (const auto& n : view->nodes())
            EXPECT_NE(std::wstring(rec[i].as<Glib::TextDescription>()->text.c_str()),
                      std::wstring(n->getName().c_str()))
                << "no titles below 3 pixels of bar";
    EXPECT_TRUE(indicesOf<Glib::EllipseDescription>(rec).empty()) << "no connectors below a radius of 3";
    EXPECT_EQ(indicesOf<Glib::BezierCurveDescription>(rec).size(), 2u) << "connections always show";
}

TEST_F(DrawFixture, CurvesGoForwardAsOneAndBackwardAsTwo) {
    auto curvesOf = [&](XY<int> from, XY<int> to) {
        CanvasRenderer& r = view->canvas()->renderer();
        r.clearClipRect();
        r.clearRecording();
        r.startRecording();
        view->drawConnection(from, to, Colour(1, 0, 0), 2);
        r.stopRecording();
        std::vector<Glib::BezierCurveDescription> out;
        for (const auto& p : r.recorded())
            if (const auto* c = p.as<Glib::BezierCurveDescription>())
                out.push_back(*c);
        return out;
    };
    auto fwd = curvesOf(XY<int>(100, 100), XY<int>(140, 201));
    ASSERT_EQ(fwd.size(), 1u);
    EXPECT_EQ(fwd[0].c0, XY<int>(100, 150));
    EXPECT_EQ(fwd[0].c1, XY<int>(140, 150)) << "middle by integer halves";

    const int stub = static_cast<int>(view->physicalScale() * 0.0625);
    auto back = curvesOf(XY<int>(100, 300), XY<int>(141, 200));
    ASSERT_EQ(back.size(), 2u);
    EXPECT_EQ(back[0].p1, XY<int>(120, 250));
    EXPECT_EQ(back[0].c0, XY<int>(100, 300 + stub));
    EXPECT_EQ(back[0].c1, XY<int>(120, 300 + stub));
    EXPECT_EQ(back[1].p0, XY<int>(120, 250));
    EXPECT_EQ(back[1].c0, XY<int>(120, 200 - stub));
    EXPECT_EQ(back[1].c1, XY<int>(141, 200 - stub));

    view->setOrientation(VidRouting::Orientations::LeftToRight, false);
    auto straight = curvesOf(XY<int>(50, 10), XY<int>(50, 90));
    ASSERT_EQ(straight.size(), 1u) << "equal x is not backwards";
    EXPECT_EQ(straight[0].c0, XY<int>(50, 10));
    EXPECT_EQ(straight[0].c1, XY<int>(50, 90));
}

TEST_F(DrawFixture, AGraphForASpanTheEditNoLongerReachesIsNotPainted) {
    view->setViewZoom(1.0);
    const size_t full = record().size();
    g.edit->setTimes(20, 30);
    view->calcMorphologyExtents(1.0);
    ASSERT_LE(view->morphologyEnd(), g.edit->getStartTime());
    EXPECT_LT(record().size(), full);
    EXPECT_TRUE(indicesOf<Glib::BezierCurveDescription>(record()).empty()) << "only the background";
}

} // namespace
