// NodeUIManagerBase: an edit's list of per-node user-interface records, saved with the edit as
// layer "N" and announcing records as they come and go.
#pragma once

#include <cstdint>

#include "host/DLList.h"
#include "host/EditPtr.h"
#include "host/IdStamp.h"
#include "host/NotifyWithDisable.h"
#include "host/Taggable.h"
#include "nodeui/NodeUIRecIndex.h"

class NodeUIRecBase;

// Owns the records on its list and deletes them itself. Added, deleted and general messages go
// to NodeUIManagerClient objects, each unless disabled_ is raised; the record's address travels
// formatted with "%p". Records whose node has gone are swept, silently, whenever the manager is
// packed or first given its edit, so that they are never saved.
class NodeUIManagerBase : public Taggable, public NotifyWithDisable {
public:
    NodeUIManagerBase(const NodeUIManagerBase& other);
    // Does nothing.
    NodeUIManagerBase& operator=(const NodeUIManagerBase&) { return *this; }
    ~NodeUIManagerBase() override;

    EditPtr getEditH() const { return editH_; }
    void sendGeneralUpdateNotification(LightweightString<char> text);

    unsigned numRecs() const { return recs_.size(); }
    // The records in list order, for whoever walks them.
    NodeUIRecBase* firstRec() const;
    NodeUIRecBase* nextRec(const NodeUIRecBase* rec) const;

    using Taggable::clone;
    STRM_DECLARE_LAYER(NodeUIManagerBase, Taggable);

protected:
    explicit NodeUIManagerBase(const EditPtr& edit);
    explicit NodeUIManagerBase(BuilderType b);
    NodeUIManagerBase(BuilderType b, const NodeUIManagerBase& other);

    // Sets the edit once; the records then start watching their nodes. False if an edit is
    // already set or `edit` is null.
    bool setEdit(const EditPtr& edit);
    void addNewRec(NodeUIRecBase* rec);
    // addNewRec for a record that its constructor has just registered with its node, on this
    // manager and with nothing done since: the node is not looked up a second time.
    void addNewRecJustMade(NodeUIRecBase* rec);
    // False, changing nothing, when `rec` is not on the list.
    bool deleteRec(NodeUIRecBase* rec);
    // The first record of the id in list order, or null.
    NodeUIRecBase* findRec(const IdStamp& id) const;
    // Deletes every record, with no message.
    void flushList();
    void sendRecAddedNotification(NodeUIRecBase* rec);
    void sendRecDeleteNotification(NodeUIRecBase* rec);
    // The factory of records for unpacking; none here.
    virtual NodeUIRecBase* createNewNodeRec(NodeUIManagerBase* manager) const;

private:
    friend class NodeUIManagerClient;
    friend class NodeUIRecBase;

    NodeUIManagerBase();
    void init(const EditPtr& edit);
    void removeDeadNodes();
    void nodeIsBeingDestroyed(NodeUIRecBase* rec);
    void pack(PStream& s) const;
    void unpack(PStream& s);
    void append(NodeUIRecBase* rec, bool registerNode);
    void send(NodeUIRecBase* rec, int type);
    void removeFromList(NodeUIRecBase* rec);

    // The first record of each id in list order, kept beside the list so that findRec need not
    // walk it. The index is rebuilt from the list when the list may have changed out of the
    // manager's sight: a record taken over by another list or deleted by someone else (the count
    // differs), or any record given another id (the records' count of id changes moved on).
    bool indexCurrent() const;
    void rebuildIndex() const;
    void indexAppended(NodeUIRecBase* rec, bool wasOurs);

    static int getRecAddedMsgType() { return recAddedMsgType_; }
    static int getRecDeletedMsgType() { return recDeletedMsgType_; }
    static int getGeneralMsgType() { return generalMsgType_; }
    static int recAddedMsgType_;
    static int recDeletedMsgType_;
    static int generalMsgType_;

    DLList recs_;
    EditPtr editH_;
    mutable NodeUIRecIndex index_;
    mutable unsigned indexedCount_ = 0;
    mutable uint64_t indexedIdChanges_ = 0;
    mutable bool indexStale_ = true;
    mutable bool duplicateIds_ = false;
};
