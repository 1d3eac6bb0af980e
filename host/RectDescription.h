// Glib::RectDescription: a rectangle for the canvas, filled or framed, optionally rounded.
#pragma once

#include "host/NormalisedRGB.h"
#include "host/ZkBox.h"

namespace Glib {

// Pixel box with y upward; a frame of lineWidth is drawn inside the box.
struct RectDescription {
    Zk::Box<int> box;
    NormalisedRGB colour;
    bool filled = true;
    int lineWidth = 1;
    int cornerRadius = 0;

    Zk::Box<int> boundingBox() const { return box; }
};

} // namespace Glib
