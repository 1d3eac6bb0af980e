// The video formats the reference host knows, and fitting one picture shape into another.
#include "host/DigitalVideoFormats.h"

#include <array>

namespace {

constexpr uint32_t fourCC(const char (&s)[5]) {
    return static_cast<uint32_t>(s[0]) << 24 | static_cast<uint32_t>(s[1]) << 16 |
           static_cast<uint32_t>(s[2]) << 8 | static_cast<uint32_t>(s[3]);
}

// The thumbnail format is a small 16:9 picture: the library asks for stills in it, at whatever
// pixel size its boxes need, and fits them by the shape.
const std::array<DigitalVideoFormatInfo, 8> kFormats{{
    {DigitalVideoFormats::kThumbnailFormatUID, 100, 56, 16.0 / 9.0, 0, 0},
    {DigitalVideoFormats::k1080pFormatUID, 1920, 1080, 16.0 / 9.0, 0, 0},
    {fourCC("108i"), 1920, 1080, 16.0 / 9.0, 1, 0},
    {fourCC("0720"), 1280, 720, 16.0 / 9.0, 0, 0},
    {fourCC("2160"), 3840, 2160, 16.0 / 9.0, 0, 0},
    {fourCC("DCI4"), 4096, 2160, 4096.0 / 2160.0, 0, 0},
    {fourCC("0576"), 720, 576, 4.0 / 3.0, 1, 0},
    {fourCC("0486"), 720, 486, 4.0 / 3.0, 1, 1},
}};

// The displayed shape, falling back to square pixels where the format does not say.
double shapeOf(const DigitalVideoFormatInfo& f) {
    if (f.aspect > 0.0)
        return f.aspect;
    return f.height > 0 ? static_cast<double>(f.width) / f.height : 1.0;
}

} // namespace

bool DigitalVideoFormats::findByUID(uint32_t uid, DigitalVideoFormatInfo& info) {
    for (const auto& f : kFormats)
        if (f.uid == uid) {
            info = f;
            return true;
        }
    return false;
}

DigitalVideoFormatInfo DigitalVideoFormats::makeSquarePixelFormat(int width, int height) {
    DigitalVideoFormatInfo f;
    f.width = width < 0 ? 0 : width;
    f.height = height < 0 ? 0 : height;
    f.aspect = f.height > 0 ? static_cast<double>(f.width) / f.height : 0.0;
    return f;
}

void DigitalVideoFormats::convertVideo(const DigitalVideoFormatInfo& src, const DigitalVideoFormatInfo& dst,
                                       Zk::Box<double>& srcRect, Zk::Box<double>& dstRect) {
    srcRect = Zk::Box<double>{0.0, 0.0, static_cast<double>(src.width), static_cast<double>(src.height)};
    dstRect = Zk::Box<double>{};
    if (dst.width <= 0 || dst.height <= 0 || src.width <= 0 || src.height <= 0)
        return;
    const double dstShape = shapeOf(dst);
    // Width of one target pixel over its height: what turns a displayed shape into pixels.
    const double pixelShape = dstShape * dst.height / dst.width;
    const double picture = shapeOf(src);
    double w = dst.width;
    double h = dst.height;
    if (picture > dstShape)
        h = w * pixelShape / picture;
    else
        w = picture * h / pixelShape;
    dstRect.x1 = (dst.width - w) / 2.0;
    dstRect.y1 = (dst.height - h) / 2.0;
    dstRect.x2 = dstRect.x1 + w;
    dstRect.y2 = dstRect.y1 + h;
}
