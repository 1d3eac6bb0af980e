// Pointer gestures on the canvas, driven through the Qt widget behind the view where the toolkit's
// translation matters and through the handlers where that is clearer: a click against a drag,
// moving a node and a whole tree, panning and zooming, the wheel, auto-scrolling with the held
// node under the pointer, the timer interest, the fade, and the cursors.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "../support/BuiltGraphView.h"
#include "../support/PointerDriver.h"
#include "../support/ViewPoints.h"
#include "graphnodes/FXGraphViewNode.h"
#include "host/AliasedInputEffect.h"
#include "host/Canvas.h"
#include "host/OSServices.h"
#include "refhost/edit/EditFile.h"

namespace {

struct GestureView : FXGraphView {
    explicit GestureView(const InitArgs& a) : FXGraphView(a) {}
    bool panning() const { return panning_; }
    int timerCount() const { return eTimeCount_; }
    void rewindClock(double seconds) { eTimeStamp_ -= seconds; }
    void fade(FXGraphViewNode* n) { initNodeFade(n); }
    void ageFade(double seconds) { fadeElapsed_ += seconds; }
};

struct Gestures : BuiltGraphView<GestureView> {
    Zk::Ptr<EffectInstance_opu4h5a4j> root, mid;
    Zk::Ptr<MaterialUsageNode> src, src2;

    // V1: root <- (mid <- src, src2).
    void buildTree() {
        root = g.effect(1, 2);
        mid = g.effect(2, 1);
        src = g.material(3);
        src2 = g.material(4);
        GraphBuilder::link(root, 0, mid);
        GraphBuilder::link(mid, 0, src);
        GraphBuilder::link(root, 1, src2);
        g.graphEvent(chan, 0, 10, root);
    }
    GestureView& open() {
        GestureView& v = openView(600, 400, "gestures-test");
        // The whole graph in sight, in the middle.
        double cx = 0, cy = 0;
        v.setViewZoom(v.calcAutoScale(cx, cy));
        v.setViewCentre(cx, cy);
        v.draw();
        return v;
    }
    FXGraphViewNode& at(const Zk::Ptr<FXGraphNodeBase>& n) {
        FXGraphViewNode* v = view->findViewRecForNode(n->getId());
        EXPECT_TRUE(v) << "no view node";
        return *v;
    }
    XY<int> body(const Zk::Ptr<FXGraphNodeBase>& n) {
        const XY<int> p = pointOn(at(n), FXGraphViewNode::HitBody);
        EXPECT_GE(p.x, 0) << "no body pixel";
        return p;
    }
    // The effect of that id as the edit holds it now (undo puts copies in place).
    EffectInstance_opu4h5a4j* effectNow(const IdStamp& id) {
        auto it = g.edit->nodes().find(id);
        return it == g.edit->nodes().end() ? nullptr
                                           : dynamic_cast<EffectInstance_opu4h5a4j*>(it->second.get());
    }
    std::string saved() { return EditFile::saveToText(*g.edit); }
    bool timerWanted() const { return (view->getInterests() & Glob::TimerInterest) != 0; }
    // The held node's middle in view pixels, plus the offset the press took: where the pointer is.
    XY<double> heldUnderPointer() const {
        const FXGraphViewNode& n = *view->draggingNode();
        return view->graphToViewSpace((n.getLeft() + n.getRight()) / 2, (n.getBottom() + n.getTop()) / 2);
    }
};

TEST_F(Gestures, AClickWithinTheToleranceSwitchesTheEffectAsOneUndoStepAndADragMovesIt) {
    buildTree();
    open();
    PointerDriver mouse(*view);
    const IdStamp id = mid->getId();
    const XY<int> p = body(mid);
    const double x0 = at(mid).x(), y0 = at(mid).y();
    const std::string before = saved();
    const size_t depth = vob->undoDepth();

    mouse.press(p);
    EXPECT_EQ(view->draggingNode().get(), &at(mid)) << "a press on a body holds the node";
    mouse.move(XY<int>(p.x + 2, p.y));
    mouse.release(XY<int>(p.x + 2, p.y));
    EXPECT_FALSE(effectNow(id)->isEnabled()) << "2 pixels of travel is a click";
    EXPECT_EQ(at(mid).x(), x0) << "a click does not move the node";
    EXPECT_FALSE(view->draggingNode());
    EXPECT_EQ(vob->undoDepth(), depth + 1) << "the switch is one undo step";
    const std::string after = saved();
    EXPECT_NE(after, before);

    ASSERT_TRUE(vob->undoRequest());
    EXPECT_EQ(saved(), before);
    EXPECT_TRUE(effectNow(id)->isEnabled());
    ASSERT_TRUE(vob->redoRequest());
    EXPECT_EQ(saved(), after);
    EXPECT_FALSE(effectNow(id)->isEnabled());

    // Three pixels make a drag: the node follows, the switch stays.
    view->draw();
    const XY<int> q = body(mid);
    const double x1 = at(mid).x();
    mouse.press(q);
    mouse.move(XY<int>(q.x + 3, q.y));
    mouse.release(XY<int>(q.x + 3, q.y));
    EXPECT_FALSE(effectNow(id)->isEnabled()) << "a drag is no click";
    EXPECT_NEAR(at(mid).x() - x1, 3 / view->physicalScale(), 1.5 / view->physicalScale());
    EXPECT_EQ(at(mid).y(), y0);
    EXPECT_EQ(view->timerCount(), 0);
    // A view's positions are its own and are not saved with the edit: a move is no undo step,
    // and the saved edit stays byte for byte what it was.
    EXPECT_EQ(vob->undoDepth(), depth + 1);
    EXPECT_EQ(saved(), after);
}

TEST_F(Gestures, AClickOnAMaterialOrAnAliasChangesNothingAndARightReleaseLetsTheNodeGo) {
    buildTree();
    auto alias = Zk::make<AliasedInputEffect>(IdStamp(1, 0, 9));
    g.edit->addNode(alias);
    GraphBuilder::link(mid, 0, alias);
    open();
    EXPECT_FALSE(view->handleNodeClicked(Zk::Ptr<FXGraphViewNode>(&at(src2))));
    EXPECT_FALSE(view->handleNodeClicked(Zk::Ptr<FXGraphViewNode>(&at(alias))));
    EXPECT_TRUE(alias->isEnabled());

    PointerDriver mouse(*view);
    const XY<int> p = body(root);
    mouse.press(p);
    ASSERT_TRUE(view->draggingNode());
    mouse.release(p, Qt::RightButton);
    EXPECT_FALSE(view->draggingNode()) << "an up event of any button lets go";
    EXPECT_TRUE(root->isEnabled()) << "only a left release is a click";
}

TEST_F(Gestures, ATreeMoveCarriesExactlyTheNodesItsRootOwns) {
    buildTree();
    const int v2 = g.channel(L"V2");
    auto other = g.effect(5, 1);
    auto otherSrc = g.material(6);
    GraphBuilder::link(other, 0, otherSrc);
    g.graphEvent(v2, 0, 10, other);
    open();
    ASSERT_TRUE(view->getManualPosMode());
    PointerDriver mouse(*view);

    auto place = [&](const Zk::Ptr<FXGraphNodeBase>& n) { return XY<double>(at(n).x(), at(n).y()); };
    const Zk::Ptr<FXGraphNodeBase> tree[] = {root, mid, src, src2};
    const Zk::Ptr<FXGraphNodeBase> rest[] = {other, otherSrc};
    XY<double> was[4], restWas[2];
    for (int i = 0; i < 4; ++i)
        was[i] = place(tree[i]);
    for (int i = 0; i < 2; ++i)
        restWas[i] = place(rest[i]);

    const XY<int> p = body(root);
    mouse.key(Qt::Key_Control, true, Qt::ControlModifier);
    ASSERT_TRUE(OS().isKeyDown(FXGraphView::TreeMoveKey));
    mouse.press(p, Qt::LeftButton, Qt::ControlModifier);
    mouse.move(XY<int>(p.x + 12, p.y + 8), Qt::ControlModifier);
    mouse.release(XY<int>(p.x + 12, p.y + 8), Qt::LeftButton, Qt::ControlModifier);
    mouse.key(Qt::Key_Control, false);
    ASSERT_FALSE(OS().isKeyDown(FXGraphView::TreeMoveKey));

    const double dx = place(root).x - was[0].x, dy = place(root).y - was[0].y;
    EXPECT_GT(dx, 0.0);
    EXPECT_GT(dy, 0.0);
    for (int i = 1; i < 4; ++i) {
        EXPECT_DOUBLE_EQ(place(tree[i]).x - was[i].x, dx) << "node " << i << " hangs from the root";
        EXPECT_DOUBLE_EQ(place(tree[i]).y - was[i].y, dy) << "node " << i << " hangs from the root";
    }
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(place(rest[i]).x, restWas[i].x) << "another root's tree stays";
        EXPECT_EQ(place(rest[i]).y, restWas[i].y);
    }

    // Without the key only the node itself moves.
    view->draw();
    const XY<int> q = body(root);
    const XY<double> midWas = place(mid);
    mouse.press(q);
    mouse.move(XY<int>(q.x - 10, q.y));
    mouse.release(XY<int>(q.x - 10, q.y));
    EXPECT_LT(place(root).x, was[0].x + dx);
    EXPECT_EQ(place(mid).x, midWas.x);
}

TEST_F(Gestures, ACanvasPressPansOneToOneAndZoomsBy170PixelsForTheWholeRange) {
    buildTree();
    open();
    PointerDriver mouse(*view);
    const XY<int> p = emptyCanvas(*view);
    ASSERT_GE(p.x, 0);
    view->setViewZoom(0.2);
    const double s = view->physicalScale();
    const double cx = view->getViewCX(), cy = view->getViewCY();

    mouse.press(p);
    EXPECT_TRUE(view->panning());
    EXPECT_FALSE(view->draggingNode());
    mouse.move(XY<int>(p.x + 30, p.y + 20));
    EXPECT_NEAR(view->getViewCX(), cx - 30 / s, 1e-9) << "the canvas follows the pointer";
    EXPECT_NEAR(view->getViewCY(), cy - 20 / s, 1e-9);
    mouse.release(XY<int>(p.x + 30, p.y + 20));
    EXPECT_FALSE(view->panning());

    // With the tree-move key a canvas drag zooms: 85 pixels up is half the range.
    mouse.key(Qt::Key_Control, true, Qt::ControlModifier);
    mouse.press(p, Qt::LeftButton, Qt::ControlModifier);
    const double centreX = view->getViewCX();
    const int draws = view->drawCount();
    mouse.move(XY<int>(p.x + 40, p.y), Qt::ControlModifier);
    EXPECT_DOUBLE_EQ(view->getViewZoomValue(), 0.2) << "sideways movement is no zoom";
    EXPECT_EQ(view->drawCount(), draws) << "and draws nothing";
    EXPECT_EQ(view->getViewCX(), centreX) << "nor pans";
    mouse.move(XY<int>(p.x + 40, p.y + 85), Qt::ControlModifier);
    EXPECT_NEAR(view->getViewZoomValue(), 0.7, 1e-12);
    mouse.move(XY<int>(p.x + 40, p.y + 400), Qt::ControlModifier);
    EXPECT_EQ(view->getViewZoomValue(), 1.0) << "clamped at the top of the range";
    mouse.release(XY<int>(p.x + 40, p.y + 400), Qt::LeftButton, Qt::ControlModifier);
    mouse.key(Qt::Key_Control, false);
    EXPECT_FALSE(view->panning());
}

TEST_F(Gestures, TheWheelZoomsAboutThePointerOverTheDrawingAndAboutTheCentreElsewhere) {
    buildTree();
    open();
    PointerDriver mouse(*view);
    view->setViewZoom(0.5);
    const XY<int> p = body(mid);
    mouse.pointAt(p);
    const XY<double> under = view->viewToGraphSpace(p.x, p.y);
    EXPECT_EQ(view->handleZoom(1), 1);
    EXPECT_NEAR(view->getViewZoomValue(), 0.6, 1e-12);
    const XY<double> still = view->viewToGraphSpace(p.x, p.y);
    EXPECT_NEAR(still.x, under.x, 1e-9) << "the point under the pointer stays there";
    EXPECT_NEAR(still.y, under.y, 1e-9);

    mouse.pointAt(XY<int>(-50, -50));
    const double cx = view->getViewCX(), cy = view->getViewCY();
    view->handleZoom(-1);
    EXPECT_NEAR(view->getViewZoomValue(), 0.5, 1e-12);
    EXPECT_EQ(view->getViewCX(), cx);
    EXPECT_EQ(view->getViewCY(), cy);
}

TEST_F(Gestures, AutoScrollKeepsTheHeldNodeUnderThePointerAndStopsAtRelease) {
    buildTree();
    open();
    PointerDriver mouse(*view);
    const Zk::Box<int> w = view->getWindowPos();
    const XY<int> p = body(mid);
    mouse.press(p);
    mouse.move(XY<int>(p.x + 5, p.y));
    EXPECT_FALSE(view->autoScrolling());
    EXPECT_FALSE(timerWanted()) << "holding a node needs no timer";

    const XY<int> edge(w.x1 + 5, p.y);
    mouse.move(edge);
    ASSERT_TRUE(view->autoScrolling()) << "the pointer is in the left edge band";
    EXPECT_TRUE(timerWanted());
    const double cx = view->getViewCX();
    view->rewindClock(0.05);
    view->handleTimerEvent();
    EXPECT_LT(view->getViewCX(), cx) << "the canvas scrolls towards the edge";
    const XY<double> held = heldUnderPointer();
    EXPECT_NEAR(held.x, edge.x, 1.5) << "the held node stays under the pointer";

    mouse.release(edge);
    EXPECT_FALSE(view->draggingNode());
    EXPECT_EQ(view->timerCount(), 0) << "the release gives the timer back";
    EXPECT_FALSE(timerWanted());
    EXPECT_TRUE(view->autoScrolling()) << "released in the band, the flag waits for the next event";
    mouse.press(emptyCanvas(*view));
    EXPECT_FALSE(view->autoScrolling());
    EXPECT_EQ(view->timerCount(), 0);
    mouse.release(emptyCanvas(*view));
}

TEST_F(Gestures, TheTimerIsWantedOnlyWhileAConnectionIsLooseOrAFadeRuns) {
    buildTree();
    open();
    EXPECT_FALSE(timerWanted()) << "an idle view gets no timer events";
    PointerDriver mouse(*view);
    const XY<int> out = pointOn(at(root), FXGraphViewNode::HitOutput, 0);
    ASSERT_GE(out.x, 0);
    mouse.click(out);
    ASSERT_TRUE(view->draggingIFNode());
    EXPECT_TRUE(timerWanted());
    const int draws = view->drawCount();
    mouse.pointAt(XY<int>(out.x + 9, out.y - 9));
    view->handleTimerEvent();
    EXPECT_GT(view->drawCount(), draws) << "the loose end follows the pointer on the timer";
    mouse.click(emptyCanvas(*view));
    EXPECT_FALSE(view->draggingIFNode());
    EXPECT_FALSE(timerWanted());

    FXGraphViewNode& n = at(mid);
    view->fade(&n);
    EXPECT_TRUE(timerWanted());
    EXPECT_EQ(n.fade_, 1.0);
    view->ageFade(0.3);
    view->handleTimerEvent();
    EXPECT_GT(n.fade_, 0.0);
    EXPECT_LE(n.fade_, 0.25 + 1e-9);
    view->ageFade(0.2);
    view->handleTimerEvent();
    EXPECT_EQ(n.fade_, 0.0) << "the fade is over";
    EXPECT_FALSE(view->fadingNewNode());
    EXPECT_FALSE(timerWanted());
    view->disableETime();
    EXPECT_EQ(view->timerCount(), 0) << "the count never goes below 0";
}

TEST_F(Gestures, TheCursorTellsWhatThePointerCanDo) {
    buildTree();
    open();
    auto cursorAt = [&](const XY<int>& p) {
        return view->contextCursor(XY<int>(p.x + view->getPosition().x, p.y + view->getPosition().y));
    };
    const XY<int> out = pointOn(at(mid), FXGraphViewNode::HitOutput, 1);
    const XY<int> in = pointOn(at(root), FXGraphViewNode::HitInput, 1);
    const XY<int> otherOut = pointOn(at(src2), FXGraphViewNode::HitOutput, 1);
    ASSERT_GE(out.x, 0);
    ASSERT_GE(in.x, 0);
    EXPECT_EQ(cursorAt(emptyCanvas(*view)), CursorArrow);
    EXPECT_EQ(cursorAt(out), CursorCross);
    EXPECT_EQ(cursorAt(in), CursorCross);

    ASSERT_TRUE(view->handleOutputClicked(Zk::Ptr<FXGraphViewNode>(&at(mid)), 1));
    EXPECT_EQ(cursorAt(in), CursorCross) << "an input can take an output's loose end";
    EXPECT_EQ(cursorAt(otherOut), CursorForbidden) << "an output can't";
    EXPECT_EQ(cursorAt(out), CursorArrow) << "the fixed end's own node passes";
    view->removeDraggedIFConnection();
    view->draw();

    // The widget shows the shape as the pointer moves over it.
    PointerDriver mouse(*view);
    mouse.move(out);
    EXPECT_EQ(mouse.widget()->cursor().shape(), Qt::CrossCursor);
    mouse.move(emptyCanvas(*view));
    EXPECT_EQ(mouse.widget()->cursor().shape(), Qt::ArrowCursor);
    mouse.press(body(mid));
    EXPECT_EQ(cursorAt(out), CursorMove);
    mouse.move(XY<int>(body(mid).x + 1, body(mid).y));
    EXPECT_EQ(mouse.widget()->cursor().shape(), Qt::SizeAllCursor);
    mouse.release(body(mid));

    const bool enabled = mid->isEnabled();
    vob->setReadOnly(true);
    EXPECT_EQ(cursorAt(out), CursorArrow);
    mouse.press(body(mid));
    EXPECT_FALSE(view->draggingNode()) << "nothing is held in a read-only edit";
    EXPECT_TRUE(view->panning()) << "every press is a canvas press";
    mouse.release(body(mid));
    EXPECT_EQ(mid->isEnabled(), enabled) << "and no click reaches a node";
}

TEST_F(Gestures, APressOnANodeOffScreenIsACanvasPress) {
    buildTree();
    open();
    PointerDriver mouse(*view);
    const XY<int> p = body(mid);
    at(mid).onScreen_ = false;
    mouse.press(p);
    EXPECT_FALSE(view->draggingNode());
    EXPECT_TRUE(view->panning());
    mouse.release(p);
}

} // namespace

// A held node floats over a kept picture of the rest: while it moves, the pixels away from it
// stay as they were and it shows where it went; once let go, the view is exactly what a whole
// repaint gives.
TEST_F(Gestures, AHeldNodeFloatsOverAKeptPictureAndLandsInItsPlace) {
    buildTree();
    open();
    Canvas& c = *view->canvas();
    auto snapshot = [&] {
        std::vector<unsigned> px;
        for (int y = 0; y < view->height(); ++y)
            for (int x = 0; x < view->width(); ++x)
                px.push_back(c.pixel(x, y));
        return px;
    };
    PointerDriver mouse(*view);
    const XY<int> p = body(src2);
    const Zk::Box<int> was = at(src2).pixelBox();
    const Zk::Box<int> far = at(src).pixelBox();
    const std::vector<unsigned> before = snapshot();

    mouse.press(p);
    mouse.move(XY<int>(p.x + 20, p.y + 10));
    mouse.move(XY<int>(p.x + 40, p.y + 20));
    EXPECT_TRUE(c.hasKeptSurface()) << "the rest of the graph is kept while the node is held";
    const std::vector<unsigned> moving = snapshot();
    const int w = view->width();
    auto px = [&](const std::vector<unsigned>& v, int x, int y) { return v[static_cast<size_t>(y * w + x)]; };
    const int fx = (far.x1 + far.x2) / 2, fy = (far.y1 + far.y2) / 2;
    EXPECT_EQ(px(moving, fx, fy), px(before, fx, fy)) << "a node the move does not reach is untouched";
    const Zk::Box<int> now = at(src2).pixelBox();
    EXPECT_NEAR(now.x1 - was.x1, 40, 1);
    const int nx = (now.x1 + now.x2) / 2, ny = now.y2 - 2;
    EXPECT_NE(px(moving, nx, ny), px(before, nx, ny)) << "the node is painted where it went";

    mouse.release(XY<int>(p.x + 40, p.y + 20));
    EXPECT_FALSE(c.hasKeptSurface()) << "letting go lets the picture go";
    const std::vector<unsigned> landed = snapshot();
    view->draw();
    EXPECT_EQ(landed, snapshot()) << "after the landing the pixels are those of a whole repaint";
}
