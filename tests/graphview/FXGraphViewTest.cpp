// The graph view frame: spaces, zoom and centre, scroll bars, orientation, the timer count, the
// time span of the node list, and the picture it paints.
#include "graphview/FXGraphView.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QImage>
#include <QMouseEvent>
#include <QScrollBar>
#include <QStyle>
#include <QStyleOptionSlider>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "../support/BuiltGraphView.h"
#include "graphnodes/FXGraphViewNode.h"
#include "host/Canvas.h"
#include "host/EditorPreferences.h"
#include "host/ToolkitApp.h"
#include "host/UifStd.h"
#include "host/VobManager.h"
#include "nodeui/NodeUIPosManager.h"
#include "refhost/edit/EditFile.h"
#include "refhost/toolkit/GlobImpl.h"

namespace {

struct ViewFixture : ::testing::Test {
    void SetUp() override {
        ensureToolkitApplication();
        prefs().setPreference(kOrientationPrefKey, "BottomToTop");
        std::string error;
        edit = EditFile::open(std::string(NODEDESK_SOURCE_DIR) + "/samples/multitrack.edit.json", error);
        ASSERT_TRUE(edit) << error;
        vob = VobManager::instance().vobFor(edit, "view-test");
        vob->storeCurrentTime(1.0);
        view = new FXGraphView(FXGraphView::InitArgs(600, 400, vob.get(), 1));
    }
    void TearDown() override {
        delete view;
        VobManager::instance().reset();
    }
    EditPtr edit;
    Zk::Ptr<Vob> vob;
    FXGraphView* view = nullptr;
};

// A view that hears which messages its bars send, and that takes view nodes placed by hand.
struct ProbeView : FXGraphView {
    explicit ProbeView(const InitArgs& a) : FXGraphView(a) {}
    int handleMessageEvent(const LightweightString<char>& msg, Glob* from) override {
        if (from == horzScrollBar() || from == vertScrollBar())
            barMessages.emplace_back(msg.c_str());
        return FXGraphView::handleMessageEvent(msg, from);
    }
    void add(const Zk::Ptr<FXGraphViewNode>& n) { nodes_.push_back(n); }
    std::vector<std::string> barMessages;
};

// A view on an edit built in code, for nodes placed by hand.
struct ByHand : BuiltGraphView<ProbeView> {};

// A view node on no graph node, for placing by hand.
EditGraphIterator& nowhere() {
    static EditGraphIterator it;
    return it;
}

// A view node that counts the moves that reach it.
struct CountingNode : FXGraphViewNode {
    CountingNode(FXGraphView* v, double x, double y) : FXGraphViewNode(v, nowhere()) {
        pos_.setPos(x, y, false);
    }
    bool setPos(double x, double y, bool notify) override {
        ++moves;
        return FXGraphViewNode::setPos(x, y, notify);
    }
    int moves = 0;
};

// The middle of the thumb of a Qt scroll bar, in its own pixels.
QPoint thumbCentre(QScrollBar* s) {
    QStyleOptionSlider opt;
    opt.initFrom(s);
    opt.subControls = QStyle::SC_All;
    opt.orientation = s->orientation();
    if (s->orientation() == Qt::Horizontal)
        opt.state |= QStyle::State_Horizontal;
    opt.minimum = s->minimum();
    opt.maximum = s->maximum();
    opt.sliderPosition = s->sliderPosition();
    opt.sliderValue = s->value();
    opt.singleStep = s->singleStep();
    opt.pageStep = s->pageStep();
    opt.upsideDown = s->invertedAppearance();
    return s->style()->subControlRect(QStyle::CC_ScrollBar, &opt, QStyle::SC_ScrollBarSlider, s).center();
}

void sendMouse(QWidget* w, QEvent::Type type, QPoint at, Qt::MouseButtons held) {
    QMouseEvent e(type, QPointF(at), QPointF(w->mapToGlobal(at)), Qt::LeftButton, held, Qt::NoModifier);
    QCoreApplication::sendEvent(w, &e);
}

} // namespace

TEST_F(ViewFixture, ANewViewFitsItsNodesAndSharesItsOrientation) {
    EXPECT_LE(view->getViewZoom().getVal(), 0.75) << "the refit of the first nodes only ever zooms out";
    EXPECT_TRUE(view->manualPosMode().getVal());
    EXPECT_EQ(view->getOrientation(), VidRouting::Orientations::BottomToTop);
    EXPECT_EQ(view->primaryChan(), edit->chan(0).id) << "the first video channel is in focus";
    EXPECT_EQ(NodeUIPosManager::getManagerFor(edit)->orientation(), VidRouting::Orientations::BottomToTop)
        << "the view gives its orientation to the edit's position manager";
}

TEST_F(ByHand, AnEmptyViewClampsItsZoomAndScales) {
    openView(600, 400, "empty-view-test");
    EXPECT_EQ(view->getViewZoom().getVal(), 0.75) << "zoom before any refit of nodes";
    view->setViewZoom(2.0);
    EXPECT_EQ(view->getViewZoom().getVal(), 1.0);
    EXPECT_EQ(view->physicalScale(), view->calcPhysicalScale(1.0));
    EXPECT_DOUBLE_EQ(view->graphToViewDistance(0.125), view->getMaxNodeWidth())
        << "a node is maxNodeWidth_ pixels wide at zoom 1";
    view->handleZoom(1);
    EXPECT_EQ(view->getViewZoom().getVal(), 1.0) << "1.1 asked, 1.0 stored";
    view->handleZoom(-1);
    EXPECT_NEAR(view->getViewZoom().getVal(), 0.9, 1e-12);
    view->setViewZoom(-3);
    EXPECT_EQ(view->getViewZoom().getVal(), 0.0);
    // Zoom 0 shows the whole canvas (-1..1) in the smaller side of the widget.
    EXPECT_DOUBLE_EQ(view->physicalScale(), std::min(600 / 2.0, 400 / 2.0));

    const XY<int> size = view->getNodeSize();
    EXPECT_EQ(size.x, static_cast<int>(view->physicalScale() * 0.125)) << "without nodes, from the scale";
    EXPECT_EQ(size.y, static_cast<int>(view->physicalScale() * 0.1));

    view->setMaxNodeSize(10);
    EXPECT_DOUBLE_EQ(view->physicalScale(), view->calcPhysicalScale(0.0));
    EXPECT_DOUBLE_EQ(view->calcPhysicalScale(0.5), 80.0) << "a canvas shown whole at full size ignores zoom";
}

TEST_F(ViewFixture, SpacesAndPixels) {
    const XY<int> p0 = FXGraphView::graphToPixels(0.0, 0.0);
    EXPECT_EQ(p0.x, 1);
    EXPECT_EQ(p0.y, 1);
    const XY<int> p1 = FXGraphView::graphToPixels(-1.0, -1.0);
    EXPECT_EQ(p1.x, -1);
    EXPECT_EQ(p1.y, -1);

    const Zk::Box<int> w = view->getWindowPos();
    EXPECT_EQ(w.x1, UifStd::getIndentWidth());
    EXPECT_EQ(w.y1, ScrollBar::thickness() + UifStd::getWidgetGap());
    EXPECT_EQ(w.x2, 600 - UifStd::getWidgetGap() - ScrollBar::thickness());
    EXPECT_EQ(w.y2, 400 - UifStd::getIndentWidth());

    view->setViewCentre(0.25, -0.5);
    const XY<double> v = view->graphToViewSpace(0.25, -0.5);
    EXPECT_DOUBLE_EQ(v.x, (w.x1 + w.x2) * 0.5) << "the centre lands in the window's middle";
    EXPECT_DOUBLE_EQ(v.y, (w.y1 + w.y2) * 0.5);
    const XY<double> back = view->viewToGraphSpace(v.x + 30, v.y - 12);
    EXPECT_NEAR(back.x, 0.25 + 30 / view->physicalScale(), 1e-12);
    EXPECT_NEAR(back.y, -0.5 - 12 / view->physicalScale(), 1e-12);

    view->setViewCentre(5, -7);
    EXPECT_EQ(view->getViewCX(), 1.0) << "the centre is clamped to the canvas";
    EXPECT_EQ(view->getViewCY(), -1.0);

    int x1 = -50, y1 = 10, x2 = 20, y2 = 9999;
    EXPECT_TRUE(view->clipRectToView(x1, y1, x2, y2));
    EXPECT_EQ(x1, w.x1);
    EXPECT_EQ(y2, w.y2);
    x1 = 700, x2 = 800;
    EXPECT_FALSE(view->clipRectToView(x1, y1, x2, y2));
    EXPECT_EQ(x1 + y1 + x2 + y2, 0);
}

TEST_F(ViewFixture, EdgeThicknessFollowsTheZoom) {
    const int rh = UifStd::getRowHeight();
    ASSERT_GE(rh, 12) << "the cases below need a row of at least 12 pixels";
    // 1.6 pixels rounds to 2; cut off without the half it would be 1.
    view->setViewZoom(1.6 * 7.0 / rh);
    EXPECT_EQ(view->getEdgeThickness(FXGraphView::EdgeMain), 2);
    EXPECT_EQ(view->getEdgeThickness(FXGraphView::EdgeOutline), 3);
    // 1.4 pixels stays 1; rounded up it would be 2.
    view->setViewZoom(1.4 * 7.0 / rh);
    EXPECT_EQ(view->getEdgeThickness(FXGraphView::EdgeMain), 1);
    view->setViewZoom(0.0);
    EXPECT_EQ(view->getEdgeThickness(FXGraphView::EdgeMain), 1) << "never thinner than one pixel";
}

TEST_F(ViewFixture, ScrollBarsFollowCentreAndZoomAndBack) {
    ScrollBar* h = view->horzScrollBar();
    ScrollBar* v = view->vertScrollBar();
    ASSERT_TRUE(h && v);
    view->setViewZoom(0.8);
    view->setViewCentre(0.3, -0.2);
    const double s = view->physicalScale();
    const double viewW = 600 / s, spanX = 2 + viewW;
    EXPECT_NEAR(h->getThumbPos(), (0.3 + 1) / spanX, 1e-12);
    EXPECT_NEAR(h->getThumbSize(), viewW / spanX, 1e-12);
    const double viewH = 400 / s, spanY = 2 + viewH;
    EXPECT_NEAR(v->getThumbSize(), viewH / spanY, 1e-12);
    EXPECT_NEAR(v->getThumbPos(), 1 - ((-0.2 + 1) / spanY + viewH / spanY), 1e-12) << "bars run downward";

    // A thumb moved without a change of size leaves the zoom alone and moves the centre.
    h->setThumbPos(h->getThumbPos() + 0.05);
    view->handleScrollbarMsg(h, ScrollBar::thumbMovedMsg);
    EXPECT_EQ(view->getViewZoom().getVal(), 0.8);
    EXPECT_NE(view->getViewCX(), 0.3);
    v->setThumbPos(v->getThumbPos());
    const double cyBefore = view->getViewCY();
    view->handleScrollbarMsg(v, ScrollBar::thumbMovedMsg);
    EXPECT_EQ(view->getViewZoom().getVal(), 0.8);
    EXPECT_DOUBLE_EQ(view->getViewCY(), cyBefore) << "the vertical thumb maps back to where it was";

    // A stretched thumb changes the zoom.
    h->setThumbSize(h->getThumbSize() * 1.3);
    view->handleScrollbarMsg(h, ScrollBar::thumbStretchedMsg);
    EXPECT_LT(view->getViewZoom().getVal(), 0.8) << "a larger thumb shows more: lower zoom";

    // The buttons scroll a third of the widget.
    const double cx = view->getViewCX();
    view->setViewZoom(1.0);
    view->handleScrollbarMsg(h, ScrollBar::leftButtonPressedMsg);
    EXPECT_NEAR(view->getViewCX(), std::max(-1.0, cx - (600 / view->physicalScale()) / 3), 1e-12);
    const double cy = view->getViewCY();
    view->handleScrollbarMsg(v, ScrollBar::upButtonPressedMsg);
    EXPECT_NEAR(view->getViewCY(), std::min(1.0, cy + (400 / view->physicalScale()) / 3), 1e-12);
    EXPECT_EQ(view->handleMessageEvent(ScrollBar::downButtonPressedMsg, v), 1) << "bar messages are taken";
    view->setViewCentre(0, 0);
    EXPECT_EQ(view->handleMessageEvent(ScrollBar::downButtonPressedMsg, view), 0)
        << "a scroll message from another widget is not the view's";
    EXPECT_EQ(view->getViewCY(), 0.0);
}

TEST_F(ViewFixture, TimerCountAndClip) {
    Zk::Box<int> odd;
    odd.x2 = 7;
    odd.y2 = 7;
    view->canvas()->renderer().setClipRect(odd);
    view->disableETime();
    EXPECT_EQ(view->canvas()->renderer().getClipRect(), odd) << "disable at 0 does nothing";
    view->enableETime();
    view->enableETime();
    EXPECT_TRUE(view->getInterests() & Glob::TimerInterest);
    view->disableETime();
    EXPECT_TRUE(view->isETimeEnabled());
    view->disableETime();
    EXPECT_FALSE(view->isETimeEnabled());
    EXPECT_FALSE(view->getInterests() & Glob::TimerInterest);
    EXPECT_EQ(view->canvas()->renderer().getClipRect(), view->getWindowPos());
}

TEST_F(ViewFixture, OrientationIsAPreferenceAndTheManagersToo) {
    view->setOrientation(VidRouting::Orientations::LeftToRight, true);
    EXPECT_EQ(view->getOrientation(), VidRouting::Orientations::LeftToRight);
    EXPECT_STREQ(prefs().getPreference(kOrientationPrefKey, "").c_str(), "LeftToRight");
    EXPECT_EQ(NodeUIPosManager::getManagerFor(edit)->orientation(), VidRouting::Orientations::LeftToRight);
    FXGraphView second(FXGraphView::InitArgs(300, 200, vob.get(), 1));
    EXPECT_EQ(second.getOrientation(), VidRouting::Orientations::LeftToRight)
        << "a new view reads the preference";
}

TEST_F(ViewFixture, MorphologySpanAroundCuts) {
    // The multitrack edit cuts at 4 (V4) and 8 (V1, V2) and ends at 16.
    view->calcMorphologyExtents(1.0);
    EXPECT_EQ(view->morphologyStart(), 0.0);
    EXPECT_EQ(view->morphologyEnd(), 4.0);
    view->calcMorphologyExtents(8.0);
    EXPECT_EQ(view->morphologyStart(), 8.0) << "on a cut: the cut starts the span";
    EXPECT_EQ(view->morphologyEnd(), 16.0) << "and the next cut, here the end, ends it";
    view->calcMorphologyExtents(16.0 - 1e-7);
    EXPECT_EQ(view->morphologyStart(), 16.0) << "within 1e-6 of the end";
    EXPECT_EQ(view->morphologyEnd(), 1e12);
    view->calcMorphologyExtents(-3.0);
    EXPECT_EQ(view->morphologyEnd(), 0.0) << "before the start";
}

TEST_F(ViewFixture, PlayheadMovesRebuildOnlyOutsideTheSpan) {
    view->calcMorphologyExtents(1.0);
    vob->setCurrentTime(2.0);
    EXPECT_EQ(view->morphologyEnd(), 4.0) << "inside the span nothing is recomputed";
    vob->setCurrentTime(4.0);
    EXPECT_EQ(view->morphologyStart(), 4.0) << "at the span's end the list is rebuilt and the span moves";
    EXPECT_EQ(view->morphologyEnd(), 8.0);
}

TEST_F(ViewFixture, PaintsTheBackgroundInTheWindowAndBothBars) {
    const std::string path = std::string(NODEDESK_BINARY_DIR) + "/view-snapshot.png";
    ASSERT_TRUE(view->saveSnapshot(path.c_str()));
    QImage img(QString::fromStdString(path));
    ASSERT_FALSE(img.isNull());
    ASSERT_EQ(img.width(), 600);
    ASSERT_EQ(img.height(), 400);
    const Colour bg = view->getPalette().window(0);
    const QColor mid = img.pixelColor(300, 200);
    EXPECT_NEAR(mid.redF(), bg.red(), 0.02) << "the window is filled with the palette's base";
    EXPECT_NEAR(mid.greenF(), bg.green(), 0.02);
    EXPECT_NEAR(mid.blueF(), bg.blue(), 0.02);
    // The bars stand along the bottom and the right edge, where the window is not.
    const QColor bottom = img.pixelColor(300, 400 - ScrollBar::thickness() / 2);
    const QColor right = img.pixelColor(600 - ScrollBar::thickness() / 2, 200);
    EXPECT_NE(bottom, mid);
    EXPECT_NE(right, mid);
}

TEST_F(ViewFixture, BarsFrameTheCanvasAtAnySize) {
    const int t = ScrollBar::thickness();
    for (const XY<int> size : {XY<int>(600, 400), XY<int>(800, 520), XY<int>(300, 240)}) {
        view->resize(size.x, size.y);
        ScrollBar* v = view->vertScrollBar();
        ScrollBar* h = view->horzScrollBar();
        EXPECT_EQ(v->getX() + v->width(), size.x) << "the vertical bar stands on the right edge";
        EXPECT_EQ(v->getY() + v->height(), size.y) << "and reaches the top, the view having no title row";
        EXPECT_EQ(v->getY(), t) << "and stops on the horizontal bar";
        EXPECT_EQ(h->getX(), 0);
        EXPECT_EQ(h->getY(), 0);
        EXPECT_EQ(h->width(), size.x - t) << "the horizontal bar stops short of the vertical one";
        EXPECT_EQ(view->canvas()->renderer().getClipRect(), view->getWindowPos());
    }
}

TEST_F(ViewFixture, DraggingTheQtThumbMovesTheCentreAndKeepsTheZoom) {
    ProbeView probe(FXGraphView::InitArgs(600, 400, vob.get(), 1));
    probe.setViewZoom(0.8);
    probe.setViewCentre(-0.5, 0.5);
    for (ScrollBar* bar : {probe.horzScrollBar(), probe.vertScrollBar()}) {
        auto* control = static_cast<QScrollBar*>(bar->impl().control);
        ASSERT_GT(bar->getThumbSize(), 0.0);
        ASSERT_LT(bar->getThumbSize(), 1.0);
        const double zoom = probe.getViewZoom().getVal();
        const double cx = probe.getViewCX(), cy = probe.getViewCY();
        const QPoint from = thumbCentre(control);
        const QPoint to = bar == probe.horzScrollBar() ? from + QPoint(40, 0) : from + QPoint(0, 40);
        probe.barMessages.clear();

        sendMouse(control, QEvent::MouseButtonPress, from, Qt::LeftButton);
        EXPECT_TRUE(bar->isHeld()) << "a pressed thumb is held";
        sendMouse(control, QEvent::MouseMove, to, Qt::LeftButton);
        const double pos = bar->getThumbPos(), size = bar->getThumbSize();
        sendMouse(control, QEvent::MouseButtonRelease, to, Qt::NoButton);
        EXPECT_FALSE(bar->isHeld());

        ASSERT_FALSE(probe.barMessages.empty()) << "the drag reaches the view";
        for (const std::string& m : probe.barMessages)
            EXPECT_EQ(m, ScrollBar::thumbMovedMsg);
        EXPECT_EQ(probe.getViewZoom().getVal(), zoom) << "a thumb moved at its size leaves the zoom";
        if (bar == probe.horzScrollBar()) {
            EXPECT_GT(pos, 0.0);
            EXPECT_DOUBLE_EQ(probe.getViewCX(), (pos / (1 - size)) * 2.0 - 1.0);
            EXPECT_GT(probe.getViewCX(), cx) << "dragged right, the view looks further right";
            EXPECT_EQ(probe.getViewCY(), cy);
        } else {
            EXPECT_DOUBLE_EQ(probe.getViewCY(), ((1 - pos - size) / (1 - size)) * 2.0 - 1.0);
            EXPECT_LT(probe.getViewCY(), cy) << "dragged down, the view looks further down";
            EXPECT_EQ(probe.getViewCX(), cx);
        }
    }
}

TEST_F(ByHand, CanvasFollowsTheOutermostNodesAndTurnsGoThroughTheNodes) {
    openView(600, 400, "view-nodes-test");
    auto* one = new CountingNode(view, 3, 4);
    view->add(Zk::Ptr<FXGraphViewNode>(one));
    view->updateMinAndMaxPositions();
    EXPECT_EQ(view->getCanvasMinX(), 2.0);
    EXPECT_EQ(view->getCanvasMaxX(), 4.0);
    EXPECT_EQ(view->getCanvasMinY(), 3.0);
    EXPECT_EQ(view->getCanvasMaxY(), 5.0) << "one node: 2 units each way, round it";

    auto* two = new CountingNode(view, -2, 4);
    auto* origin = new CountingNode(view, 0, 0);
    view->add(Zk::Ptr<FXGraphViewNode>(two));
    view->add(Zk::Ptr<FXGraphViewNode>(origin));
    view->updateMinAndMaxPositions();
    EXPECT_EQ(view->getCanvasMinX(), -2.5);
    EXPECT_EQ(view->getCanvasMaxX(), 3.5);
    EXPECT_EQ(view->getCanvasMinY(), -0.5);
    EXPECT_EQ(view->getCanvasMaxY(), 4.5);

    view->rotateNodes(90);
    EXPECT_NEAR(one->x(), -4.0, 1e-12);
    EXPECT_NEAR(one->y(), 3.0, 1e-12);
    EXPECT_NEAR(two->x(), -4.0, 1e-12);
    EXPECT_NEAR(two->y(), -2.0, 1e-12);
    view->rotateNodes(-90);
    EXPECT_NEAR(one->x(), 3.0, 1e-12);
    EXPECT_NEAR(one->y(), 4.0, 1e-12);
    EXPECT_NEAR(two->x(), -2.0, 1e-12);
    EXPECT_NEAR(two->y(), 4.0, 1e-12);
    EXPECT_EQ(one->moves, 2) << "each turn moves the node through its own setPos";
    EXPECT_EQ(two->moves, 2);
    EXPECT_EQ(origin->moves, 0) << "a node on the origin stays";
    EXPECT_EQ(origin->x(), 0.0);
}

TEST_F(ByHand, ExtentsAndTheZoomThatFitsThem) {
    openView(600, 400, "view-fit-test");
    auto* a = new CountingNode(view, 0.5, 0.25);
    auto* b = new CountingNode(view, -0.25, 0.75);
    auto* c = new CountingNode(view, 0.25, -0.5);
    for (auto* n : {a, b, c})
        view->add(Zk::Ptr<FXGraphViewNode>(n));
    view->updateMinAndMaxPositions();
    const double halfH = a->getTop() - a->y();
    const Zk::Box<double> e = view->getGraphExtents();
    EXPECT_DOUBLE_EQ(e.x1, -0.25 - 0.0625);
    EXPECT_DOUBLE_EQ(e.x2, 0.5 + 0.0625);
    EXPECT_DOUBLE_EQ(e.y1, -0.5 - halfH);
    EXPECT_DOUBLE_EQ(e.y2, 0.75 + halfH) << "each corner widens the box on its own axis";

    const double s0 = view->calcPhysicalScale(0.0), s1 = view->calcPhysicalScale(1.0);
    ASSERT_LT(s0, s1);
    // The 30-pixel margin: a box that fills the widget less 30 pixels fits at that scale.
    const double want = (s0 + s1) / 2;
    Zk::Box<double> box;
    box.x1 = 0;
    box.x2 = (600 - 30) / want;
    box.y1 = 0;
    box.y2 = (400 - 30) / want / 2; // the width decides
    EXPECT_DOUBLE_EQ(view->fitViewToCanvRect(box), 0.5);
    box.x2 = 1e-3;
    box.y2 = 1e-3;
    EXPECT_EQ(view->fitViewToCanvRect(box), 1.0) << "a tiny box clamps to full zoom";
    box.x2 = 1e6;
    box.y2 = 1e6;
    EXPECT_EQ(view->fitViewToCanvRect(box), 0.0) << "a vast box clamps to the whole canvas";
    box.x2 = 0;
    box.y2 = 0;
    EXPECT_EQ(view->fitViewToCanvRect(box), 1.0) << "a box of no size divides to infinity: zoom 1";

    double cx = 99, cy = 99;
    const double z = view->calcAutoScale(cx, cy);
    EXPECT_DOUBLE_EQ(cx, (e.x1 + e.x2) / 2);
    EXPECT_DOUBLE_EQ(cy, (e.y1 + e.y2) / 2);
    Zk::Box<double> copy = e;
    EXPECT_EQ(z, view->fitViewToCanvRect(copy));
}

TEST_F(ByHand, ResetViewZoomsOutToShowEveryNodeAndRepaintsWhenAsked) {
    // Three nodes that hang from no channel: each is a root of its own.
    for (uint32_t n = 1; n <= 3; ++n)
        g.effect(n, 0);
    openView(600, 400, "view-reset-test");
    ASSERT_EQ(view->nodes().size(), 3u);
    const XY<double> places[] = {XY<double>(-0.75, -0.5), XY<double>(0.75, 0.5), XY<double>(0.25, 0)};
    for (size_t i = 0; i < 3; ++i)
        view->nodes()[i]->pos_.setPos(places[i].x, places[i].y, false);
    view->updateMinAndMaxPositions();
    view->setViewCentre(0, 0);
    view->setViewZoom(1.0);
    view->draw();
    ASSERT_FALSE(view->isOutOfDate());
    Zk::Box<double> all = view->getGraphExtents();
    const double fit = view->fitViewToCanvRect(all);
    ASSERT_LT(fit, 1.0) << "these nodes do not fit at full zoom";
    view->resetView(RedrawIfChanged, RefitAlways);
    EXPECT_DOUBLE_EQ(view->getViewZoom().getVal(), fit) << "zoomed out just enough";
    EXPECT_FALSE(view->isOutOfDate()) << "a refit without a centring asks for no repaint";
    view->setViewZoom(1.0);
    view->resetView(RedrawIfChanged, RefitIfTooBigAndCentre);
    EXPECT_DOUBLE_EQ(view->getViewZoom().getVal(), fit);
    EXPECT_DOUBLE_EQ(view->getViewCX(), (all.x1 + all.x2) / 2) << "centred on the nodes";
    EXPECT_TRUE(view->isOutOfDate()) << "a centred view repaints";
    view->draw();
    view->resetView(RedrawAlways, RefitAlways);
    EXPECT_TRUE(view->isOutOfDate());
}
