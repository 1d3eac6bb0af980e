// Pointer gestures on the canvas: pressing, holding and moving nodes, a click on a node's body,
// panning and zooming, the wheel, auto-scrolling at the edges on the timer, the fade of a new
// node, and the cursor the pointer shows.
#include <algorithm>
#include <cmath>
#include <vector>

#include "graphnodes/FXGraphViewNode.h"
#include "graphview/FXGraphView.h"
#include "host/AliasedInputEffect.h"
#include "host/Canvas.h"
#include "host/EditGraphSearchScope.h"
#include "host/EditorPreferences.h"
#include "host/EffectInstance_opu4h5a4j.h"
#include "host/Event.h"
#include "host/MenuGlob.h"
#include "host/OSServices.h"
#include "host/UifStd.h"
#include "host/Vob.h"
#include "host/VobManager.h"

namespace {

// Read once at load so that the setting stays accepted; the gestures use DragThreshold.
const int gMaxClickSeparation = config_int("max_click_separation", 200, -2147483647 - 1, 2147483647);

// The click-state bits this code tests: with 0x40 a left drag on the canvas zooms instead of
// panning; a right event without 0x20 ends a canvas press.
constexpr unsigned kZoomDragBit = 0x40;
constexpr unsigned kPanHoldBit = 0x20;

int travel(const Event& e) {
    const XY<int> d = e.distance();
    return static_cast<int>(std::sqrt(static_cast<double>(d.x) * d.x + static_cast<double>(d.y) * d.y));
}

double nowSeconds() {
    return msecsNow() / 1000.0;
}

XY<int> pointerOnScreen() {
    return XY<int>(mouse_get_current_x(), mouse_get_current_y());
}

} // namespace

int FXGraphView::maxClickSeparation() {
    return gMaxClickSeparation;
}

XY<int> FXGraphView::pointerInView() const {
    return screenXYToGlobXY(pointerOnScreen());
}

bool FXGraphView::mouseInAutoScrollArea() const {
    const XY<int> m = pointerInView();
    const Zk::Box<int> w = getWindowPos();
    const bool inside = w.x1 + AutoScrollMargin <= m.x && m.x <= w.x2 - AutoScrollMargin &&
                        w.y1 + AutoScrollMargin <= m.y && m.y <= w.y2 - AutoScrollMargin;
    return !inside;
}

bool FXGraphView::setAutoScrollState(bool on) {
    if (on && !autoScrolling_) {
        autoScrolling_ = true;
        enableETime();
    } else if (!on && autoScrolling_) {
        autoScrolling_ = false;
        disableETime();
    }
    return autoScrolling_;
}

XY<double> FXGraphView::dragTarget(const XY<int>& p) const {
    const XY<double> mid = windowCentre();
    double x = (p.x - dragOffset_[0] - mid.x) / physicalScale_ + getViewCX();
    double y = (p.y - dragOffset_[1] - mid.y) / physicalScale_ + getViewCY();
    x = x > canvasMaxX_ ? canvasMaxX_ : std::max(x, canvasMinX_);
    y = y > canvasMaxY_ ? canvasMaxY_ : std::max(y, canvasMinY_);
    return XY<double>(x, y);
}

void FXGraphView::startNodeDrag(const Zk::Ptr<FXGraphViewNode>& node, const XY<int>& p) {
    const XY<double> mid = windowCentre();
    const double cx = getViewCX(), cy = getViewCY(), s = physicalScale_;
    const double midX = (((node->getLeft() - cx) * s + mid.x) + ((node->getRight() - cx) * s + mid.x)) * 0.5;
    const double midY = (((node->getBottom() - cy) * s + mid.y) + ((node->getTop() - cy) * s + mid.y)) * 0.5;
    dragOffset_[0] = static_cast<int>(p.x - midX);
    dragOffset_[1] = static_cast<int>(p.y - midY);
    draggingNode_ = node;
}

std::vector<Zk::Box<int>> FXGraphView::moveDamage(const FXGraphViewNode& node, const XY<int>& shift) const {
    // Round a node: its connectors, outlines and the primary node's highlight. Round a
    // connection: its thickness and the detour of a curve that runs backwards.
    const int edge = UifStd::getWidgetGap() + getEdgeThickness(EdgeOutline) + 3;
    const int margin = static_cast<int>(physicalScale_ * 0.01) + edge;
    const int curveMargin = static_cast<int>(physicalScale_ * 0.0625) + edge;
    auto span = [](Zk::Box<int>& d, const XY<int>& p) {
        d.x1 = std::min(d.x1, p.x);
        d.x2 = std::max(d.x2, p.x);
        d.y1 = std::min(d.y1, p.y);
        d.y2 = std::max(d.y2, p.y);
    };
    auto grown = [](Zk::Box<int> d, int dx, int dy) {
        d.x1 -= dx;
        d.x2 += dx;
        d.y1 -= dy;
        d.y2 += dy;
        return d;
    };
    std::vector<Zk::Box<int>> areas;
    // The node where it was and where it goes.
    Zk::Box<int> box = node.pixelBox();
    // Input labels below the title may reach a node's width beyond its sides.
    const bool labelsReachOut = getOrientation() == VidRouting::Orientations::BottomToTop &&
                                node.showInputLabels() && !node.hasThumbnail();
    const int reach = labelsReachOut ? box.x2 - box.x1 : 0;
    span(box, XY<int>(box.x1 + shift.x, box.y1 + shift.y));
    span(box, XY<int>(box.x2 + shift.x, box.y2 + shift.y));
    areas.push_back(grown(box, reach + margin, margin));
    // Each connection, from its far end to the near end before and after.
    auto connection = [&](const XY<int>& far, const XY<int>& near) {
        Zk::Box<int> c;
        c.x1 = c.x2 = far.x;
        c.y1 = c.y2 = far.y;
        span(c, near);
        span(c, XY<int>(near.x + shift.x, near.y + shift.y));
        areas.push_back(grown(c, curveMargin, curveMargin));
    };
    for (const auto& [input, c] : node.inputs())
        if (c.node)
            connection(c.node->getOutputPos(static_cast<unsigned char>(c.connector)),
                       node.getInputPos(input));
    for (const auto& [output, c] : node.outputs())
        if (c.node)
            connection(c.node->getInputPos(c.connector),
                       node.getOutputPos(static_cast<unsigned char>(output)));
    mergeDamage(areas);
    return areas;
}

// Each area is a repaint of its own, which walks every node and connection: two areas whose
// bounding box is no bigger than the two together are painted as that box.
void FXGraphView::mergeDamage(std::vector<Zk::Box<int>>& areas) {
    auto size = [](const Zk::Box<int>& b) { return static_cast<long>(b.x2 - b.x1) * (b.y2 - b.y1); };
    for (bool merged = true; merged;) {
        merged = false;
        for (size_t i = 0; i < areas.size() && !merged; ++i)
            for (size_t j = i + 1; j < areas.size() && !merged; ++j) {
                Zk::Box<int> u = areas[i];
                u.x1 = std::min(u.x1, areas[j].x1);
                u.y1 = std::min(u.y1, areas[j].y1);
                u.x2 = std::max(u.x2, areas[j].x2);
                u.y2 = std::max(u.y2, areas[j].y2);
                if (size(u) <= size(areas[i]) + size(areas[j])) {
                    areas[i] = u;
                    areas.erase(areas.begin() + static_cast<long>(j));
                    merged = true;
                }
            }
    }
}

std::vector<Zk::Box<int>> FXGraphView::restingDamage(const FXGraphViewNode& node) const {
    std::vector<Zk::Box<int>> areas;
    for (Zk::Box<int> a : moveDamage(node, XY<int>(0, 0)))
        if (clipRectToView(a.x1, a.y1, a.x2, a.y2))
            areas.push_back(a);
    mergeDamage(areas);
    return areas;
}

bool FXGraphView::canFloat() const {
    return !Drawable::redrawsDisabled() && canvas()->renderer().isReadyToRender() && !drawingOverview_;
}

// The picture is the view as it stands with the node's own boxes painted again without it; a
// view waiting for a repaint is painted whole first.
void FXGraphView::keepPictureWithout(const Zk::Ptr<FXGraphViewNode>& node) {
    forgetPicture();
    floating_ = node;
    hidingFloating_ = true;
    if (isOutOfDate()) {
        resetClipRect();
        draw();
    } else {
        for (const Zk::Box<int>& a : restingDamage(*node)) {
            canvas()->renderer().setClipRect(a);
            draw();
        }
        resetClipRect();
    }
    hidingFloating_ = false;
    canvas()->keepSurface();
}

void FXGraphView::paintFloating() {
    FXGraphViewNode& n = *floating_;
    n.box_ = n.pixelBox();
    CanvasRenderer& r = canvas()->renderer();
    for (const Zk::Box<int>& a : floatingAreas_) {
        if (!canvas()->restoreKept(a))
            continue;
        r.setClipRect(a);
        if (getPrimaryNodePtr() == &n)
            drawPrimaryNodeHighlight();
        drawConnections(EdgeOutline, &n);
        n.draw();
        drawConnections(EdgeMain, &n);
    }
    chanPositions_[{n.chanId(), n.slotKey()}] = XY<double>(n.x(), n.y());
}

void FXGraphView::landFloating() {
    Zk::Ptr<FXGraphViewNode> node = floating_;
    const bool kept = canvas() && canvas()->hasKeptSurface();
    forgetPicture();
    if (!node || !kept || !findViewRecForNode(node->getId()))
        return;
    EditGraphSearchScope still(edit_);
    for (const Zk::Box<int>& a : restingDamage(*node)) {
        canvas()->renderer().setClipRect(a);
        draw();
    }
    resetClipRect();
}

void FXGraphView::forgetPicture() {
    if (canvas() && canvas()->hasKeptSurface())
        canvas()->dropKeptSurface();
    floating_ = nullptr;
}

void FXGraphView::moveHeldNode(const Zk::Ptr<FXGraphViewNode>& node, const XY<double>& to, bool wholeView) {
    if (wholeView) {
        node->setPos(to.x, to.y, true);
        return;
    }
    const XY<int> shift(static_cast<int>(std::lround((to.x - node->x()) * physicalScale_)),
                        static_cast<int>(std::lround((to.y - node->y()) * physicalScale_)));
    std::vector<Zk::Box<int>> areas;
    for (Zk::Box<int> a : moveDamage(*node, shift))
        if (clipRectToView(a.x1, a.y1, a.x2, a.y2))
            areas.push_back(a);
    if (areas.empty()) {
        node->setPos(to.x, to.y, true);
        return;
    }
    mergeDamage(areas);
    // A move changes no graph: the repaints of all its areas share one walk of the edit.
    EditGraphSearchScope still(edit_);
    if (canFloat()) {
        if (floating_ != node || !canvas()->hasKeptSurface())
            keepPictureWithout(node);
        // The move's own announcement puts the picture back and paints the node over it.
        floatingAreas_ = areas;
        node->setPos(to.x, to.y, true);
        floatingAreas_.clear();
        resetClipRect();
        return;
    }
    // The move's own announcement repaints the first area; the others follow.
    CanvasRenderer& renderer = canvas()->renderer();
    renderer.setClipRect(areas.front());
    node->setPos(to.x, to.y, true);
    for (size_t i = 1; i < areas.size(); ++i) {
        renderer.setClipRect(areas[i]);
        draw();
    }
    resetClipRect();
}

bool FXGraphView::handleMouseEvent(const Event& e) {
    bool handled = false;
    if (mouse_left_event(e) && mouse_down_event(e)) {
        bool done = false;
        if (!(vob() && vob()->isReadOnly())) {
            const XY<int> p = e.pos();
            // A click may rebuild the list: each node is held by its own pointer while it is asked.
            for (size_t i = 0; i < nodes_.size() && !done; ++i) {
                Zk::Ptr<FXGraphViewNode> node = nodes_[i];
                if (!node->onScreen_)
                    continue;
                int connector = 0;
                switch (node->findConnector(p.x, p.y, connector)) {
                case FXGraphViewNode::HitBody: {
                    startNodeDrag(node, p);
                    const IdStamp held = node->getId();
                    removeDraggedIFConnection();
                    // Letting a loose connection go rebuilds the list, which lets go of the node:
                    // the press holds the node that now stands for it.
                    if (!draggingNode_)
                        if (FXGraphViewNode* again = findViewRecForNode(held))
                            startNodeDrag(Zk::Ptr<FXGraphViewNode>(again), p);
                    handled = done = true;
                    break;
                }
                case FXGraphViewNode::HitOutput:
                    handled = handleOutputClicked(node, connector);
                    done = true;
                    break;
                case FXGraphViewNode::HitInput:
                    handled = handleInputClicked(node, connector);
                    done = true;
                    break;
                default:
                    break;
                }
            }
            if (!done && removeDraggedIFConnection())
                handled = done = true;
        }
        if (!done) {
            panning_ = true;
            const XY<int> s = pointerOnScreen();
            lastMousePos_[0] = s.x;
            lastMousePos_[1] = s.y;
            handled = true;
        }
    } else if (draggingNode_ && mouse_up_event(e)) {
        if (mouse_left_event(e) && travel(e) < DragThreshold) {
            const XY<int> p = e.pos();
            for (size_t i = 0; i < nodes_.size(); ++i) {
                Zk::Ptr<FXGraphViewNode> node = nodes_[i];
                int connector = 0;
                if (node->findConnector(p.x, p.y, connector) == FXGraphViewNode::HitBody &&
                    handleNodeClicked(node))
                    break;
            }
        } else if (mouse_right_event(e)) {
            if (auto* menu = dynamic_cast<MenuGlob*>(parent()))
                menu->processRightMouseClicks(e);
        }
        if (eTimeCount_ > 0)
            disableETime();
        draggingNode_ = nullptr;
        landFloating();
        handled = true;
    } else if (draggingNode_ && mouse_move_event(e)) {
        handled = true;
        if (travel(e) >= DragThreshold) {
            if (mouseInAutoScrollArea() && !autoScrolling_) {
                autoScrolling_ = true;
                enableETime();
            }
            const XY<double> target = dragTarget(e.pos());
            Zk::Ptr<FXGraphViewNode> node = draggingNode_;
            if (OS().isKeyDown(TreeMoveKey) && manualPosMode_.getVal())
                translateManuallyPositionedNodes(node->node(), target.x - node->x(), target.y - node->y(),
                                                 true);
            else
                moveHeldNode(node, target, false);
        }
    } else if (checkForPanAndZoom(e)) {
        handled = true;
    }

    if (!mouseInAutoScrollArea() && autoScrolling_) {
        autoScrolling_ = false;
        if (eTimeCount_ > 0)
            disableETime();
    }
    return handled;
}

bool FXGraphView::checkForPanAndZoom(const Event& e) {
    if (!panning_)
        return false;
    if (mouse_left_event(e) && mouse_up_event(e)) {
        panning_ = false;
        if (!isMouseMoveSignificant(e) && UifStd::getWindowArrangement() == 0)
            if (Glob* root = getRootParent(this))
                root->popToTop(false);
        return false;
    }
    if (mouse_left_event(e) && mouse_move_event(e)) {
        const XY<int> s = pointerOnScreen();
        if (s.x == lastMousePos_[0] && s.y == lastMousePos_[1])
            return true;
        if (OS().isKeyDown(TreeMoveKey) || (getMouseClickState() & kZoomDragBit)) {
            const int dy = s.y - lastMousePos_[1];
            if (dy != 0) {
                const double z = std::clamp(dy / ZoomPixelsPerRange + viewZoom_.getVal(), 0.0, 1.0);
                setViewZoom(z);
                draw();
            }
        } else {
            const double cx = getViewCX() - (s.x - lastMousePos_[0]) / physicalScale_;
            const double cy = getViewCY() - (s.y - lastMousePos_[1]) / physicalScale_;
            setViewCentre(cx, cy);
            draw();
        }
        lastMousePos_[0] = s.x;
        lastMousePos_[1] = s.y;
        return true;
    }
    if (mouse_right_event(e) && !(getMouseClickState() & kPanHoldBit)) {
        panning_ = false;
        draw();
        return false;
    }
    return false;
}

// One wheel step moves the zoom by WheelZoomStep. With the pointer over the drawing area, the
// graph point under the pointer stays under it; elsewhere the view zooms about its centre.
int FXGraphView::handleZoom(int direction) {
    const XY<int> m = pointerInView();
    const Zk::Box<int> w = getWindowPos();
    const bool overDrawing = w.x1 <= m.x && m.x <= w.x2 && w.y1 <= m.y && m.y <= w.y2;
    const XY<double> fixed = viewToGraphSpace(m.x, m.y);
    setViewZoom(direction > 0 ? viewZoom_.getVal() + WheelZoomStep : viewZoom_.getVal() - WheelZoomStep);
    if (overDrawing) {
        const XY<double> mid = windowCentre();
        setViewCentre(fixed.x - (m.x - mid.x) / physicalScale_, fixed.y - (m.y - mid.y) / physicalScale_);
    }
    update();
    return 1;
}

bool FXGraphView::handleNodeClicked(Zk::Ptr<FXGraphViewNode> node) {
    auto* fx = dynamic_cast<EffectInstance_opu4h5a4j*>(node ? node->node().get() : nullptr);
    if (!fx || dynamic_cast<AliasedInputEffect*>(fx))
        return false;
    EasyBackup step(edit_);
    fx->setEnabled(!fx->isEnabled());
    if (edit_)
        edit_->addModification(EditModifications(EditModification(11)), true);
    return true;
}

void FXGraphView::handleTimerEvent() {
    const Zk::Box<int> w = getWindowPos();
    const XY<int> m = pointerInView();
    const double now = nowSeconds();
    bool scrolled = false;
    if (autoScrolling_) {
        if (mouseInAutoScrollArea()) {
            scrolled = true;
            const double t = (now - eTimeStamp_) * 0.5;
            const double a = width() * t;
            const double b = height() * t;
            double cx = getViewCX(), cy = getViewCY();
            // The left and lower edges go by the view's width, the right and upper by its height.
            if (m.x < w.x1 + AutoScrollMargin)
                cx -= a / physicalScale_;
            if (m.x > w.x2 - AutoScrollMargin)
                cx += b / physicalScale_;
            if (m.y < w.y1 + AutoScrollMargin)
                cy -= a / physicalScale_;
            if (m.y > w.y2 - AutoScrollMargin)
                cy += b / physicalScale_;
            setViewCentre(cx, cy);
        } else {
            autoScrolling_ = false;
            disableETime();
        }
    } else if (fadingNewNode_) {
        fadeElapsed_ += now - eTimeStamp_;
        Zk::Ptr<FXGraphViewNode> node = fadingNewNode_;
        node->fade_ = 1.0 - std::min(fadeElapsed_, FadeDuration) / FadeDuration;
        makeCanvasCurrent();
        node->draw();
        if (fadeElapsed_ > FadeDuration)
            initNodeFade(nullptr);
    }
    eTimeStamp_ = now;

    if (draggingNode_) {
        const XY<double> target = dragTarget(m);
        moveHeldNode(draggingNode_, target, scrolled);
    } else if (draggingIFNode_) {
        if (mouseInAutoScrollArea() && !autoScrolling_) {
            autoScrolling_ = true;
            enableETime();
        }
        if (m.x != lastMousePos_[0] || m.y != lastMousePos_[1] || autoScrolling_)
            draw();
        lastMousePos_[0] = m.x;
        lastMousePos_[1] = m.y;
    }
}

void FXGraphView::initNodeFade(FXGraphViewNode* node) {
    if (fadingNewNode_) {
        fadingNewNode_->fade_ = 0.0;
        fadingNewNode_ = nullptr;
        disableETime();
    }
    if (!node)
        return;
    node->fade_ = 1.0;
    fadingNewNode_ = Zk::Ptr<FXGraphViewNode>(node);
    fadeElapsed_ = 0.0;
    if (eTimeCount_ < 1) {
        setInterest(TimerInterest);
        eTimeStamp_ = nowSeconds();
    }
    ++eTimeCount_;
}

MouseCursorID FXGraphView::contextCursor(const XY<int>& screenPos) {
    if (vob() && vob()->isReadOnly())
        return CursorArrow;
    const XY<int> p = screenXYToGlobXY(screenPos);
    if (draggingNode_)
        return CursorMove;
    for (const auto& node : nodes_) {
        int connector = 0;
        const int hit = node->findConnector(p.x, p.y, connector);
        if (hit != FXGraphViewNode::HitOutput && hit != FXGraphViewNode::HitInput)
            continue;
        // A port takes part unless the loose connection is fixed at a port of the same kind.
        const bool sameKind = hit == FXGraphViewNode::HitOutput ? !draggedIFIsInput_ : draggedIFIsInput_;
        if (!draggingIFNode_ || !sameKind)
            return CursorCross;
        if (node != draggingIFNode_)
            return CursorForbidden;
    }
    return CursorArrow;
}
