// Geometry of a view node.
#include "graphnodes/FXGraphViewNode.h"

#include "graphview/FXGraphView.h"
#include "host/PictureShape.h"

FXGraphViewNode::FXGraphViewNode(FXGraphView* view, const Zk::Ptr<FXGraphNodeBase>& node)
    : node_(node), view_(view) {}

double FXGraphViewNode::halfPictureHeight() {
    return 0.125 / Zk::getAspectRatio(Zk::Image::Aspect16x9) / 2.0;
}

Zk::Box<int> FXGraphViewNode::getBox(bool withConnectors) const {
    Zk::Box<int> b = box_;
    if (withConnectors && view_) {
        const int dx = static_cast<int16_t>(view_->physicalScale() * 0.01);
        const int dy = static_cast<int16_t>(view_->physicalScale() * 0.02);
        b.x1 -= dx;
        b.x2 += dx;
        b.y1 -= dy;
        b.y2 += dy;
    }
    return b;
}
