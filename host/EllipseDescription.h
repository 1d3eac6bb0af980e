// Glib::EllipseDescription: an ellipse, or an arc of one, inscribed in a box.
#pragma once

#include "host/NormalisedRGB.h"
#include "host/ZkBox.h"

namespace Glib {

// style 0 fills, style 1 draws the outline lineWidth wide. Angles are degrees counter-clockwise
// from the positive x axis (y upward); an outline covers startAngle to endAngle, a fill the
// whole ellipse.
struct EllipseDescription {
    Zk::Box<int> box;
    NormalisedRGB colour;
    int style = 0;
    int lineWidth = 1;
    double startAngle = 0.0;
    double endAngle = 360.0;

    Zk::Box<int> boundingBox() const { return box; }
};

} // namespace Glib
