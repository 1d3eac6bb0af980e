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

namespace {

// Tells whether a record's node is still in its host edit. Records of one host edit follow each
// other: the edit is opened once per run of them.
class LiveNodes {
public:
    bool alive(const Cookie& hostEdit, const IdStamp& node) {
        if (!opened_ || !(hostEdit == cookie_)) {
            host_ = EditPtr();
            host_.i_open(hostEdit, kOpenIfOpen);
            cookie_ = hostEdit;
            opened_ = true;
        }
        return host_ && host_->tagBag().openObject(node).instance();
    }

private:
    EditPtr host_;
    Cookie cookie_;
    bool opened_ = false;
};

} // namespace

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
    append(rec, true);
}

void NodeUIManagerBase::addNewRecJustMade(NodeUIRecBase* rec) {
    append(rec, false);
}

// A second registration of a record just made would find the node it watches already, and
// change nothing.
void NodeUIManagerBase::append(NodeUIRecBase* rec, bool registerNode) {
    const bool wasOurs = rec && rec->list() == &recs_;
    recs_.append(rec);
    indexAppended(rec, wasOurs);
    if (registerNode)
        rec->registerWithNode();
    sendRecAddedNotification(rec);
    if (editH_)
        editH_->setDirty(true);
}

bool NodeUIManagerBase::deleteRec(NodeUIRecBase* rec) {
    if (!rec || rec->list() != &recs_)
        return false;
    sendRecDeleteNotification(rec);
    removeFromList(rec);
    delete rec;
    if (editH_)
        editH_->setDirty(true);
    return true;
}

bool NodeUIManagerBase::indexCurrent() const {
    return !indexStale_ && indexedCount_ == recs_.size() && indexedIdChanges_ == NodeUIRecBase::idChanges_;
}

void NodeUIManagerBase::rebuildIndex() const {
    index_.clear();
    index_.reserve(recs_.size());
    duplicateIds_ = false;
    for (DLListRec* r = recs_.first(); r; r = r->next()) {
        auto* rec = static_cast<NodeUIRecBase*>(r);
        if (!index_.insert(rec->nodeId_, rec))
            duplicateIds_ = true;
    }
    indexedCount_ = recs_.size();
    indexedIdChanges_ = NodeUIRecBase::idChanges_;
    indexStale_ = false;
}

void NodeUIManagerBase::indexAppended(NodeUIRecBase* rec, bool wasOurs) {
    if (!rec || indexStale_ || indexedIdChanges_ != NodeUIRecBase::idChanges_ ||
        indexedCount_ + (wasOurs ? 0u : 1u) != recs_.size()) {
        indexStale_ = true;
        return;
    }
    if (wasOurs) {
        // Moved to the end: an earlier record of its id may now come first.
        indexStale_ = true;
        return;
    }
    if (!index_.insert(rec->nodeId_, rec))
        duplicateIds_ = true;
    indexedCount_ = recs_.size();
}

void NodeUIManagerBase::removeFromList(NodeUIRecBase* rec) {
    const bool current = indexCurrent();
    if (current) {
        // A later record of the same id comes first now; the list tells which.
        if (index_.erase(rec->nodeId_, rec) && duplicateIds_)
            indexStale_ = true;
    }
    if (recs_.remove(rec) && current)
        indexedCount_ = recs_.size();
}

NodeUIRecBase* NodeUIManagerBase::findRec(const IdStamp& id) const {
    if (!indexCurrent())
        rebuildIndex();
    return index_.find(id);
}

void NodeUIManagerBase::flushList() {
    while (DLListRec* r = recs_.first()) {
        recs_.remove(r);
        delete static_cast<NodeUIRecBase*>(r);
    }
    index_.clear();
    duplicateIds_ = false;
    indexedCount_ = 0;
    indexedIdChanges_ = NodeUIRecBase::idChanges_;
    indexStale_ = false;
}

void NodeUIManagerBase::nodeIsBeingDestroyed(NodeUIRecBase* rec) {
    if (!rec || rec->list() != &recs_)
        return;
    removeFromList(rec);
    delete rec;
}

void NodeUIManagerBase::removeDeadNodes() {
    if (!editH_)
        return;
    LiveNodes live;
    DLListIterator it(recs_);
    while (DLListRec* r = it.next()) {
        auto* rec = static_cast<NodeUIRecBase*>(r);
        if (!live.alive(rec->hostEditCookie_, rec->nodeId_)) {
            removeFromList(rec);
            delete rec;
        }
    }
}

void NodeUIManagerBase::send(NodeUIRecBase* rec, int type) {
    // With nobody to tell, the record's address is not even formatted.
    if (disabled_ != 0 || getNotify().numClients() == 0)
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

// The sweep and the writing share one walk of the list, each record swept just before it would
// be written; the count, known only at the end, is then written in its place. The bytes and the
// list afterwards are those of a sweep followed by a walk that writes.
void NodeUIManagerBase::pack(PStream& s) const {
    auto* self = const_cast<NodeUIManagerBase*>(this);
    StreamFile& f = *s.file;
    const unsigned countAt = f.position();
    const unsigned listed = recs_.size();
    f.setUnsignedLong(listed);
    LiveNodes live;
    unsigned written = 0;
    DLListIterator it(recs_);
    while (DLListRec* r = it.next()) {
        auto* rec = static_cast<NodeUIRecBase*>(r);
        if (editH_ && !live.alive(rec->hostEditCookie_, rec->nodeId_)) {
            self->removeFromList(rec);
            delete rec;
            continue;
        }
        const unsigned before = f.position();
        s << static_cast<const Streamable&>(*rec);
        // Records of one kind take much the same bytes: room for the rest, as many as the first
        // took, spares the file's growing and copying on the way.
        if (++written == 1 && listed > 1 && f.position() == f.size() && f.position() > before) {
            const uint64_t want = f.position() + uint64_t{listed - 1} * (f.position() - before);
            if (want <= 0xFFFFFFFFu)
                f.reserve(static_cast<unsigned>(want));
        }
    }
    if (written != listed) {
        const unsigned end = f.position();
        f.position(countAt);
        f.setUnsignedLong(written);
        f.position(end);
    }
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
    indexStale_ = true;
}
