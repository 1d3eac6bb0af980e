// Glib::BezierCurveDescription: one cubic curve for the canvas.
#pragma once

#include <algorithm>

#include "host/NormalisedRGB.h"
#include "host/XY.h"
#include "host/ZkBox.h"

namespace Glib {

// From p0 to p1 with controls c0 (near p0) and c1 (near p1), in pixels with y upward.
struct BezierCurveDescription {
    XY<int> p0, c0, c1, p1;
    NormalisedRGB colour;
    int thickness = 1;

    // The box of the four points grown by the thickness on every side.
    Zk::Box<int> boundingBox() const {
        Zk::Box<int> b;
        b.x1 = std::min({p0.x, c0.x, c1.x, p1.x}) - thickness;
        b.y1 = std::min({p0.y, c0.y, c1.y, p1.y}) - thickness;
        b.x2 = std::max({p0.x, c0.x, c1.x, p1.x}) + thickness;
        b.y2 = std::max({p0.y, c0.y, c1.y, p1.y}) + thickness;
        return b;
    }
};

} // namespace Glib
