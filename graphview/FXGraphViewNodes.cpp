// The view node list: the walk that makes it, the kinds of view node, finding nodes again, and
// bringing a set of nodes into view.
#include <cmath>

#include "graphnodes/FXGraphViewAliasNode.h"
#include "graphnodes/FXGraphViewColourMatteNode.h"
#include "graphnodes/FXGraphViewImageNode.h"
#include "graphnodes/FXGraphViewMatNode.h"
#include "graphnodes/FXGraphViewNode.h"
#include "graphnodes/FXGraphViewThumbNode.h"
#include "graphview/BoxWidening.h"
#include "graphview/FXGraphView.h"
#include "host/AliasedInputEffect.h"
#include "host/Canvas.h"
#include "host/FXEditor.h"
#include "host/ImageImportEffect.h"
#include "host/MaterialUsageNode.h"
#include "host/Vob.h"
#include "host/VobManager.h"
#include "nodeui/NodeUIPosManager.h"

namespace {
constexpr double kNoTime = 1e99;
} // namespace

Zk::Ptr<NodeUIPosManager> FXGraphView::posManager() const {
    return NodeUIPosManager::getManagerFor(edit_);
}

void FXGraphView::setEditFocus(Vob* vob, const IdStamp& chan, bool alwaysRedraw) {
    if (this->vob() && this->vob() != vob)
        VobManager::instance().close(this, false);
    if (vob)
        VobManager::instance().open(this, Zk::Ptr<Vob>(vob));
    edit_ = vob ? vob->edit() : EditPtr();
    primaryChan_ = chan;
    morphologyStart_ = morphologyEnd_ = kNoTime;
    calcMorphologyExtents(getEditTime());

    Zk::Ptr<NodeUIPosManager> manager = posManager();
    if (manager) {
        manager->setOrientation(orientation_);
        NodeUIManagerClient::registerWith(manager.get());
        manager->disable();
    }
    flushNodeList();
    recalcNodeList(true);
    resetView(alwaysRedraw ? RedrawAlways : RedrawIfChanged, RefitAlways);
    if (manager)
        manager->enable();
}

void FXGraphView::flushNodeList() {
    nodes_.clear();
    reindexNodes();
}

void FXGraphView::recalcNodeList(bool notifyGroup) {
    if (draggingIFNode_)
        return; // the list must not change under a connection drag
    ++nodeListBuilds_;
    if (draggingNode_)
        disableETime();
    canvas()->renderer().setClipRect(getWindowPos());
    draggingNode_ = nullptr;
    forgetPicture();
    draggingIFNode_ = nullptr;
    reservedPair_[0] = reservedPair_[1] = 0;

    Zk::Ptr<NodeUIPosManager> manager = posManager();
    if (manager)
        manager->disable();
    std::vector<Zk::Ptr<FXGraphViewNode>> old = std::move(nodes_);
    nodes_.clear();
    reindexNodes();
    createViewNodeRecs();

    const double time = getEditTime();
    EditGraphIterator primary = chanType_ == 1 ? EditGraphIterator(edit_, 0, time, 10)
                                               : EditGraphIterator(edit_, primaryChan_, time, 2);
    if (primary.isValid())
        for (const auto& n : nodes_)
            n->highlighted_ = n->matches(primary);

    // Each new node takes the position of the first old node with its id.
    auto carry = [](FXGraphViewNode& n, const FXGraphViewNode& o) {
        n.pos_.NotifyWithDisable::disable();
        n.setPos(o.x(), o.y(), true);
        n.pos_.NotifyWithDisable::enable();
    };
    if (indexedRebuild_) {
        std::unordered_map<IdStamp, size_t, IdStampHash> oldIndex;
        oldIndex.reserve(old.size());
        for (size_t i = 0; i < old.size(); ++i)
            oldIndex.emplace(old[i]->getId(), i);
        for (const auto& n : nodes_) {
            auto it = oldIndex.find(n->getId());
            if (it != oldIndex.end())
                carry(*n, *old[it->second]);
        }
    } else {
        for (const auto& n : nodes_) {
            for (const auto& o : old) {
                if (o->getId() == n->getId()) {
                    carry(*n, *o);
                    break;
                }
            }
        }
    }
    if (!manualPosMode_.getVal() || old.size() != nodes_.size())
        autoTidy();
    setViewZoom(viewZoom_.getVal());
    if (manager) {
        manager->enable();
        if (notifyGroup)
            manager->sendGeneralUpdateNotification("GroupUpdateMsg");
    }
    // The old nodes go here, after the new ones exist.
}

int FXGraphView::createViewNodeRecs() {
    Zk::Ptr<NodeUIPosManager> manager = posManager();
    if (manager)
        manager->disable();
    int made = 0;
    const std::vector<IdStamp> roots = getRoots();
    for (size_t i = 0; i < roots.size(); ++i)
        made += createViewNodeRecs(roots[i], static_cast<int>(i));
    if (manager)
        manager->enable();
    return made;
}

int FXGraphView::createViewNodeRecs(const IdStamp& root, int rootIndex) {
    EditGraphIterator it = FXEditor::getIteratorFor(edit_, root, getEditTime(), 9);
    if (!it.isValid())
        return 0;
    return createViewNodeRecsInternal(it, nullptr, rootIndex);
}

int FXGraphView::createViewNodeRecsInternal(EditGraphIterator& it, FXGraphViewNode* parent, int rootIndex) {
    Zk::Ptr<FXGraphNodeBase> node = it.getNode(-1);
    if (!node)
        return 0;
    int made = 0;
    FXGraphViewNode* viewNode = findViewRecForNode(node->getId());
    if (viewNode) {
        viewNode->refreshFrom(it);
    } else {
        Zk::Ptr<FXGraphViewNode> created = createViewNode(it);
        assignPositionFromChannel(created.get());
        appendViewNode(created);
        viewNode = created.get();
        made = 1;
    }
    viewNode->pos_.visitMark_ = rootIndex;
    if (parent)
        parent->addInput(it.getParentInputNum(), viewNode);

    // A node already on the path closes a cycle: it keeps its one view node and its parent link,
    // and the walk stops here.
    for (int i = it.depth() - 1; i >= 0; --i)
        if (it.getNode(i).get() == node.get())
            return made;

    for (unsigned input = 0; input < node->getNumInputs(); ++input) {
        if (it.moveToInput(input)) {
            made += createViewNodeRecsInternal(it, viewNode, rootIndex);
            it.moveBack();
        }
    }
    return made;
}

Zk::Ptr<FXGraphViewNode> FXGraphView::createViewNode(EditGraphIterator& it) {
    Zk::Ptr<FXGraphNodeBase> node = it.getNode(-1);
    FXGraphNodeBase* n = node.get();
    if (dynamic_cast<MaterialUsageNode*>(n))
        return Zk::Ptr<FXGraphViewNode>(new FXGraphViewMatNode(this, it));
    if (dynamic_cast<ImageImportEffect*>(n))
        return Zk::Ptr<FXGraphViewNode>(new FXGraphViewImageNode(this, it));
    if (dynamic_cast<AliasedInputEffect*>(n))
        return Zk::Ptr<FXGraphViewNode>(new FXGraphViewAliasNode(this, it));
    String tag;
    if (auto* fx = dynamic_cast<EffectInstance_opu4h5a4j*>(n))
        tag = fx->tagTypeId();
    if (tag == "PixShader:Mattes:flatcol.fx")
        return Zk::Ptr<FXGraphViewNode>(new FXGraphViewColourMatteNode(this, it));
    // The second prefix is covered by the first; both are the host's own tests.
    if (!tag.empty() && (tag.startsWith("PixShader:Mattes:") || tag.startsWith("PixShader:Mattes:gradients")))
        return Zk::Ptr<FXGraphViewNode>(new FXGraphViewThumbNode(this, it));
    return Zk::Ptr<FXGraphViewNode>(new FXGraphViewNode(this, it));
}

std::vector<IdStamp> FXGraphView::getRoots() const {
    std::vector<IdStamp> out;
    out.reserve(50);
    const double time = getEditTime();
    if (chanType_ == 1)
        findAllRootNodeChans(edit_, time, out, kVideoChan);
    else
        out.push_back(primaryChan_);
    FXEditor::findOrphanedComponents(edit_, time, out);
    return out;
}

Vector<IdStamp> FXGraphView::getAllNodes() const {
    Vector<IdStamp> ids;
    getAllNodes(ids);
    return ids;
}

void FXGraphView::getAllNodes(Vector<IdStamp>& out) const {
    for (const auto& n : nodes_)
        out.append(n->getId());
}

void FXGraphView::calcVisibleNodeList(Vector<IdStamp>& out) const {
    for (const auto& n : nodes_)
        if (n->onScreen_)
            out.append(n->getId());
}

// --- finding nodes ----------------------------------------------------------------------------------

bool FXGraphView::indexIsCurrent() const {
    return indexedCount_ == nodes_.size() && (nodes_.empty() || nodes_.back().get() == indexedLast_);
}

void FXGraphView::appendViewNode(const Zk::Ptr<FXGraphViewNode>& n) {
    if (!indexIsCurrent())
        reindexNodes();
    nodes_.push_back(n);
    nodeIndex_.emplace(n->pos_.getNodeId(), nodes_.size() - 1);
    indexedCount_ = nodes_.size();
    indexedLast_ = n.get();
}

void FXGraphView::reindexNodes() const {
    nodeIndex_.clear();
    nodeIndex_.reserve(nodes_.size());
    for (size_t i = 0; i < nodes_.size(); ++i)
        nodeIndex_.emplace(nodes_[i]->pos_.getNodeId(), i);
    indexedCount_ = nodes_.size();
    indexedLast_ = nodes_.empty() ? nullptr : nodes_.back().get();
}

FXGraphViewNode* FXGraphView::findViewRecForNode(const IdStamp& id) const {
    if (!indexedRebuild_)
        return findViewRecForNodeByScan(id);
    // The list may have been changed by other code than the walk: check the index still
    // describes it before trusting it.
    if (!indexIsCurrent())
        reindexNodes();
    auto it = nodeIndex_.find(id);
    if (it == nodeIndex_.end())
        return nullptr;
    if (it->second >= nodes_.size() || nodes_[it->second]->pos_.getNodeId() != id) {
        reindexNodes();
        it = nodeIndex_.find(id);
        if (it == nodeIndex_.end())
            return nullptr;
    }
    return nodes_[it->second].get();
}

FXGraphViewNode* FXGraphView::findViewRecForNodeByScan(const IdStamp& id) const {
    for (const auto& n : nodes_)
        if (n->pos_.getNodeId() == id)
            return n.get();
    return nullptr;
}

NodeUIPosRec* FXGraphView::getPosRecForNode(const IdStamp& id) {
    FXGraphViewNode* n = findViewRecForNode(id);
    return n ? &n->pos_ : nullptr;
}

NodeUIPosRec* FXGraphView::getPosRecForUtr(CelEventPair& pair) {
    if (!pair.valid() || !pair.stripCookie().isEffectGraph())
        return nullptr;
    Zk::Ptr<FXGraphNodeBase> head = pair.getEffectHandle();
    return head ? getPosRecForNode(head->getId()) : nullptr;
}

FXGraphViewNode* FXGraphView::findNodeAt(int x, int y) const {
    const Zk::Box<int> window = getWindowPos();
    if (!window.contains(x, y))
        return nullptr;
    const XY<double> g = viewToGraphSpace(x, y);
    for (const auto& n : nodes_) {
        if (!n->onScreen_)
            continue;
        Zk::Box<double> b;
        b.x1 = n->getLeft();
        b.y1 = n->getBottom();
        b.x2 = n->getRight();
        b.y2 = n->getTop();
        if (b.contains(g.x, g.y))
            return n.get();
    }
    return nullptr;
}

Zk::Ptr<FXGraphNodeBase> FXGraphView::findNodeAtPos(const XY<double>& pos) const {
    const Zk::Box<int> w = getWindowPos();
    if (!(w.x1 <= pos.x && pos.x < w.x2 && w.y1 <= pos.y && pos.y < w.y2))
        return nullptr;
    for (const auto& n : nodes_) {
        if (!n->onScreen_)
            continue;
        int connector = 0;
        if (n->findConnector(static_cast<int>(pos.x), static_cast<int>(pos.y), connector) ==
            FXGraphViewNode::HitBody)
            return n->node();
    }
    return nullptr;
}

FXGraphViewNode* FXGraphView::getPrimaryNodePtr() const {
    for (const auto& n : nodes_)
        if (n->highlighted_)
            return n.get();
    return nullptr;
}

EditGraphIterator FXGraphView::getIteratorFor(const IdStamp& id, int options) const {
    return FXEditor::getIteratorFor(edit_, id, getEditTime(), options);
}

EditGraphIterator FXGraphView::getIteratorFor(const Zk::Ptr<FXGraphNodeBase>& node, int options) const {
    return FXEditor::getIteratorFor(edit_, node.get(), getEditTime(), options);
}

bool FXGraphView::ensureNodeListVisible(const Vector<IdStamp>& ids, FXGraphViewRefitFlag refit) {
    Zk::Box<double> box;
    box.x1 = box.x2 = getViewCX();
    box.y1 = box.y2 = getViewCY();
    for (const IdStamp& id : ids)
        if (FXGraphViewNode* n = findViewRecForNode(id))
            graphview_detail::widenByNode(box, *n);
    const double viewW = width() / physicalScale_;
    const double viewH = height() / physicalScale_;
    if (refit == RefitAlways || box.x2 - box.x1 > viewW || box.y2 - box.y1 > viewH) {
        const double z = fitViewToCanvRect(box);
        if (viewZoom_.getVal() > z)
            setViewZoom(z);
    }
    if (refit == RefitIfTooBigAndCentre) {
        setViewCentre((box.x1 + box.x2) * 0.5, (box.y1 + box.y2) * 0.5);
        return true;
    }
    return false;
}
