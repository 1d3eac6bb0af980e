// Glib::ImageDescription: a picture scaled into a box on the canvas.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "host/LightweightString.h"
#include "host/ZkBox.h"

namespace Glib {

// The picture is either a file (path) or pixels: width x height words 0xAARRGGBB, top row first.
struct ImageDescription {
    Zk::Box<int> box;
    String path;
    std::shared_ptr<const std::vector<uint32_t>> pixels;
    int width = 0;
    int height = 0;
    double opacity = 1.0;

    Zk::Box<int> boundingBox() const { return box; }
};

} // namespace Glib
