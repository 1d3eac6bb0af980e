// IconCache: icons read from files and recoloured for a purpose, kept once made.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "host/Colour.h"
#include "host/LightweightString.h"

struct Icon {
    int width = 0;
    int height = 0;
    // 0xAARRGGBB words, top row first; null for an icon that could not be read.
    std::shared_ptr<const std::vector<uint32_t>> pixels;
    bool valid() const { return pixels != nullptr; }
};

class IconCache {
public:
    // The icon at `path` in the colour given: each pixel keeps its coverage (alpha) and takes the
    // colour, shaded by how light the pixel was. An unreadable file gives an invalid icon.
    static Icon createRecolouredIcon(const String& path, const Colour& colour);
    static Icon loadIcon(const String& path);
    static void clear();
};
