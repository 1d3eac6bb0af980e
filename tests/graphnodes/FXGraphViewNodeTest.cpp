// View nodes: links held once, output numbering and the free connector, hit tests of connectors
// and bodies, names, and what the kinds draw in their thumbnail box.
#include <gtest/gtest.h>

#include <string>

#include "../support/BuiltGraphView.h"
#include "graphnodes/FXGraphViewColourMatteNode.h"
#include "graphnodes/FXGraphViewImageNode.h"
#include "graphnodes/FXGraphViewNode.h"
#include "graphview/FXGraphView.h"
#include "host/Canvas.h"
#include "host/EditorPreferences.h"
#include "host/ImageImportEffect.h"
#include "host/ToolkitApp.h"
#include "host/UifStd.h"
#include "host/VobManager.h"

namespace {

struct NodeFixture : BuiltGraphView<> {
    FXGraphView& open() {
        openView(800, 600, "node-test");
        view->setViewZoom(1.0);
        view->draw();
        return *view;
    }
    FXGraphViewNode* node(uint32_t n) { return view->findViewRecForNode(IdStamp(1, 0, n)); }
};

TEST_F(NodeFixture, OutputsAreNumberedInLinkOrderWithOneFreeConnectorMore) {
    auto root = g.effect(1, 3, "PixShader:Mix:mix3.fx");
    auto shared = g.effect(2, 0);
    for (unsigned i = 0; i < 3; ++i)
        GraphBuilder::link(root, i, shared);
    g.graphEvent(chan, 0, 10, root);
    open();
    FXGraphViewNode* s = node(2);
    FXGraphViewNode* r = node(1);
    ASSERT_EQ(s->outputs().size(), 3u);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(s->getOutputFor(r, i), i) << "outputs numbered in the order first linked";
        EXPECT_EQ(r->getInputFor(s, i), i);
    }
    EXPECT_FALSE(s->addInput(0, nullptr)) << "no source, no link";
    EXPECT_TRUE(r->addInput(1, s));
    EXPECT_EQ(s->outputs().size(), 3u) << "a link walked twice is held once";

    EXPECT_NE(s->getOutputPos(3).x, -1) << "the free connector";
    EXPECT_EQ(s->getOutputPos(4), XY<int>(-1, -1)) << "nothing beyond the free connector";

    // Three outputs connected draw four output connectors: each a fill and a half outline.
    view->setViewCentre(s->x(), s->y());
    CanvasRenderer& rend = view->canvas()->renderer();
    rend.clearClipRect();
    rend.clearRecording();
    rend.startRecording();
    s->draw();
    rend.stopRecording();
    int topEllipses = 0;
    for (const auto& p : rend.recorded())
        if (const auto* e = p.as<Glib::EllipseDescription>())
            if ((e->box.y1 + e->box.y2) / 2 == s->box_.y2 && e->style == 0)
                ++topEllipses;
    EXPECT_EQ(topEllipses, 4);
}

TEST_F(NodeFixture, HitTestsPreferInputsThenOutputsThenTheBody) {
    auto five = g.effect(1, 5, "PixShader:Mix:mix5.fx");
    GraphBuilder::link(five, 0, g.effect(2, 0));
    GraphBuilder::link(five, 1, g.effect(3, 3));
    g.graphEvent(chan, 0, 10, five);
    open();
    FXGraphViewNode* n = node(1);
    int connector = -1;
    for (int i = 0; i < 5; ++i) {
        const XY<int> p = n->getInputPos(i);
        const int hit = n->findConnector(p.x, p.y - 2, connector);
        if (i <= 2) {
            EXPECT_EQ(hit, FXGraphViewNode::HitInput) << "input " << i;
            EXPECT_EQ(connector, i);
        } else {
            EXPECT_NE(hit, FXGraphViewNode::HitInput) << "five inputs, two connected: only 0 to 2 answer";
        }
    }
    FXGraphViewNode* three = node(3);
    for (int i = 0; i < 3; ++i) {
        const XY<int> p = three->getInputPos(i);
        EXPECT_EQ(three->findConnector(p.x, p.y - 1, connector), FXGraphViewNode::HitInput);
        EXPECT_EQ(connector, i) << "three inputs answer all, connected or not";
    }
    const XY<int> out = n->getOutputPos(0);
    EXPECT_EQ(n->findConnector(out.x, out.y + 2, connector), FXGraphViewNode::HitOutput);
    EXPECT_EQ(connector, 0);
    const XY<double> centre = view->graphToViewSpace(n->x(), n->y());
    EXPECT_EQ(n->findConnector(static_cast<int>(centre.x), static_cast<int>(centre.y), connector),
              FXGraphViewNode::HitBody);
    EXPECT_EQ(n->findConnector(-1000, -1000, connector), FXGraphViewNode::HitNothing);
}

TEST_F(NodeFixture, BoxesNamesAndSwitchedOffNodes) {
    auto root = g.effect(1, 1, "PixShader:Colour:grade.fx");
    root->setName(L"Grade");
    auto below = g.effect(2, 1);
    GraphBuilder::link(root, 0, below);
    g.graphEvent(chan, 0, 10, root);
    open();
    FXGraphViewNode* r = node(1);
    EXPECT_DOUBLE_EQ(r->getRight() - r->getLeft(), 0.125);
    EXPECT_DOUBLE_EQ(r->getTop() - r->getBottom(), 0.125 / (16.0 / 9.0) + 0.025);
    below->setName(L"Under");
    EXPECT_EQ(std::wstring(r->getName().c_str()), L"V1 : Grade") << "a root is known by its channel";
    EXPECT_EQ(std::wstring(node(2)->getName().c_str()), L"V1 : Under");
    EXPECT_TRUE(r->showInputLabels());

    root->setEnabled(false);
    view->recalcNodeList(false);
    r = node(1);
    EXPECT_EQ(r->getColour(), Colour(0.4, 0.4, 0.4)) << "a switched-off effect is grey";
    EXPECT_FALSE(r->showInputLabels());
    EXPECT_TRUE(r->showOutputLabels()) << "its own output still takes connections";
    EXPECT_FALSE(node(2)->showInputLabels());
    EXPECT_FALSE(node(2)->showOutputLabels()) << "below a switched-off effect nothing is wired";
}

TEST_F(NodeFixture, AMatteWithoutParametersDrawsNothingInItsBox) {
    auto root = g.effect(1, 2, "PixShader:Mix:over.fx");
    auto plain = g.effect(2, 0, "PixShader:Mattes:flatcol.fx");
    auto blue = g.effect(3, 0, "PixShader:Mattes:flatcol.fx");
    blue->setParam("blue", 1.0);
    GraphBuilder::link(root, 0, plain);
    GraphBuilder::link(root, 1, blue);
    g.graphEvent(chan, 0, 10, root);
    open();
    auto fills = [&](FXGraphViewNode* n) {
        view->setViewCentre(n->x(), n->y());
        CanvasRenderer& rend = view->canvas()->renderer();
        rend.clearClipRect();
        rend.clearRecording();
        rend.startRecording();
        n->draw();
        rend.stopRecording();
        std::vector<Glib::RectDescription> inBox;
        for (const auto& p : rend.recorded())
            if (const auto* r = p.as<Glib::RectDescription>())
                if (r->filled && r->box == n->thumbBox())
                    inBox.push_back(*r);
        return inBox;
    };
    EXPECT_TRUE(fills(node(2)).empty());
    const auto b = fills(node(3));
    ASSERT_EQ(b.size(), 1u);
    EXPECT_EQ(b[0].colour.b, 1.0);
    EXPECT_EQ(b[0].colour.r, 0.0);
}

TEST_F(NodeFixture, ImageNodesComposeOnACheckerboardAndKeepWhatTheyMade) {
    auto root = g.effect(1, 1, "PixShader:Blur:gauss.fx");
    auto image = Zk::make<ImageImportEffect>(IdStamp(1, 0, 2));
    image->setFile(std::string(NODEDESK_SOURCE_DIR) + "/samples/images/missing-file.png");
    g.edit->addNode(image);
    GraphBuilder::link(root, 0, image);
    g.graphEvent(chan, 0, 10, root);
    open();
    auto* n = dynamic_cast<FXGraphViewImageNode*>(node(2));
    ASSERT_TRUE(n);
    view->setViewCentre(n->x(), n->y());
    view->draw();
    ASSERT_TRUE(n->image()) << "a missing file leaves the checkerboard";
    const auto& img = *n->image();
    ASSERT_GT(img.width(), 15);
    EXPECT_NE(img.pixel(0, 0), img.pixel(img.width() / 15, 0)) << "tiles alternate";
    EXPECT_EQ(img.pixel(0, 0), img.pixel(2 * (img.width() / 15), 0));
    const Zk::Image::Surface* kept = n->image().get();
    view->draw();
    EXPECT_EQ(n->image().get(), kept) << "same file, same size: nothing reloaded";

    image->setFile(std::string(NODEDESK_SOURCE_DIR) + "/samples/images/checker.png");
    view->draw();
    EXPECT_NE(n->image().get(), kept) << "a new file is loaded";
}

} // namespace
