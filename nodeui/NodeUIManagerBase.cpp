// The list of node UI records of an edit: adding, deleting, sweeping, messages and layer "N".
#include "nodeui/NodeUIManagerBase.h"

#include <algorithm>
#include <cstdint>

#include "host/DLListIterator.h"
#include "host/Edit.h"
#include "host/Log.h"
#include "host/NotifyMsgTypeDictionary.h"
#include "host/PStream.h"
#include "host/StreamClassRegistrar.h"
#include "host/StreamFile.h"
#include "host/StreamableLayer.h"
#include "nodeui/NodeUIRecBase.h"

int NodeUIManagerBase::recAddedMsgType_ = NotifyMsgTypeDictionary::instance().intern("nodeRecAdded");
int NodeUIManagerBase::recDeletedMsgType_ = NotifyMsgTypeDictionary::instance().intern("nodeRecDeleted");
int NodeUIManagerBase::generalMsgType_ = NotifyMsgTypeDictionary::instance().intern("NodeManagerGeneral");

STRM_DEFINE_LAYER(NodeUIManagerBase, "N");

NodeUIManagerBase::NodeUIManagerBase() {
    init(EditPtr());
}

NodeUIManagerBase::NodeUIManagerBase(const EditPtr& edit) {
    init(edit);
}

NodeUIManagerBase::NodeUIManagerBase(BuilderType b) : Taggable(b) {
    init(EditPtr());
}

NodeUIManagerBase::NodeUIManagerBase(BuilderType b, const NodeUIManagerBase& other)
    : Taggable(b, other), NotifyWithDisable() {
    init(EditPtr());
    revisionMajor_ = other.revisionMajor_;
    revisionMinor_ = other.revisionMinor_;
}

NodeUIManagerBase::NodeUIManagerBase(const NodeUIManagerBase& other)
    : Zk::InternalRefCount(), iVirtual(), iObject(), Taggable(other), NotifyWithDisable(other),
      recs_(other.recs_), editH_(other.editH_) {
    revisionMajor_ = other.revisionMajor_;
    revisionMinor_ = other.revisionMinor_;
}

NodeUIManagerBase::~NodeUIManagerBase() {
    flushList();
}

void NodeUIManagerBase::init(const EditPtr& edit) {
    recs_.ownsRecords(false);
    editH_ = edit;
}

NodeUIRecBase* NodeUIManagerBase::firstRec() const {
    return static_cast<NodeUIRecBase*>(recs_.first());
}

NodeUIRecBase* NodeUIManagerBase::nextRec(const NodeUIRecBase* rec) const {
    return rec && rec->list() == &recs_ ? static_cast<NodeUIRecBase*>(rec->next()) : nullptr;
}

bool NodeUIManagerBase::setEdit(const EditPtr& edit) {
    if (editH_ || !edit)
        return false;
    editH_ = edit;
    removeDeadNodes();
    DLListIterator it(recs_);
    while (DLListRec* r = it.next())
        static_cast<NodeUIRecBase*>(r)->registerWithNode();
    return true;
}

void NodeUIManagerBase::addNewRec(NodeUIRecBase* rec) {
    recs_.append(rec);
    rec->registerWithNode();
    sendRecAddedNotification(rec);
    if (editH_)
        editH_->setDirty(true);
}

bool NodeUIManagerBase::deleteRec(NodeUIRecBase* rec) {
    if (!rec || rec->list() != &recs_)
        return false;
    sendRecDeleteNotification(rec);
    recs_.remove(rec);
    delete rec;
    if (editH_)
        editH_->setDirty(true);
    return true;
}

NodeUIRecBase* NodeUIManagerBase::findRec(const IdStamp& id) const {
    for (DLListRec* r = recs_.first(); r; r = r->next())
        if (static_cast<NodeUIRecBase*>(r)->nodeId_ == id)
            return static_cast<NodeUIRecBase*>(r);
    return nullptr;
}

void NodeUIManagerBase::flushList() {
    while (DLListRec* r = recs_.first()) {
        recs_.remove(r);
        delete static_cast<NodeUIRecBase*>(r);
    }
}

void NodeUIManagerBase::nodeIsBeingDestroyed(NodeUIRecBase* rec) {
    if (recs_.remove(rec))
        delete rec;
}

void NodeUIManagerBase::removeDeadNodes() {
    if (!editH_)
        return;
    DLListIterator it(recs_);
    while (DLListRec* r = it.next()) {
        auto* rec = static_cast<NodeUIRecBase*>(r);
        EditPtr host;
        host.i_open(rec->hostEditCookie_, kOpenIfOpen);
        bool alive = host && host->tagBag().openObject(rec->nodeId_).instance();
        if (!alive) {
            recs_.remove(rec);
            delete rec;
        }
    }
}

void NodeUIManagerBase::send(NodeUIRecBase* rec, int type) {
    if (disabled_ != 0)
        return;
    getNotify().call(NotifyMsg(stringFormat("%p", static_cast<void*>(rec))), type);
}

void NodeUIManagerBase::sendRecAddedNotification(NodeUIRecBase* rec) {
    send(rec, recAddedMsgType_);
}

void NodeUIManagerBase::sendRecDeleteNotification(NodeUIRecBase* rec) {
    send(rec, recDeletedMsgType_);
}

void NodeUIManagerBase::sendGeneralUpdateNotification(LightweightString<char> text) {
    if (disabled_ != 0)
        return;
    getNotify().call(NotifyMsg(text), generalMsgType_);
}

NodeUIRecBase* NodeUIManagerBase::createNewNodeRec(NodeUIManagerBase*) const {
    return nullptr;
}

void NodeUIManagerBase::pack(PStream& s) const {
    const_cast<NodeUIManagerBase*>(this)->removeDeadNodes();
    s.file->setUnsignedLong(recs_.size());
    for (DLListRec* r = recs_.first(); r; r = r->next())
        s << static_cast<const Streamable&>(*static_cast<NodeUIRecBase*>(r));
}

void NodeUIManagerBase::unpack(PStream& s) {
    flushList();
    unsigned count = 0;
    s.file->getUnsignedLong(count);
    // A record that is read takes at least one byte or puts the stream in error, so no more
    // rounds than bytes are needed; the bound keeps a lying count from costing more than the
    // input holds.
    const uint64_t rounds = std::min<uint64_t>(count, uint64_t{s.file->remaining()} + 1);
    for (uint64_t i = 0; i < rounds && !s.inError(); ++i) {
        NodeUIRecBase* rec = createNewNodeRec(this);
        if (!rec) {
            Log("Danger Will Robinson! ::createNewNodeRec() returned NULL!\n");
            continue;
        }
        s >> static_cast<Streamable&>(*rec);
        recs_.append(rec);
    }
}
