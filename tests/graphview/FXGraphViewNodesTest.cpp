// The node list: the walk from each root, the kind of view node for each graph node, cycles and
// shared nodes, carrying positions over a rebuild, the index against the plain scan, and the
// edge rules of finding a node under a point.
#include <gtest/gtest.h>

#include <string>
#include <typeinfo>

#include "../support/BuiltGraphView.h"
#include "graphnodes/FXGraphViewAliasNode.h"
#include "graphnodes/FXGraphViewColourMatteNode.h"
#include "graphnodes/FXGraphViewImageNode.h"
#include "graphnodes/FXGraphViewMatNode.h"
#include "graphnodes/FXGraphViewThumbNode.h"
#include "graphview/FXGraphView.h"
#include "host/AliasedInputEffect.h"
#include "host/EditorPreferences.h"
#include "host/ImageImportEffect.h"
#include "host/ToolkitApp.h"
#include "host/VobManager.h"

namespace {

struct OpenView : FXGraphView {
    explicit OpenView(const InitArgs& a) : FXGraphView(a) {}
    void holdConnection(const Zk::Ptr<FXGraphViewNode>& n) { draggingIFNode_ = n; }
    void add(const Zk::Ptr<FXGraphViewNode>& n) { nodes_.push_back(n); }
};

struct ListFixture : BuiltGraphView<OpenView> {
    OpenView& open() { return openView(600, 400, "node-list-test"); }
    std::string kindOf(const IdStamp& id) const {
        FXGraphViewNode* n = view->findViewRecForNode(id);
        if (!n)
            return "none";
        if (dynamic_cast<FXGraphViewMatNode*>(n))
            return "mat";
        if (dynamic_cast<FXGraphViewThumbNode*>(n))
            return "thumb";
        if (dynamic_cast<FXGraphViewImageNode*>(n))
            return "image";
        if (dynamic_cast<FXGraphViewColourMatteNode*>(n))
            return "matte";
        if (dynamic_cast<FXGraphViewAliasNode*>(n))
            return "alias";
        return "plain";
    }
};

TEST_F(ListFixture, EachGraphNodeGetsItsKindInWalkOrder) {
    auto root = g.effect(1, 6, "PixShader:Mix:mix3.fx");
    GraphBuilder::link(root, 0, g.material(2));
    auto image = Zk::make<ImageImportEffect>(IdStamp(1, 0, 3));
    g.edit->addNode(image);
    GraphBuilder::link(root, 1, image);
    auto alias = Zk::make<AliasedInputEffect>(IdStamp(1, 0, 4));
    g.edit->addNode(alias);
    GraphBuilder::link(root, 2, alias);
    GraphBuilder::link(root, 3, g.effect(5, 0, "PixShader:Mattes:flatcol.fx"));
    GraphBuilder::link(root, 4, g.effect(6, 0, "PixShader:Mattes:gradients:linear.fx"));
    GraphBuilder::link(root, 5, g.effect(7, 0, "PixShader:Blur:gauss.fx"));
    g.graphEvent(chan, 0, 10, root);
    OpenView& v = open();

    ASSERT_EQ(v.nodes().size(), 7u);
    const char* expected[] = {"plain", "mat", "image", "alias", "matte", "thumb", "plain"};
    for (size_t i = 0; i < 7; ++i) {
        EXPECT_EQ(v.nodes()[i]->getId(), IdStamp(1, 0, static_cast<uint32_t>(i + 1)))
            << "a node stands before its inputs, inputs in rising order";
        EXPECT_EQ(kindOf(IdStamp(1, 0, static_cast<uint32_t>(i + 1))), expected[i]) << "node " << i + 1;
    }
    EXPECT_TRUE(v.nodes()[0]->highlighted_) << "the channel's root is the primary node";
    EXPECT_EQ(v.getPrimaryNodePtr(), v.nodes()[0].get());
    for (size_t i = 1; i < 7; ++i)
        EXPECT_FALSE(v.nodes()[i]->highlighted_);
    EXPECT_FALSE(v.findViewRecForNode(IdStamp(1, 0, 4))->showInputLabels()) << "an alias takes no labels";
}

TEST_F(ListFixture, CyclesEndAndSharedNodesAreMadeOnceAndLinkedTwice) {
    // root -> a -> b -> a (a cycle); root's second input also takes b.
    auto root = g.effect(1, 2, "PixShader:Mix:over.fx");
    auto a = g.effect(2, 1);
    auto b = g.effect(3, 1);
    GraphBuilder::link(root, 0, a);
    GraphBuilder::link(a, 0, b);
    GraphBuilder::link(b, 0, a);
    GraphBuilder::link(root, 1, b);
    g.graphEvent(chan, 0, 10, root);
    OpenView& v = open();

    ASSERT_EQ(v.nodes().size(), 3u) << "one view node per graph node";
    FXGraphViewNode* vr = v.findViewRecForNode(root->getId());
    FXGraphViewNode* va = v.findViewRecForNode(a->getId());
    FXGraphViewNode* vb = v.findViewRecForNode(b->getId());
    ASSERT_TRUE(vr && va && vb);
    EXPECT_EQ(va->getInputNode(0), vb);
    EXPECT_EQ(vb->getInputNode(0), va) << "the node that closes the cycle still gets its parent link";
    EXPECT_EQ(vr->getInputNode(0), va);
    EXPECT_EQ(vr->getInputNode(1), vb);
    EXPECT_GE(vb->getOutputFor(va, 0), 0);
    EXPECT_GE(vb->getOutputFor(vr, 1), 0);
    EXPECT_EQ(vb->outputs().size(), 2u) << "linked from both parents, each link once";

    v.flushNodeList();
    EXPECT_EQ(v.createViewNodeRecs(), 3) << "a node reached twice is counted once";
}

TEST_F(ListFixture, RebuildsCarryPositionsInManualModeAndTidyWhenTheCountChanges) {
    auto root = g.effect(1, 2, "PixShader:Mix:over.fx");
    GraphBuilder::link(root, 0, g.effect(2, 0));
    GraphBuilder::link(root, 1, g.effect(3, 0));
    g.graphEvent(chan, 0, 10, root);
    OpenView& v = open();
    ASSERT_TRUE(v.manualPosMode().getVal());
    ASSERT_EQ(v.nodes().size(), 3u);

    v.findViewRecForNode(IdStamp(1, 0, 2))->setPos(5, 6, false);
    v.recalcNodeList(false);
    EXPECT_EQ(v.findViewRecForNode(IdStamp(1, 0, 2))->x(), 5) << "same nodes, manual mode: nothing moves";
    EXPECT_EQ(v.findViewRecForNode(IdStamp(1, 0, 2))->y(), 6);

    v.setIndexedRebuild(false);
    v.recalcNodeList(false);
    EXPECT_EQ(v.findViewRecForNode(IdStamp(1, 0, 2))->x(), 5) << "the plain scan carries the same way";
    v.setIndexedRebuild(true);

    // A node that takes another's place keeps the count: positions stay, the newcomer takes
    // what was last drawn at its place.
    v.draw();
    GraphBuilder::link(root, 1, g.effect(4, 0));
    g.edit->removeNode(IdStamp(1, 0, 3)); // else it stays on as an orphan of its own
    const XY<double> before(v.findViewRecForNode(IdStamp(1, 0, 3))->x(),
                            v.findViewRecForNode(IdStamp(1, 0, 3))->y());
    v.recalcNodeList(false);
    ASSERT_EQ(v.nodes().size(), 3u);
    EXPECT_EQ(v.findViewRecForNode(IdStamp(1, 0, 2))->x(), 5);
    EXPECT_EQ(v.findViewRecForNode(IdStamp(1, 0, 4))->x(), before.x)
        << "a replaced node stands where its predecessor stood";
    EXPECT_EQ(v.findViewRecForNode(IdStamp(1, 0, 4))->y(), before.y);

    root->setNumInputs(3);
    GraphBuilder::link(root, 2, g.effect(6, 0));
    v.recalcNodeList(false);
    EXPECT_EQ(v.nodes().size(), 4u);
    FXGraphViewNode* moved = v.findViewRecForNode(IdStamp(1, 0, 2));
    EXPECT_FALSE(moved->x() == 5 && moved->y() == 6) << "a count that changed tidies the graph";
    EXPECT_EQ(moved->y(), v.findViewRecForNode(IdStamp(1, 0, 6))->y()) << "tidied: inputs side by side";
}

TEST_F(ListFixture, AConnectionDragFreezesTheList) {
    auto root = g.effect(1, 1);
    GraphBuilder::link(root, 0, g.effect(2, 0));
    g.graphEvent(chan, 0, 10, root);
    OpenView& v = open();
    Zk::Ptr<FXGraphViewNode> held = v.nodes()[0];
    const FXGraphViewNode* before = v.nodes()[1].get();
    v.holdConnection(held);
    GraphBuilder::link(root, 0, g.effect(3, 0));
    v.recalcNodeList(true);
    EXPECT_EQ(v.nodes()[1].get(), before) << "no rebuild under a loose connection";
    EXPECT_EQ(v.draggingIFNode(), held) << "the held node survives";
}

TEST_F(ListFixture, TheIndexGivesTheScansFirstMatchAndKeepsNodesWhoseGraphNodeWent) {
    auto root = g.effect(1, 2, "PixShader:Mix:over.fx");
    auto gone = g.effect(2, 0);
    GraphBuilder::link(root, 0, gone);
    GraphBuilder::link(root, 1, g.effect(3, 0));
    g.graphEvent(chan, 0, 10, root);
    OpenView& v = open();
    for (const auto& n : v.nodes())
        EXPECT_EQ(v.findViewRecForNode(n->getId()), v.findViewRecForNodeByScan(n->getId()));

    // A second view node of an id already listed, added behind the walk's back: the earlier wins.
    EditGraphIterator it = v.getIteratorFor(IdStamp(1, 0, 3), 9);
    ASSERT_TRUE(it.isValid());
    Zk::Ptr<FXGraphViewNode> twin(new FXGraphViewNode(&v, it));
    FXGraphViewNode* first = v.findViewRecForNode(IdStamp(1, 0, 3));
    v.add(twin);
    EXPECT_EQ(v.findViewRecForNode(IdStamp(1, 0, 3)), first);
    EXPECT_EQ(v.findViewRecForNodeByScan(IdStamp(1, 0, 3)), first);
    EXPECT_EQ(v.findViewRecForNode(IdStamp(9, 9, 9)), nullptr);

    FXGraphViewNode* dying = v.findViewRecForNode(gone->getId());
    root->input(0).node = nullptr;
    g.edit->removeNode(gone->getId());
    gone = nullptr;
    EXPECT_EQ(v.findViewRecForNode(IdStamp(1, 0, 2)), dying) << "found by the id its record keeps";
    EXPECT_EQ(dying->pos_.getNodeId(), IdStamp(1, 0, 2));
}

TEST_F(ListFixture, FindingNodesAtTheWindowsEdges) {
    auto root = g.effect(1, 0);
    g.graphEvent(chan, 0, 10, root);
    OpenView& v = open();
    ASSERT_EQ(v.nodes().size(), 1u);
    FXGraphViewNode* n = v.nodes()[0].get();
    v.draw();
    const Zk::Box<int> w = v.getWindowPos();

    // Put the node's centre on the window's top right corner.
    const XY<double> corner = v.viewToGraphSpace(w.x2, w.y2);
    n->setPos(corner.x, corner.y, false);
    v.draw();
    EXPECT_EQ(v.findNodeAt(w.x2, w.y2), n) << "the window's edge counts as inside";
    EXPECT_EQ(v.findNodeAt(w.x2 + 1, w.y2), nullptr);
    EXPECT_EQ(v.findNodeAtPos(XY<double>(w.x2, w.y2)), nullptr) << "right and top edges are outside";
    EXPECT_EQ(v.findNodeAtPos(XY<double>(w.x2 - 1, w.y2 - 1)), root) << "just inside, on the body";

    const XY<double> centre = v.graphToViewSpace(v.getViewCX(), v.getViewCY());
    n->setPos(v.getViewCX(), v.getViewCY(), false);
    v.draw();
    EXPECT_EQ(v.findNodeAt(static_cast<int>(centre.x), static_cast<int>(centre.y)), n);
    n->onScreen_ = false;
    EXPECT_EQ(v.findNodeAt(static_cast<int>(centre.x), static_cast<int>(centre.y)), nullptr)
        << "only nodes the last draw found on screen";
}

TEST_F(ListFixture, AnEmptyEditHasAnEmptyListAndBringingNothingIntoViewChangesNothing) {
    OpenView& v = open();
    EXPECT_TRUE(v.nodes().empty());
    EXPECT_EQ(v.getPrimaryNodePtr(), nullptr);
    const double zoom = v.getViewZoom().getVal();
    const double cx = v.getViewCX(), cy = v.getViewCY();
    v.ensureNodeListVisible(Vector<IdStamp>(), RefitAlways);
    EXPECT_EQ(v.getViewZoom().getVal(), zoom);
    EXPECT_EQ(v.getViewCX(), cx);
    EXPECT_EQ(v.getViewCY(), cy);
}

} // namespace
