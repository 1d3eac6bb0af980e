// Zk::Image::Surface: a picture in memory, width x height words 0xAARRGGBB, top row first. It
// remembers the video format it was made for (0 when none), so that a still can be fitted into a
// box with its true picture shape.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "host/iObject.h"

namespace Zk {
namespace Image {

class Surface : public iObject {
public:
    Surface(int width, int height, uint32_t fill = 0xff000000u)
        : width_(width < 0 ? 0 : width), height_(height < 0 ? 0 : height),
          pixels_(std::make_shared<std::vector<uint32_t>>(static_cast<size_t>(width_) * height_, fill)) {}

    int width() const { return width_; }
    int height() const { return height_; }
    bool empty() const { return width_ == 0 || height_ == 0; }
    uint32_t* row(int y) { return pixels_->data() + static_cast<size_t>(y) * width_; }
    const uint32_t* row(int y) const { return pixels_->data() + static_cast<size_t>(y) * width_; }
    uint32_t pixel(int x, int y) const { return row(y)[x]; }
    void setPixel(int x, int y, uint32_t argb) { row(y)[x] = argb; }
    // The pixels, shared with the drawing descriptions that show them.
    const std::shared_ptr<std::vector<uint32_t>>& pixels() const { return pixels_; }

    // The video format the picture was made for (DigitalVideoFormats), 0 when none.
    uint32_t formatUID() const { return formatUID_; }
    void setFormatUID(uint32_t uid) { formatUID_ = uid; }

private:
    int width_;
    int height_;
    std::shared_ptr<std::vector<uint32_t>> pixels_;
    uint32_t formatUID_ = 0;
};

} // namespace Image
} // namespace Zk
