// ImageConverter: scales pictures.
#pragma once

#include "host/ImageSurface.h"

class ImageConverter {
public:
    // A new surface of the given size holding `src` scaled with filtering; null for a size of 0.
    static Zk::Ptr<Zk::Image::Surface> resize(const Zk::Image::Surface& src, int width, int height);
};
