// Conversions between surfaces and working images.
#include "refhost/render/module/SurfacePixels.h"

#include <algorithm>
#include <cmath>

namespace RenderPixels {

OIIO::ImageBuf blank(int width, int height, float r, float g, float b, float a) {
    OIIO::ImageBuf buf(OIIO::ImageSpec(width, height, 4, OIIO::TypeDesc::FLOAT));
    float* p = static_cast<float*>(buf.localpixels());
    const size_t n = static_cast<size_t>(width) * height;
    for (size_t i = 0; i < n; ++i, p += 4) {
        p[0] = r;
        p[1] = g;
        p[2] = b;
        p[3] = a;
    }
    return buf;
}

OIIO::ImageBuf fromSurface(const Zk::Image::Surface& surface) {
    OIIO::ImageBuf buf = blank(surface.width(), surface.height());
    float* p = static_cast<float*>(buf.localpixels());
    for (int y = 0; y < surface.height(); ++y) {
        const uint32_t* row = surface.row(y);
        for (int x = 0; x < surface.width(); ++x, p += 4) {
            const uint32_t v = row[x];
            const float a = static_cast<float>(v >> 24) / 255.f;
            p[0] = static_cast<float>((v >> 16) & 0xff) / 255.f * a;
            p[1] = static_cast<float>((v >> 8) & 0xff) / 255.f * a;
            p[2] = static_cast<float>(v & 0xff) / 255.f * a;
            p[3] = a;
        }
    }
    return buf;
}

namespace {
uint32_t toByte(float v) {
    if (!(v > 0.f)) // also NaN
        return 0;
    return v >= 1.f ? 255u : static_cast<uint32_t>(v * 255.f + 0.5f);
}
} // namespace

Zk::Ptr<Zk::Image::Surface> toSurface(const OIIO::ImageBuf& image) {
    const OIIO::ImageSpec& spec = image.spec();
    if (spec.width <= 0 || spec.height <= 0 || spec.nchannels < 4)
        return nullptr;
    auto surface = Zk::make<Zk::Image::Surface>(spec.width, spec.height);
    // Working images are local floats; anything else is read row by row.
    const bool direct = spec.format == OIIO::TypeDesc::FLOAT && spec.nchannels == 4 && image.localpixels();
    std::vector<float> row(direct ? 0 : static_cast<size_t>(spec.width) * 4);
    for (int y = 0; y < spec.height; ++y) {
        const float* pixels = row.data();
        if (direct) {
            pixels = static_cast<const float*>(image.localpixels()) + static_cast<size_t>(y) * spec.width * 4;
        } else {
            OIIO::ROI roi(spec.x, spec.x + spec.width, spec.y + y, spec.y + y + 1, 0, 1, 0, 4);
            if (!image.get_pixels(roi, OIIO::TypeDesc::FLOAT, row.data()))
                return nullptr;
        }
        uint32_t* out = surface->row(y);
        for (int x = 0; x < spec.width; ++x) {
            const float* p = pixels + static_cast<size_t>(x) * 4;
            const float a = std::clamp(p[3], 0.f, 1.f);
            const float k = a > 0.f ? 1.f / a : 0.f;
            out[x] = toByte(a) << 24 | toByte(p[0] * k) << 16 | toByte(p[1] * k) << 8 | toByte(p[2] * k);
        }
    }
    return surface;
}

} // namespace RenderPixels
