// Placing nodes: the tidy of all roots, manual position mode's rules for new nodes, moving and
// turning groups of nodes, the canvas bounds that follow the nodes, and the span of time the
// node list holds for.
#include <algorithm>
#include <cmath>
#include <functional>
#include <unordered_set>

#include "graphnodes/FXGraphViewNode.h"
#include "graphview/FXGraphView.h"
#include "graphview/RootStacker.h"
#include "host/CutIterator.h"
#include "host/EffectInstance_opu4h5a4j.h"
#include "host/FXEditor.h"
#include "host/MaterialUsageNode.h"

namespace {

struct PointHash {
    size_t operator()(const std::pair<double, double>& p) const {
        return std::hash<double>()(p.first) * 31 + std::hash<double>()(p.second);
    }
};

} // namespace

void FXGraphView::tidy() {
    autoTidy();
    ensureNodeListVisible(getAllNodes(), RefitIfTooBigAndCentre);
    update();
}

void FXGraphView::autoTidy() {
    autoTidyNodeRecs(getRoots(), XY<double>(0, 0));
}

void FXGraphView::autoTidyNodeRecs(const std::vector<IdStamp>& roots, XY<double> origin) {
    // One layout for the view and the layout program: each root's tree from the origin, the
    // next origin below (LeftToRight) or beside (BottomToTop) the tree before.
    RootStacker::tidyRoots(edit_, getEditTime(), roots, origin, this);
}

bool FXGraphView::assignPositionFromChannel(FXGraphViewNode* node) {
    if (!node)
        return false;
    auto it = chanPositions_.find({node->chanId(), node->slotKey()});
    if (it == chanPositions_.end())
        return false;
    node->pos_.NotifyWithDisable::disable();
    node->setPos(it->second.x, it->second.y, true);
    node->pos_.NotifyWithDisable::enable();
    return true;
}

void FXGraphView::assignPositionFromConnections(FXGraphViewNode* node) {
    if (!node || node->pos_.hasAnchor())
        return;
    const double time = getEditTime();
    EditGraphIterator it(edit_, 0, time, 1);
    if (!node->node() || !it.search(node->node().get()))
        return;
    constexpr double kStep = 0.1875;
    if (it.moveBack()) {
        Zk::Ptr<FXGraphNodeBase> consumer = it.getNode(-1);
        auto* fx = dynamic_cast<EffectInstance_opu4h5a4j*>(consumer.get());
        NodeUIPosRec* consumerRec = consumer ? getPosRecForNode(consumer->getId()) : nullptr;
        if (fx && consumerRec && consumerRec->hasAnchor()) {
            const uint16_t tracks = fx->getNumTrackInputs();
            if (tracks > 1) {
                bool passedSelf = false;
                for (uint16_t k = 0; k < tracks; ++k) {
                    if (!it.moveToInput(k))
                        continue;
                    Zk::Ptr<FXGraphNodeBase> there = it.getNode(-1);
                    it.moveBack();
                    if (there.get() == node->node().get()) {
                        passedSelf = true;
                        continue;
                    }
                    NodeUIPosRec* rec = there ? getPosRecForNode(there->getId()) : nullptr;
                    if (!rec || !rec->hasAnchor())
                        continue;
                    if (rec->anchorX() == -1 && rec->anchorY() == -1)
                        break;
                    node->setPos(rec->anchorX(), rec->anchorY() + (passedSelf ? kStep : -kStep), true);
                    return;
                }
            } else {
                node->setPos(consumerRec->anchorX() - kStep, consumerRec->anchorY(), true);
                return;
            }
        }
    }
    // No place beside a sibling: after the rightmost input, level with the middle of them all.
    EditGraphIterator again(edit_, 0, time, 1);
    if (!again.search(node->node().get()))
        return;
    bool any = false;
    double minX = 0, minY = 0, maxX = 0, maxY = 0;
    for (unsigned i = 0; i < node->node()->getNumInputs(); ++i) {
        if (!again.moveToInput(i))
            continue;
        Zk::Ptr<FXGraphNodeBase> in = again.getNode(-1);
        again.moveBack();
        NodeUIPosRec* rec = in ? getPosRecForNode(in->getId()) : nullptr;
        if (!rec || !rec->hasAnchor())
            continue;
        if (!any) {
            minX = maxX = rec->anchorX();
            minY = maxY = rec->anchorY();
            any = true;
            continue;
        }
        minX = std::min(minX, rec->anchorX());
        maxX = std::max(maxX, rec->anchorX());
        minY = std::min(minY, rec->anchorY());
        maxY = std::max(maxY, rec->anchorY());
    }
    if (any)
        node->setPos(maxX + kStep, minY + std::fabs(maxY - minY) * 0.5, true);
}

void FXGraphView::assignPositionsManual(Vector<FXGraphViewNode*>& nodes, double left, double right,
                                        double ySum, int count) {
    constexpr double kStep = 0.1875;
    const double y = ySum / count;
    double x = left - kStep;
    auto place = [](FXGraphViewNode* n, double px, double py) {
        n->pos_.NotifyWithDisable::disable();
        n->setPos(px, py, true);
        n->pos_.NotifyWithDisable::enable();
    };
    for (size_t i = nodes.size(); i-- > 0;) {
        FXGraphViewNode* n = nodes[i];
        if (n->pos_.hasAnchor())
            continue;
        if (n->highlighted_) {
            place(n, right + kStep, y);
        } else if (!isPlainMaterial(n->node().get())) {
            place(n, x, y);
            x -= kStep;
        }
    }
    double column = y;
    for (size_t i = nodes.size(); i-- > 0;) {
        FXGraphViewNode* n = nodes[i];
        if (n->pos_.hasAnchor())
            continue;
        place(n, x, column);
        column -= kStep;
    }
}

void FXGraphView::relativeMoveTree(EditGraphIterator& it, const double& dx, const double& dy, int rootIndex,
                                   std::vector<NodeUIPosRec*>& seen) {
    Zk::Ptr<FXGraphNodeBase> node = it.getNode(-1);
    FXGraphViewNode* viewNode = node ? findViewRecForNode(node->getId()) : nullptr;
    if (!viewNode || viewNode->pos_.visitMark_ != rootIndex)
        return;
    NodeUIPosRec* rec = &viewNode->pos_;
    for (size_t i = seen.size(); i-- > 0;)
        if (seen[i] == rec)
            return;
    seen.push_back(rec);
    rec->setPos(rec->x() + dx, rec->y() + dy, false);
    for (unsigned input = 0; input < node->getNumInputs(); ++input) {
        if (it.moveToInput(input)) {
            relativeMoveTree(it, dx, dy, rootIndex, seen);
            it.moveBack();
        }
    }
}

void FXGraphView::translateManuallyPositionedNodes(Zk::Ptr<FXGraphNodeBase> node, double dx, double dy,
                                                   bool) {
    EditGraphIterator it = FXEditor::getIteratorFor(edit_, node.get(), getEditTime(), 9);
    Vector<Zk::Ptr<FXGraphNodeBase>> components;
    it.findAllComponents(components);
    for (const auto& c : components)
        if (NodeUIPosRec* rec = c ? getPosRecForNode(c->getId()) : nullptr)
            rec->setPos(rec->x() + dx, rec->y() + dy, false);
    update();
}

void FXGraphView::translateManuallyPositionedNodes(EditGraphIterator& it, double dx, double dy) {
    Zk::Ptr<FXGraphNodeBase> node = it.getNode(-1);
    if (!node)
        return;
    if (NodeUIPosRec* rec = getPosRecForNode(node->getId()))
        rec->setPos(rec->x() + dx, rec->y() + dy, false);
    for (unsigned input = 0; input < node->getNumInputs(); ++input) {
        if (it.moveToInput(input)) {
            translateManuallyPositionedNodes(it, dx, dy);
            it.moveBack();
        }
    }
}

void FXGraphView::updateMinAndMaxPositions() {
    minXNode_ = minYNode_ = maxXNode_ = maxYNode_ = nullptr;
    for (const auto& n : nodes_) {
        if (!minXNode_ || n->x() < minXNode_->x())
            minXNode_ = n;
        if (!minYNode_ || n->y() < minYNode_->y())
            minYNode_ = n;
        if (!maxXNode_ || n->x() > maxXNode_->x())
            maxXNode_ = n;
        if (!maxYNode_ || n->y() > maxYNode_->y())
            maxYNode_ = n;
    }
    if (nodes_.empty())
        return;
    canvasMinX_ = minXNode_->x() - 0.5;
    canvasMinY_ = minYNode_->y() - 0.5;
    canvasMaxX_ = maxXNode_->x() + 0.5;
    canvasMaxY_ = maxYNode_->y() + 0.5;
    if (canvasMaxX_ - canvasMinX_ < 2.0) {
        const double grow = (2.0 - (canvasMaxX_ - canvasMinX_)) * 0.5;
        canvasMinX_ -= grow;
        canvasMaxX_ += grow;
    }
    if (canvasMaxY_ - canvasMinY_ < 2.0) {
        const double grow = (2.0 - (canvasMaxY_ - canvasMinY_)) * 0.5;
        canvasMinY_ -= grow;
        canvasMaxY_ += grow;
    }
}

void FXGraphView::calcMorphologyExtents(double time) {
    morphologyStart_ = -1e12;
    morphologyEnd_ = 1e12;
    if (!edit_)
        return;
    Vector<int> chans;
    edit_->getChans(chans, static_cast<unsigned>(chanType_), 15);
    if (chans.empty())
        return;
    const double start = edit_->getStartTime(), end = edit_->getEndTime();
    if (time < start && !valEqualsVal(time, start)) {
        morphologyEnd_ = start;
        return;
    }
    if (time > end || valEqualsVal(time, end)) {
        morphologyStart_ = end;
        return;
    }
    morphologyEnd_ = end;
    CutIterator fwd(edit_, chans, time, false);
    if (fwd.valid()) {
        if (valEqualsVal(fwd.editTime(), time))
            ++fwd;
        if (fwd.valid())
            morphologyEnd_ = fwd.editTime();
    }
    CutIterator back(edit_, chans, morphologyEnd_, true);
    if (!back.valid()) {
        // The end of the first channel's cel, not its start: the next move rebuilds the list.
        Zk::Ptr<Cel> cel = edit_->get_edit_cel_p(chans[0]);
        morphologyStart_ = cel ? cel->get_end_time() : end;
        return;
    }
    if (valEqualsVal(back.editTime(), morphologyEnd_))
        --back;
    if (back.valid())
        morphologyStart_ = back.editTime();
}

void FXGraphView::rotateNodes(double degrees) {
    constexpr double kPi = 3.14159265358979323846;
    for (const auto& n : nodes_) {
        const double x = n->x(), y = n->y();
        if (x == 0 && y == 0)
            continue;
        double angle;
        if (x == 0) {
            angle = y > 0 ? 90.0 : 270.0;
        } else if (y == 0) {
            angle = x > 0 ? 0.0 : 180.0;
        } else {
            const double a = std::atan(std::fabs(y / x)) * 180.0 / kPi;
            if (x > 0 && y > 0)
                angle = a;
            else if (x > 0)
                angle = 360.0 - a;
            else if (y > 0)
                angle = 180.0 - a;
            else
                angle = 180.0 + a;
        }
        const double radius = std::sqrt(x * x + y * y);
        const double turned = (angle + degrees) * kPi / 180.0;
        n->setPos(std::cos(turned) * radius, std::sin(turned) * radius, false);
    }
}

// The written rule scans every pair and tidies again for each node that still shares its point
// after the last tidy. A tidy places nodes from the graph alone, so a second tidy writes the
// positions the first wrote: the outcome is one tidy when any two nodes share a point. That is
// found here in one pass through a hash of positions; checkForCoincidentNodesByScan keeps the
// pairwise form for comparison.
void FXGraphView::checkForCoincidentNodes() {
    std::unordered_set<std::pair<double, double>, PointHash> seen;
    seen.reserve(nodes_.size());
    for (const auto& n : nodes_) {
        if (!seen.emplace(n->x(), n->y()).second) {
            autoTidy();
            return;
        }
    }
}

void FXGraphView::checkForCoincidentNodesByScan() {
    // Exact comparison, no tolerance; the scan goes on after a tidy rather than stopping.
    for (const auto& a : nodes_) {
        for (const auto& b : nodes_) {
            if (a.get() != b.get() && a->x() == b->x() && a->y() == b->y()) {
                autoTidy();
                break;
            }
        }
    }
}
