// DigitalVideoFormats: the video formats the host knows, by id, and how a picture of one format
// is fitted into another.
#pragma once

#include <cstdint>

#include "host/ZkBox.h"

struct DigitalVideoFormatInfo {
    uint32_t uid = 0;
    int width = 0;
    int height = 0;
    // Width over height of the whole displayed picture (not of one pixel).
    double aspect = 0.0;
    // 0 progressive, 1 interlaced.
    int scanMode = 0;
    // Field order of an interlaced format: 0 upper first, 1 lower first.
    int polarity = 0;
};

class DigitalVideoFormats {
public:
    // The format the library's node thumbnails are asked for in.
    static constexpr uint32_t kThumbnailFormatUID = 0x54484d42; // "THMB"
    static constexpr uint32_t k1080pFormatUID = 0x31303830;     // "1080"

    // False, leaving `info` as it was, for an id that names no known format.
    static bool findByUID(uint32_t uid, DigitalVideoFormatInfo& info);
    // A format of square pixels of this size.
    static DigitalVideoFormatInfo makeSquarePixelFormat(int width, int height);
    // Fits a picture of format `src` into `dst`, keeping its displayed shape: the source
    // rectangle (the whole source picture) and the target rectangle within `dst`, centred and
    // touching two edges. Both in pixels, y from the picture's bottom.
    static void convertVideo(const DigitalVideoFormatInfo& src, const DigitalVideoFormatInfo& dst,
                             Zk::Box<double>& srcRect, Zk::Box<double>& dstRect);
};
