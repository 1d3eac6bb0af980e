// ZkImage::Cache: image files read into surfaces, kept by name until the file changes.
#pragma once

#include <cstdint>

#include "host/ImageSurface.h"
#include "host/LightweightString.h"

namespace ZkImage {

class Cache {
public:
    static Cache& instance();
    // The picture of an image file in the data format asked for (0x42475241, "ARGB"); null for a
    // file that is missing or no image. `width` and `height` of 0 keep the file's own size.
    virtual Zk::Ptr<Zk::Image::Surface> loadImage(const WString& name, uint32_t dataFormat, int width,
                                                  int height) = 0;

protected:
    virtual ~Cache() = default;
};

} // namespace ZkImage
