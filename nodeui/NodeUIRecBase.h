// NodeUIRecBase: one user-interface record of a graph node, tied to the node by its id and to
// the edit that hosts the node by a cookie; saved as layer "L".
#pragma once

#include "host/Cookie.h"
#include "host/DLListRec.h"
#include "host/FXGraphNodeClient.h"
#include "host/IdStamp.h"
#include "host/NotifyWithDisable.h"
#include "host/Streamable.h"

class NodeUIManagerBase;

// Owned by its manager's list. It watches its node once the manager has an edit, but hears
// nothing of the node's death: the manager's sweep finds dead records. Updates go to
// NodeUIRecClient objects unless the record's disabled_ is raised.
class NodeUIRecBase : public DLListRec,
                      public FXGraphNodeClient,
                      public NotifyWithDisable,
                      public Streamable {
public:
    NodeUIRecBase();
    NodeUIRecBase(const NodeUIRecBase& other);
    // Copies the node id and the host cookie only.
    NodeUIRecBase& operator=(const NodeUIRecBase& other);
    ~NodeUIRecBase() override;

    const IdStamp& getNodeId() const { return nodeId_; }
    // Does not watch the new node.
    void setNodeId(const IdStamp& id) {
        nodeId_ = id;
        ++idChanges_;
    }
    Cookie getHostEditCookie() const { return hostEditCookie_; }

    void notifyValPreChanged(const ValObserverBase&) override {}

    STRM_DECLARE_LAYER(NodeUIRecBase, Streamable);

protected:
    NodeUIRecBase(NodeUIManagerBase* manager, const IdStamp& id, const Cookie& hostEdit);
    explicit NodeUIRecBase(BuilderType b);
    NodeUIRecBase(BuilderType b, const NodeUIRecBase& other);

    NodeUIManagerBase* getOurManager() const { return manager_; }
    void sendUpdateNotification();

private:
    friend class NodeUIManagerBase;
    friend class NodeUIRecClient;

    void generalUpdateNotification(const EffectModification&) override {}
    void registerWithNode();
    void pack(PStream& s) const;
    void unpack(PStream& s);

    static int getRecUpdateMsgType() { return recUpdateMsgType_; }
    static int recUpdateMsgType_;
    // Raised whenever any record's id changes, so that the managers' indexes by id know when to
    // look at their lists again.
    static inline uint64_t idChanges_ = 0;

    NodeUIManagerBase* manager_ = nullptr;
    IdStamp nodeId_;
    Cookie hostEditCookie_;
};
