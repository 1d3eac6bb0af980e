// NodeUIPosRec: one node's position in graph space as two observable values, a remembered
// anchor for automatic placement, and the scratch mark of the tree walks; saved as layer "K".
#pragma once

#include "host/XY.h"
#include "nodeui/NodeUIRecBase.h"
#include "values/MultiValClient.h"
#include "values/ValServer.h"

// The record is a client of its own servers: every change of x_ or y_ comes back as one
// "nodeRecUpdate" unless disabled_ is raised. setPos moves both with one update at most.
// Clients of the servers themselves hear every assignment. The record registers with its
// servers when they are first handed out (xServer, yServer): until then nobody else can reach
// them, so whatever the record assigns only it would hear, and it says that itself. A record
// that is made, read or moved and never watched thus costs no registrations.
class NodeUIPosRec : public NodeUIRecBase, public MultiValClient<double> {
public:
    // At (0, 0), anchor (0, 0) and not set.
    NodeUIPosRec();
    NodeUIPosRec(NodeUIManagerBase* manager, const IdStamp& id, const Cookie& hostEdit);
    NodeUIPosRec(const NodeUIPosRec&) = delete;
    // Takes the position and the rest from `other` with nothing sent to anyone, the servers'
    // clients included: y into both x_ and y_, as the format's owners have always done; the node
    // id and host cookie stay.
    NodeUIPosRec& operator=(const NodeUIPosRec& other);
    ~NodeUIPosRec() override;

    double x() const { return x_.getVal(); }
    double y() const { return y_.getVal(); }
    ValServer<double>& xServer() {
        watchOwnServers();
        return x_;
    }
    ValServer<double>& yServer() {
        watchOwnServers();
        return y_;
    }
    double anchorX() const { return anchorX_; }
    double anchorY() const { return anchorY_; }
    bool hasAnchor() const { return hasAnchor_; }

    // Does nothing if both values equal the present ones (a NaN never does); else stores both
    // and, with `notify`, sends one update.
    void setPos(double x, double y, bool notify);
    void setPos(const XY<double>& p, bool notify) { setPos(p.x, p.y, notify); }
    // Stores the anchor; sends nothing.
    void setAnchor(double x, double y);

    void handleValChanged(ValServer<double>* server) override;

    using NodeUIRecBase::registerWith;
    using MultiValClient<double>::registerWith;
    STRM_DECLARE_LAYER(NodeUIPosRec, NodeUIRecBase);

public:
    int visitMark_ = 0;

protected:
    explicit NodeUIPosRec(BuilderType b);
    NodeUIPosRec(BuilderType b, const NodeUIPosRec& other);

private:
    friend class NodeUIPosManager;

    void startAtOrigin();
    // Registers with x_ and y_, in that order, the first time they are handed out.
    void watchOwnServers();
    // True when the record is the only client of its servers and no manager has claimed them
    // (or they were never handed out): then nobody but the record hears what is assigned to them.
    bool serversUnwatched() const;
    void pack(PStream& s) const;
    void unpack(PStream& s);

    ValServer<double> x_;
    ValServer<double> y_;
    double anchorX_ = 0.0;
    double anchorY_ = 0.0;
    bool hasAnchor_ = false;
    bool serversHandedOut_ = false;
};
