// FXGraphViewNode: the on-screen face of one graph node: its own position record (its centre in
// graph space), its box in graph space and the pixel box of its last draw, and the flags the view
// sets on it. The box is 0.125 graph units wide and as high as a picture of the project's shape
// plus 0.0125 above and below.
#pragma once

#include "host/FXGraphNodeBase.h"
#include "host/ZkBox.h"
#include "nodeui/NodeUIPosRec.h"

class FXGraphView;

class FXGraphViewNode : public virtual iObject {
public:
    FXGraphViewNode(FXGraphView* view, const Zk::Ptr<FXGraphNodeBase>& node);
    ~FXGraphViewNode() override = default;

    IdStamp getId() const { return node_ ? node_->getId() : IdStamp(); }
    const Zk::Ptr<FXGraphNodeBase>& node() const { return node_; }
    virtual bool setPos(double x, double y, bool notify) {
        pos_.setPos(x, y, notify);
        return true;
    }
    double x() const { return pos_.x(); }
    double y() const { return pos_.y(); }

    virtual double getLeft() const { return x() - 0.0625; }
    virtual double getBottom() const { return y() - halfPictureHeight() - 0.0125; }
    virtual double getRight() const { return x() + 0.0625; }
    virtual double getTop() const { return y() + halfPictureHeight() + 0.0125; }
    // The pixel box of the last draw, grown on request by the connectors' hit size.
    Zk::Box<int> getBox(bool withConnectors) const;

    NodeUIPosRec pos_;
    Zk::Box<int> box_;
    bool highlighted_ = false;
    bool onScreen_ = true;
    double fade_ = 0.0;

protected:
    static double halfPictureHeight();

    Zk::Ptr<FXGraphNodeBase> node_;
    FXGraphView* view_;
};
