// NodeUIPosManager: an edit's one list of node position records, stored in the edit under the
// key "NodePosManager" and saved with it as layers "N" and "J".
#pragma once

#include "host/Cookie.h"
#include "host/EditPtr.h"
#include "nodeui/NodeUIManagerBase.h"
#include "nodeui/Orientation.h"

class NodeUIPosRec;

class NodeUIPosManager : public NodeUIManagerBase {
public:
    explicit NodeUIPosManager(const EditPtr& edit);
    // Empties this list, then takes over the records of `other` themselves, not copies.
    NodeUIPosManager& operator=(const NodeUIPosManager& other);

    // The edit's manager, made and stored in the edit when it has none; null for a null edit.
    // A manager read from the edit's file meets its edit here: dead records are swept and the
    // rest start watching their nodes.
    static Zk::Ptr<NodeUIPosManager> getManagerFor(EditPtr edit);

    // The record of a node, made and added when there is none.
    NodeUIPosRec* getRec(const IdStamp& id, const Cookie& hostEdit);
    // The same; a new record starts at (x, y) with its anchor there, and no update is sent
    // for that first position. An existing record is returned as it is.
    NodeUIPosRec* getRec(const IdStamp& id, const Cookie& hostEdit, double x, double y);
    NodeUIPosRec* findRec(const IdStamp& id) const;
    using NodeUIManagerBase::deleteRec;

    VidRouting::Orientations::Orientation orientation() const { return orientation_; }
    void setOrientation(VidRouting::Orientations::Orientation o) { orientation_ = o; }

    using NodeUIManagerBase::clone;
    STRM_DECLARE_LAYER(NodeUIPosManager, NodeUIManagerBase);

protected:
    explicit NodeUIPosManager(BuilderType b);
    NodeUIPosManager(BuilderType b, const NodeUIPosManager& other);

    NodeUIRecBase* createNewNodeRec(NodeUIManagerBase* manager) const override;

private:
    void pack(PStream& s) const;
    void unpack(PStream& s);

    // The view's orientation on this edit; neither saved nor copied.
    VidRouting::Orientations::Orientation orientation_ = VidRouting::Orientations::LeftToRight;
};
