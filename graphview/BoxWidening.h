// Widening a box in graph space by points and by view nodes' boxes, as the view's extents and
// its bring-into-view do it.
#pragma once

#include <cmath>

#include "graphnodes/FXGraphViewNode.h"
#include "host/ZkBox.h"

namespace graphview_detail {

// Widens a box by a point, x and y tested apart: below the lower bound replaces it, else above
// the upper bound replaces that.
inline void widen(Zk::Box<double>& b, double x, double y) {
    if (x < b.x1)
        b.x1 = x;
    else if (x > b.x2)
        b.x2 = x;
    if (y < b.y1)
        b.y1 = y;
    else if (y > b.y2)
        b.y2 = y;
}

inline void widenByNode(Zk::Box<double>& b, const FXGraphViewNode& n) {
    if (std::fabs(b.x2 - b.x1) * std::fabs(b.y2 - b.y1) == 0) {
        b.x1 = n.getLeft();
        b.y1 = n.getBottom();
        b.x2 = n.getRight();
        b.y2 = n.getTop();
        return;
    }
    widen(b, n.getLeft(), n.getBottom());
    widen(b, n.getRight(), n.getTop());
}

} // namespace graphview_detail
