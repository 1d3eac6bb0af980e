// ViewPoints: pixels of a graph view where a view node answers a given hit, for tests that press
// on bodies and ports rather than compute where they lie.
#pragma once

#include "graphnodes/FXGraphViewNode.h"
#include "graphview/FXGraphView.h"

// A pixel where findConnector on n gives `hit` and `connector` (the body's middle for a body);
// (-1, -1) when there is none.
inline XY<int> pointOn(const FXGraphViewNode& n, int hit, int connector = 0) {
    const Zk::Box<int> b = n.pixelBox();
    int c = -1;
    if (hit == FXGraphViewNode::HitBody) {
        const XY<int> mid((b.x1 + b.x2) / 2, (b.y1 + b.y2) / 2);
        if (n.findConnector(mid.x, mid.y, c) == hit)
            return mid;
    }
    for (int y = b.y1 - 20; y <= b.y2 + 20; ++y)
        for (int x = b.x1 - 20; x <= b.x2 + 20; ++x)
            if (n.findConnector(x, y, c) == hit && (hit == FXGraphViewNode::HitBody || c == connector))
                return XY<int>(x, y);
    return XY<int>(-1, -1);
}

// A pixel inside the view's drawing area that no node answers.
inline XY<int> emptyCanvas(const FXGraphView& v) {
    const Zk::Box<int> w = v.getWindowPos();
    for (int y = w.y1 + 30; y < w.y2 - 30; y += 7)
        for (int x = w.x1 + 30; x < w.x2 - 30; x += 7) {
            bool free = true;
            for (const auto& n : v.nodes()) {
                int c = 0;
                const Zk::Box<int> b = n->getBox(true);
                if (n->findConnector(x, y, c) != FXGraphViewNode::HitNothing ||
                    (x >= b.x1 - 10 && x <= b.x2 + 10 && y >= b.y1 - 10 && y <= b.y2 + 10))
                    free = false;
            }
            if (free)
                return XY<int>(x, y);
        }
    return XY<int>(-1, -1);
}
