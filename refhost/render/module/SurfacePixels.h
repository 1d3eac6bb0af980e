// Moves pictures between the host's surfaces (8-bit ARGB words, straight alpha) and the render's
// working images (four float channels RGBA, premultiplied alpha, top row first).
#pragma once

#include <OpenImageIO/imagebuf.h>

#include "host/ImageSurface.h"

namespace RenderPixels {

// A working image of the size, every pixel the given premultiplied RGBA.
OIIO::ImageBuf blank(int width, int height, float r = 0.f, float g = 0.f, float b = 0.f, float a = 0.f);
OIIO::ImageBuf fromSurface(const Zk::Image::Surface& surface);
// The working image as a surface of its size, clamped and rounded; null for an empty image.
Zk::Ptr<Zk::Image::Surface> toSurface(const OIIO::ImageBuf& image);

} // namespace RenderPixels
