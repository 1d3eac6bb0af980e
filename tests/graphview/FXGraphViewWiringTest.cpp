// Connection editing on the canvas: picking connections up at either end, carrying them, joining
// them where the host allows, the cases that do nothing, letting go on empty canvas, and removing
// nodes. Each change is one undo step; undo gives the saved edit back byte for byte and redo the
// changed one.
#include <gtest/gtest.h>

#include <string>

#include "../support/BuiltGraphView.h"
#include "../support/PointerDriver.h"
#include "../support/ViewPoints.h"
#include "graphnodes/FXGraphViewNode.h"
#include "host/TransitStatus.h"
#include "host/UserMessages.h"
#include "refhost/edit/EditFile.h"

namespace {

struct Wiring : BuiltGraphView<> {
    Zk::Ptr<EffectInstance_opu4h5a4j> root, mid, spare, sound, dissolve;
    Zk::Ptr<MaterialUsageNode> src, src2;

    // V1: root <- (mid <- src, src2, free); mid's input 1 is free. V2: spare <- sound, an effect
    // of audio with a free input. V3: a dissolve with both inputs free.
    void buildTree() {
        root = g.effect(1, 3);
        mid = g.effect(2, 2);
        src = g.material(3);
        src2 = g.material(4);
        GraphBuilder::link(root, 0, mid);
        GraphBuilder::link(mid, 0, src);
        GraphBuilder::link(root, 1, src2);
        g.graphEvent(chan, 0, 10, root);
        spare = g.effect(5, 1);
        sound = g.effect(6, 1);
        sound->setChanType(kAudioChan);
        GraphBuilder::link(spare, 0, sound);
        g.graphEvent(g.channel(L"V2"), 0, 10, spare);
        dissolve = g.effect(7, 2, "Transition:Dissolve");
        g.graphEvent(g.channel(L"V3"), 0, 10, dissolve);
    }
    FXGraphView& open() {
        FXGraphView& v = openView(600, 400, "wiring-test");
        // The whole graph in sight, in the middle.
        double cx = 0, cy = 0;
        v.setViewZoom(v.calcAutoScale(cx, cy));
        v.setViewCentre(cx, cy);
        v.draw();
        return v;
    }
    Zk::Ptr<FXGraphViewNode> at(const Zk::Ptr<FXGraphNodeBase>& n) {
        return Zk::Ptr<FXGraphViewNode>(view->findViewRecForNode(n->getId()));
    }
    // What feeds input i of the node with that id, as the edit holds it now.
    IdStamp feeder(const IdStamp& id, unsigned i) {
        const Zk::Ptr<FXGraphNodeBase>& n = g.edit->nodes().at(id);
        return n->input(i).node ? n->input(i).node->getId() : IdStamp();
    }
    std::string saved() { return EditFile::saveToText(*g.edit); }
    // Undo brings `before` back and redo `after`, each through one step.
    void roundTrip(const std::string& before, const std::string& after, const char* what) {
        ASSERT_TRUE(vob->undoRequest()) << what;
        EXPECT_EQ(saved(), before) << what << ": undo";
        ASSERT_TRUE(vob->redoRequest()) << what;
        EXPECT_EQ(saved(), after) << what << ": redo";
    }
};

TEST_F(Wiring, AConnectionPickedUpAndLetGoOnEmptyCanvasStaysOffAsOneUndoStep) {
    buildTree();
    open();
    PointerDriver mouse(*view);
    const std::string before = saved();
    const size_t depth = vob->undoDepth();

    const XY<int> in = pointOn(*at(root), FXGraphViewNode::HitInput, 0);
    ASSERT_GE(in.x, 0);
    mouse.click(in);
    ASSERT_TRUE(view->draggingIFNode());
    EXPECT_EQ(view->draggingIFNode()->getId(), mid->getId()) << "the source's output is the fixed end";
    EXPECT_FALSE(view->draggedIFIsInput());
    EXPECT_EQ(feeder(root->getId(), 0), IdStamp()) << "the connection is off the graph at once";
    EXPECT_EQ(at(root)->getInputNode(0), nullptr);
    EXPECT_TRUE(at(mid)->outputs().empty());

    mouse.click(emptyCanvas(*view));
    EXPECT_FALSE(view->draggingIFNode());
    EXPECT_EQ(feeder(root->getId(), 0), IdStamp()) << "let go, it stays off";
    EXPECT_EQ(vob->undoDepth(), depth + 1);
    EXPECT_TRUE(view->findViewRecForNode(src2->getId())) << "the view was rebuilt";
    roundTrip(before, saved(), "pick up");
    EXPECT_EQ(feeder(root->getId(), 0), IdStamp());
    ASSERT_TRUE(vob->undoRequest());
    EXPECT_EQ(feeder(root->getId(), 0), mid->getId());
}

TEST_F(Wiring, AFreeOutputJoinsAFreeInputAsOneStepAndTellsTheTransportWhileRecording) {
    buildTree();
    open();
    PointerDriver mouse(*view);
    vob->setRecording(true);
    const unsigned told = TransitStatus::manager().graphChanges();
    const std::string before = saved();
    const size_t depth = vob->undoDepth();

    const XY<int> out = pointOn(*at(mid), FXGraphViewNode::HitOutput, 1);
    ASSERT_GE(out.x, 0);
    mouse.click(out);
    ASSERT_TRUE(view->draggingIFNode());
    EXPECT_EQ(saved(), before) << "a free output picked up changes nothing";
    const XY<int> in = pointOn(*at(root), FXGraphViewNode::HitInput, 2);
    ASSERT_GE(in.x, 0);
    mouse.click(in);
    EXPECT_FALSE(view->draggingIFNode());
    EXPECT_EQ(feeder(root->getId(), 2), mid->getId());
    EXPECT_EQ(feeder(root->getId(), 0), mid->getId()) << "a spare output adds a connection";
    EXPECT_EQ(vob->undoDepth(), depth + 1);
    EXPECT_EQ(TransitStatus::manager().graphChanges(), told + 1);
    EXPECT_FALSE(view->isETimeEnabled());
    EXPECT_EQ(at(root)->getInputNode(2), at(mid).get()) << "the view was rebuilt";
    roundTrip(before, saved(), "join at an input");
    vob->setRecording(false);
}

TEST_F(Wiring, AnInputEndJoinsOnlyTheSpareOutput) {
    buildTree();
    open();
    // Input 0 of root picked up: its source (mid) output 0 is the fixed end.
    ASSERT_TRUE(view->handleInputClicked(at(root), 0));
    ASSERT_TRUE(view->draggingIFNode());
    view->removeDraggedIFConnection();
    const std::string before = saved();
    const size_t depth = vob->undoDepth();

    // Now pick up root's free input 0 itself and offer it outputs.
    ASSERT_TRUE(view->handleInputClicked(at(root), 0));
    ASSERT_TRUE(view->draggedIFIsInput());
    ASSERT_TRUE(view->handleOutputClicked(at(src2), 0)) << "src2's connected output: not the spare";
    EXPECT_EQ(saved(), before);
    EXPECT_TRUE(view->draggingIFNode());
    ASSERT_TRUE(view->handleOutputClicked(at(src2), 1));
    EXPECT_FALSE(view->draggingIFNode());
    EXPECT_EQ(feeder(root->getId(), 0), src2->getId());
    EXPECT_EQ(vob->undoDepth(), depth + 1);
    roundTrip(before, saved(), "join at an output");
}

TEST_F(Wiring, ClicksThatDoNothingLeaveTheEditAndTheLooseEndAsTheyWere) {
    buildTree();
    open();
    const std::string before = saved();
    const size_t depth = vob->undoDepth();

    // A free input, then a free input of another node: the first stays fixed.
    ASSERT_TRUE(view->handleInputClicked(at(mid), 1));
    ASSERT_TRUE(view->handleInputClicked(at(sound), 0));
    ASSERT_TRUE(view->draggingIFNode());
    EXPECT_EQ(view->draggingIFNode()->getId(), mid->getId());
    EXPECT_TRUE(view->draggedIFIsInput());
    EXPECT_EQ(view->draggedIF(), 1);
    EXPECT_TRUE(view->removeDraggedIFConnection());
    EXPECT_FALSE(view->removeDraggedIFConnection()) << "nothing left to let go";

    // The same free output twice: the second finds an output end and does nothing.
    ASSERT_TRUE(view->handleOutputClicked(at(root), 0));
    ASSERT_TRUE(view->handleOutputClicked(at(root), 0));
    EXPECT_EQ(view->draggingIFNode()->getId(), root->getId());
    // An output end and an occupied input: never overwritten.
    ASSERT_TRUE(view->handleInputClicked(at(mid), 0));
    EXPECT_EQ(feeder(mid->getId(), 0), src->getId());
    // An output end and another output.
    ASSERT_TRUE(view->handleOutputClicked(at(src2), 1));
    EXPECT_EQ(view->draggingIFNode()->getId(), root->getId());
    view->removeDraggedIFConnection();

    EXPECT_EQ(saved(), before);
    EXPECT_EQ(vob->undoDepth(), depth) << "nothing changed, so no undo step";
}

TEST_F(Wiring, EveryRefusalOfTheHostChangesNothingAndKeepsTheConnectionLoose) {
    buildTree();
    open();
    const std::string before = saved();
    const size_t depth = vob->undoDepth();
    const size_t messages = messagesShown().size();

    struct Case {
        Zk::Ptr<FXGraphNodeBase> from;
        int output;
        Zk::Ptr<FXGraphNodeBase> to;
        int input;
        const char* why;
    };
    const Case cases[] = {
        {root, 0, mid, 1, "a loop: mid feeds root"},
        {root, 0, root, 2, "a node into itself"},
        {mid, 1, sound, 0, "audio takes no video"},
        {mid, 1, dissolve, 0, "a transition's inputs are not wired by hand"},
    };
    for (const Case& c : cases) {
        ASSERT_TRUE(at(c.from) && at(c.to)) << c.why;
        ASSERT_TRUE(view->handleOutputClicked(at(c.from), c.output)) << c.why;
        ASSERT_TRUE(view->handleInputClicked(at(c.to), c.input)) << c.why;
        ASSERT_TRUE(view->draggingIFNode()) << c.why << ": the end stays loose";
        EXPECT_EQ(view->draggingIFNode()->getId(), c.from->getId()) << c.why;
        EXPECT_EQ(saved(), before) << c.why;
        view->removeDraggedIFConnection();
    }
    EXPECT_EQ(vob->undoDepth(), depth);
    // Refused, the end may go elsewhere: mid's spare output into root's free input.
    ASSERT_TRUE(view->handleOutputClicked(at(mid), 1));
    ASSERT_TRUE(view->handleInputClicked(at(dissolve), 1));
    ASSERT_TRUE(view->handleInputClicked(at(root), 2));
    EXPECT_FALSE(view->draggingIFNode());
    EXPECT_EQ(feeder(root->getId(), 2), mid->getId());
    ASSERT_TRUE(vob->undoRequest());
    EXPECT_EQ(saved(), before);

    // A read-only edit: the press is a canvas press, nothing is picked up.
    vob->setReadOnly(true);
    view->draw();
    PointerDriver mouse(*view);
    const XY<int> in = pointOn(*at(root), FXGraphViewNode::HitInput, 0);
    ASSERT_GE(in.x, 0);
    mouse.click(in);
    EXPECT_FALSE(view->draggingIFNode());
    EXPECT_EQ(feeder(root->getId(), 0), mid->getId());
    vob->setReadOnly(false);

    EXPECT_EQ(saved(), before);
    EXPECT_EQ(messagesShown().size(), messages) << "the view asks and says nothing";
}

TEST_F(Wiring, AnInputPickedUpAndClickedAgainIsReconnected) {
    buildTree();
    open();
    const std::string before = saved();
    ASSERT_TRUE(view->handleInputClicked(at(root), 1));
    EXPECT_EQ(feeder(root->getId(), 1), IdStamp());
    ASSERT_TRUE(view->handleInputClicked(at(root), 1));
    EXPECT_FALSE(view->draggingIFNode());
    EXPECT_EQ(feeder(root->getId(), 1), src2->getId());
    EXPECT_EQ(at(root)->getInputNode(1), at(src2).get());
    ASSERT_TRUE(vob->undoRequest());
    ASSERT_TRUE(vob->undoRequest());
    EXPECT_EQ(saved(), before) << "two steps: off, then on again";
}

TEST_F(Wiring, APressOnABodyEndsALooseConnectionAndHoldsTheNode) {
    buildTree();
    open();
    ASSERT_TRUE(view->handleOutputClicked(at(root), 0));
    PointerDriver mouse(*view);
    mouse.press(pointOn(*at(mid), FXGraphViewNode::HitBody));
    EXPECT_FALSE(view->draggingIFNode());
    ASSERT_TRUE(view->draggingNode());
    EXPECT_EQ(view->draggingNode()->getId(), mid->getId());
    mouse.release(pointOn(*at(mid), FXGraphViewNode::HitBody));
}

TEST_F(Wiring, ANodeWithoutAGraphNodeTakesPortClicksAndDoesNothing) {
    buildTree();
    open();
    EditGraphIterator nowhere(9);
    Zk::Ptr<FXGraphViewNode> lost(new FXGraphViewNode(view, nowhere));
    ASSERT_FALSE(lost->node());
    EXPECT_TRUE(view->handleInputClicked(lost, 0));
    EXPECT_TRUE(view->handleOutputClicked(lost, 0));
    EXPECT_FALSE(view->draggingIFNode());
    EXPECT_FALSE(view->isETimeEnabled());
}

TEST_F(Wiring, DestroyNodeRemovesAnEffectWithItsLinksAndLeavesMaterials) {
    buildTree();
    open();
    const std::string before = saved();
    const XY<int> srcAt = pointOn(*at(src), FXGraphViewNode::HitBody);
    EXPECT_TRUE(view->destroyNode(srcAt.x, srcAt.y)) << "a material is found";
    EXPECT_EQ(saved(), before) << "and stays";
    EXPECT_FALSE(view->destroyNode(-100, -100));

    const XY<int> midAt = pointOn(*at(mid), FXGraphViewNode::HitBody);
    const size_t depth = vob->undoDepth();
    EXPECT_TRUE(view->destroyNode(midAt.x, midAt.y));
    EXPECT_EQ(g.edit->nodes().count(mid->getId()), 0u);
    EXPECT_EQ(feeder(root->getId(), 0), IdStamp()) << "the parent's link to it opens";
    EXPECT_FALSE(view->findViewRecForNode(mid->getId())) << "the view rebuilt without it";
    EXPECT_EQ(vob->undoDepth(), depth + 1);
    roundTrip(before, saved(), "destroy");
    ASSERT_TRUE(vob->undoRequest());
    EXPECT_EQ(feeder(root->getId(), 0), mid->getId());
}

} // namespace
