// Glib::TextDescription: one line of text for the canvas.
#pragma once

#include "host/FontDesc.h"
#include "host/LightweightString.h"
#include "host/NormalisedRGB.h"
#include "host/XY.h"
#include "host/ZkBox.h"

namespace Glib {

// anchor is on the baseline: the left end (alignment 0), the right end (1) or the middle (2).
struct TextDescription {
    WString text;
    XY<int> anchor;
    FontDesc font;
    NormalisedRGB colour;
    int alignment = 0;

    // From the baseline less the font's descent to the baseline plus its ascent.
    Zk::Box<int> boundingBox() const;
};

} // namespace Glib
