// FontDesc: a font named by family, pixel size and weight.
#pragma once

#include "host/LightweightString.h"

// An empty name means the host's default font; size 0 its default size.
struct FontDesc {
    String name;
    int size = 0;
    bool bold = false;

    bool operator==(const FontDesc& o) const { return name == o.name && size == o.size && bold == o.bold; }
};
