// The edit's list of position records and its empty layer "J".
#include "nodeui/NodeUIPosManager.h"

#include "host/DLListIterator.h"
#include "host/Edit.h"
#include "host/PStream.h"
#include "host/StreamClassRegistrar.h"
#include "host/StreamableLayer.h"
#include "nodeui/NodeUIPosRec.h"

namespace {
const char* const kManagerKey = "NodePosManager";
} // namespace

STRM_DEFINE_LAYER(NodeUIPosManager, "J");

NodeUIPosManager::NodeUIPosManager(const EditPtr& edit) : NodeUIManagerBase(edit) {}

NodeUIPosManager::NodeUIPosManager(BuilderType b) : NodeUIManagerBase(b) {}

NodeUIPosManager::NodeUIPosManager(BuilderType b, const NodeUIPosManager& other)
    : NodeUIManagerBase(b, other) {
    revisionMajor_ = other.revisionMajor_;
    revisionMinor_ = other.revisionMinor_;
}

NodeUIPosManager& NodeUIPosManager::operator=(const NodeUIPosManager& other) {
    if (this == &other)
        return *this;
    flushList();
    // Each record leaves the other list as it joins this one; the walk skips what has left.
    std::vector<NodeUIRecBase*> theirs;
    for (NodeUIRecBase* r = other.firstRec(); r; r = other.nextRec(r))
        theirs.push_back(r);
    for (NodeUIRecBase* r : theirs)
        addNewRec(r);
    return *this;
}

Zk::Ptr<NodeUIPosManager> NodeUIPosManager::getManagerFor(EditPtr edit) {
    if (!edit)
        return nullptr;
    Zk::Ptr<NodeUIPosManager> manager =
        Zk::dynamicCast<NodeUIPosManager>(edit->openObjectInternal(kManagerKey));
    if (manager) {
        manager->setEdit(edit);
        return manager;
    }
    manager = Zk::Ptr<NodeUIPosManager>(new NodeUIPosManager(edit));
    manager->orientation_ = VidRouting::Orientations::LeftToRight;
    edit->bindObjectToEdit(Zk::Ptr<Taggable>(manager.get()), kManagerKey);
    return manager;
}

NodeUIPosRec* NodeUIPosManager::findRec(const IdStamp& id) const {
    return static_cast<NodeUIPosRec*>(NodeUIManagerBase::findRec(id));
}

NodeUIPosRec* NodeUIPosManager::getRec(const IdStamp& id, const Cookie& hostEdit) {
    if (NodeUIPosRec* rec = findRec(id))
        return rec;
    auto* rec = new NodeUIPosRec(this, id, hostEdit);
    addNewRecJustMade(rec);
    return rec;
}

NodeUIPosRec* NodeUIPosManager::getRec(const IdStamp& id, const Cookie& hostEdit, double x, double y) {
    if (NodeUIPosRec* rec = findRec(id))
        return rec;
    auto* rec = new NodeUIPosRec(this, id, hostEdit);
    rec->setAnchor(x, y);
    if ((x != 0.0 || y != 0.0) && rec->serversUnwatched()) {
        rec->x_.storeSilently(x);
        rec->y_.storeSilently(y);
    } else if (x != 0.0 || y != 0.0) {
        rec->watchOwnServers();
        ++rec->disabled_;
        rec->x_ = x;
        rec->y_ = y;
        if (rec->disabled_ > 0)
            --rec->disabled_;
    }
    addNewRecJustMade(rec);
    return rec;
}

NodeUIRecBase* NodeUIPosManager::createNewNodeRec(NodeUIManagerBase* manager) const {
    return new NodeUIPosRec(manager, IdStamp(0, 0, 0), Cookie());
}

void NodeUIPosManager::pack(PStream&) const {}

void NodeUIPosManager::unpack(PStream&) {}
