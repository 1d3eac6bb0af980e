// The graph view frame: construction, the coordinate spaces, zoom and centre, scroll bars,
// orientation and the timer count.
#include "graphview/FXGraphView.h"

#include <algorithm>
#include <cmath>

#include "graphnodes/FXGraphViewNode.h"
#include "graphview/BoxWidening.h"
#include "host/Canvas.h"
#include "host/Colour.h"
#include "host/CutIterator.h"
#include "host/EditorPreferences.h"
#include "host/FXEditor.h"
#include "host/GlibDraw.h"
#include "host/MenuData.h"
#include "host/MethodCallback.h"
#include "host/OSServices.h"
#include "host/RectDescription.h"
#include "host/Resources.h"
#include "host/TextBox.h"
#include "host/TransitStatus.h"
#include "host/UifStd.h"
#include "host/Vob.h"
#include "host/VobManager.h"
#include "nodeui/NodeUIPosManager.h"

using VidRouting::Orientations::BottomToTop;
using VidRouting::Orientations::LeftToRight;
using VidRouting::Orientations::Orientation;

template class ValManager<double, FXGraphView>;

namespace {

StandardPanel::InitArgs panelArgs(const FXGraphView::InitArgs& a) {
    StandardPanel::InitArgs p(a.width, a.height, Border(0, 0, 15));
    p.canvas = a.canvas;
    p.palette = a.palette;
    p.config = a.config;
    return p;
}

} // namespace

using graphview_detail::widenByNode;

FXGraphView::FXGraphView(const InitArgs& args)
    : StandardPanel(panelArgs(args)),
      VobClient(Cookie(), args.vob, VobClient::kHighPriority, VobClient::kManaged), zoomObserver_(this),
      centreObserver_(this), chanType_(args.chanType) {
    viewCentre_.setVal(XY<double>(0.5, 0.5));
    manualPosMode_.setVal(true);
    viewZoom_.setVal(0.75);
    reservedFlag_.setVal(false);
    reservedVal1_.setVal(0.0);
    reservedVal2_.setVal(0.0);
    maxNodeWidth_ = 6 * UifStd::getRowHeight();
    backgroundCol_ = getPalette().window(0);
    canvasMinX_ = canvasMinY_ = -1.0;
    canvasMaxX_ = canvasMaxY_ = 1.0;
    physicalScale_ = calcPhysicalScale(viewZoom_.getVal());

    orientation_ = orientationFromString(prefs().getPreference(kOrientationPrefKey, kOrientationPrefDefault));

    using ProjectEvent = NotifierEvent<Zk::CurrentProject::ChangeDescription>;
    projectGuards_.push_back(Zk::CurrentProject::addListener(Zk::Ptr<iCallbackBase<int, ProjectEvent>>(
        new MethodCallback<FXGraphView, ProjectEvent, int>(this, &FXGraphView::handleProjectStateChange))));

    setManagementDetails(VobClient::kUnmanaged);
    setTitleShown(false); // the view is all canvas: no title row

    const int t = ScrollBar::thickness();
    ScrollBar::InitArgs v(t, height() - t, ScrollBar::Vertical);
    vertScrollBar_ = static_cast<ScrollBar*>(addChild(new ScrollBar(v), Glob::UserTopRight(0, 0)));
    ScrollBar::InitArgs h(width() - t, t, ScrollBar::Horizontal);
    horzScrollBar_ = static_cast<ScrollBar*>(addChild(new ScrollBar(h), Glob::UserBottomLeft(0, 0)));
    vertScrollBar_->setStretchable(true);
    horzScrollBar_->setStretchable(true);

    zoomObserver_.registerWith(&viewZoom_);
    centreObserver_.registerWith(&viewCentre_);

    std::vector<IdStamp> chans;
    if (args.vob && args.vob->edit())
        args.vob->edit()->getChans(chans, static_cast<unsigned>(chanType_), 15);
    setEditFocus(args.vob, chans.empty() ? IdStamp(0, 0, 0) : chans.front(), false);
}

FXGraphView::~FXGraphView() {
    NodeUIManagerClient::registerWith(nullptr);
    if (eTimeCount_ > 0) {
        clearInterest(Glob::TimerInterest);
        resetClipRect();
    }
}

double FXGraphView::getEditTime() const {
    return vob() ? vob()->getCurrentTime(1) : 0.0;
}

bool FXGraphView::handleViewWinChange(ValServer<double>*, double&) {
    return true;
}

// --- the three spaces -----------------------------------------------------------------------------

XY<double> FXGraphView::graphToViewSpace(double x, double y) const {
    XY<double> r;
    graphToViewSpace(x, y, r.x, r.y);
    return r;
}

XY<double> FXGraphView::windowCentre() const {
    // In integers first, then halved.
    const Zk::Box<int> w = getWindowPos();
    return XY<double>(static_cast<double>(w.x1 + w.x2) * 0.5, static_cast<double>(w.y1 + w.y2) * 0.5);
}

void FXGraphView::graphToViewSpace(double x, double y, double& vx, double& vy) const {
    const XY<double> c = windowCentre();
    const double cx = c.x, cy = c.y;
    vx = (x - getViewCX()) * physicalScale_ + cx;
    vy = (y - getViewCY()) * physicalScale_ + cy;
}

XY<double> FXGraphView::viewToGraphSpace(double x, double y) const {
    XY<double> r;
    viewToGraphSpace(x, y, r.x, r.y);
    return r;
}

void FXGraphView::viewToGraphSpace(double x, double y, double& gx, double& gy) const {
    const XY<double> c = windowCentre();
    const double cx = c.x, cy = c.y;
    gx = (x - cx) / physicalScale_ + getViewCX();
    gy = (y - cy) / physicalScale_ + getViewCY();
}

XY<int> FXGraphView::graphToPixels(double x, double y) {
    auto round = [](double v) {
        const double w = v + 0.5;
        return static_cast<int>(w > 0 ? w + 0.5 : w - 0.5);
    };
    return XY<int>(round(x), round(y));
}

Zk::Box<int, Zk::BottomUpTraits> FXGraphView::getWindowPos() const {
    Zk::Box<int> b;
    b.x1 = UifStd::getIndentWidth();
    b.y1 = ScrollBar::thickness() + UifStd::getWidgetGap();
    b.x2 = width() - UifStd::getWidgetGap() - ScrollBar::thickness();
    b.y2 = height() - UifStd::getIndentWidth();
    return b;
}

bool FXGraphView::clipRectToView(int& x1, int& y1, int& x2, int& y2) const {
    const Zk::Box<int> w = getWindowPos();
    if (x2 < w.x1 || x1 > w.x2 || y2 < w.y1 || y1 > w.y2) {
        x1 = y1 = x2 = y2 = 0;
        return false;
    }
    x1 = std::max(x1, w.x1);
    y1 = std::max(y1, w.y1);
    x2 = std::min(x2, w.x2);
    y2 = std::min(y2, w.y2);
    return true;
}

void FXGraphView::resetClipRect() {
    canvas()->renderer().setClipRect(getWindowPos());
}

void FXGraphView::constrainToCanvas(double& x, double& y) const {
    if (x > canvasMaxX_)
        x = canvasMaxX_;
    else if (x < canvasMinX_)
        x = canvasMinX_;
    if (y > canvasMaxY_)
        y = canvasMaxY_;
    else if (y < canvasMinY_)
        y = canvasMinY_;
}

// --- scale and zoom -------------------------------------------------------------------------------

double FXGraphView::calcPhysicalScale(double zoom) const {
    const double maxScale = maxNodeWidth_ * 8.0;
    const double fit =
        std::min(width() / (canvasMaxX_ - canvasMinX_), height() / (canvasMaxY_ - canvasMinY_));
    const double minScale = std::min(maxScale, fit);
    return (maxScale - minScale) * zoom + minScale;
}

double FXGraphView::fitViewToCanvRect(Zk::Box<double, Zk::BottomUpTraits>& box) const {
    const double s0 = calcPhysicalScale(0.0);
    const double s1 = calcPhysicalScale(1.0);
    const double m = std::min((width() - 30) / (box.x2 - box.x1), (height() - 30) / (box.y2 - box.y1));
    const double z = (m - s0) / (s1 - s0);
    // On a canvas shown whole at full size s0 equals s1 and any zoom is the same: take 0.
    if (!(z >= 0.0))
        return 0.0;
    return z > 1.0 ? 1.0 : z;
}

double FXGraphView::calcAutoScale(double& cx, double& cy) const {
    Zk::Box<double> b = getGraphExtents();
    cx = (b.x1 + b.x2) * 0.5;
    cy = (b.y1 + b.y2) * 0.5;
    return fitViewToCanvRect(b);
}

Zk::Box<double, Zk::BottomUpTraits> FXGraphView::getGraphExtents() const {
    Zk::Box<double> b;
    for (const auto& n : nodes_)
        widenByNode(b, *n);
    return b;
}

void FXGraphView::setViewZoom(double z) {
    z = std::clamp(z, 0.0, 1.0);
    physicalScale_ = calcPhysicalScale(z);
    viewZoom_.setVal(z);
}

void FXGraphView::setViewCentre(double x, double y) {
    constrainToCanvas(x, y);
    viewCentre_.setVal(XY<double>(x, y));
}

void FXGraphView::setMaxNodeSize(int w) {
    maxNodeWidth_ = w;
    physicalScale_ = calcPhysicalScale(viewZoom_.getVal());
}

XY<int> FXGraphView::getNodeSize() const {
    if (nodes_.empty())
        return XY<int>(static_cast<int>(physicalScale_ * 0.125), static_cast<int>(physicalScale_ * 0.1));
    const Zk::Box<int>& b = nodes_.front()->box_;
    return XY<int>(std::abs(b.x2 - b.x1), std::abs(b.y2 - b.y1));
}

uint16_t FXGraphView::getEdgeThickness(eEdgeType type) const {
    const float t = static_cast<float>(static_cast<float>(viewZoom_.getVal()) *
                                       (static_cast<float>(UifStd::getRowHeight()) / 7.0));
    int r = static_cast<int>(static_cast<double>(t) + 0.5);
    if (r < 1)
        r = 1;
    if (type == EdgeOutline)
        r += 1;
    return static_cast<uint16_t>(r);
}

void FXGraphView::resetView(FXGraphVieweRedrawFlag redraw, FXGraphViewRefitFlag refit) {
    const bool moved = ensureNodeListVisible(getAllNodes(), refit);
    if (moved || redraw == RedrawAlways)
        update();
}

void FXGraphView::resize(double w, double h) {
    StandardPanel::resize(w, h);
    resetClipRect();
    updateScrollbars(false);
    const int t = ScrollBar::thickness();
    if (horzScrollBar_)
        horzScrollBar_->setWidth(width() - t);
    if (vertScrollBar_)
        vertScrollBar_->setHeight(height() - t);
}

void FXGraphView::updateScrollbars(bool redraw) {
    const double s = physicalScale_;
    if (horzScrollBar_ && !horzScrollBar_->isHeld()) {
        const double viewW = width() / s;
        const double span = (canvasMaxX_ - canvasMinX_) + viewW;
        const bool a = horzScrollBar_->setThumbPos((getViewCX() - canvasMinX_) / span);
        const bool b = horzScrollBar_->setThumbSize(viewW / span);
        if (redraw && (a || b))
            horzScrollBar_->redrawThumb();
    }
    if (vertScrollBar_ && !vertScrollBar_->isHeld()) {
        const double viewH = height() / s;
        const double span = (canvasMaxY_ - canvasMinY_) + viewH;
        const double size = viewH / span;
        // A bar's position runs downward, graph y upward.
        const bool a = vertScrollBar_->setThumbPos(1.0 - ((getViewCY() - canvasMinY_) / span + size));
        const bool b = vertScrollBar_->setThumbSize(size);
        if (redraw && (a || b))
            vertScrollBar_->redrawThumb();
    }
}

void FXGraphView::handleScrollbarMsg(ScrollBar* bar, const LightweightString<char>& msg) {
    const double w = width(), h = height(), s = physicalScale_;
    const double s0 = calcPhysicalScale(0.0), s1 = calcPhysicalScale(1.0);
    const double pos = bar->getThumbPos(), size = bar->getThumbSize();
    double cx = getViewCX(), cy = getViewCY();
    if (bar == horzScrollBar_) {
        if (msg == ScrollBar::leftButtonPressedMsg) {
            cx = getViewCX() - (w / s) / 3;
        } else if (msg == ScrollBar::rightButtonPressedMsg) {
            cx = getViewCX() + (w / s) / 3;
        } else {
            const double z = ((w - w / size) / (canvasMinX_ - canvasMaxX_) - s0) / (s1 - s0);
            if (std::fabs(z - viewZoom_.getVal()) >= 1e-6) {
                setViewZoom(z);
                update();
                updateScrollbars(true);
                return;
            }
            cx = (pos / (1 - size)) * (canvasMaxX_ - canvasMinX_) + canvasMinX_;
        }
    } else {
        if (msg == ScrollBar::upButtonPressedMsg) {
            cy = getViewCY() + (h / s) / 3;
        } else if (msg == ScrollBar::downButtonPressedMsg) {
            cy = getViewCY() - (h / s) / 3;
        } else {
            double z = ((h - h / size) / (canvasMinY_ - canvasMaxY_) - s0) / (s1 - s0);
            if (std::fabs(z - viewZoom_.getVal()) >= 1e-6) {
                z = std::clamp(z, 0.0, 1.0);
                setViewZoom(z);
                update();
                updateScrollbars(true);
                return;
            }
            cy = ((1 - pos - size) / (1 - size)) * (canvasMaxY_ - canvasMinY_) + canvasMinY_;
        }
    }
    setViewCentre(cx, cy);
    update();
    updateScrollbars(true);
}

void FXGraphView::enableETime() {
    if (eTimeCount_ <= 0) {
        setInterest(Glob::TimerInterest);
        eTimeStamp_ = msecsNow() / 1000.0;
    }
    ++eTimeCount_;
}

void FXGraphView::disableETime() {
    if (eTimeCount_ <= 0)
        return;
    if (--eTimeCount_ == 0)
        clearInterest(Glob::TimerInterest);
    resetClipRect();
}

int FXGraphView::getPrimaryChanIx() const {
    return edit_ ? edit_->getIdx(primaryChan_) : -1;
}

void FXGraphView::setOrientation(Orientation o, bool refit) {
    if (o == orientation_)
        return;
    orientation_ = o;
    if (auto manager = posManager())
        manager->setOrientation(o);
    prefs().setPreference(kOrientationPrefKey, orientationToString(o));
    if (nodes_.empty())
        return;
    rotateNodes(o == LeftToRight ? -90.0 : 90.0);
    if (refit) {
        ensureNodeListVisible(getAllNodes(), RefitIfTooBigAndCentre);
        update();
    }
}
