// Scaling of surfaces, with filtering.
#include "host/ImageConverter.h"

#include <OpenImageIO/imagebufalgo.h>

#include "refhost/render/SurfacePixels.h"

Zk::Ptr<Zk::Image::Surface> ImageConverter::resize(const Zk::Image::Surface& src, int width, int height) {
    if (width <= 0 || height <= 0)
        return nullptr;
    // The scaled picture is of no video format: its size is no longer the format's.
    if (src.empty())
        return Zk::make<Zk::Image::Surface>(width, height, 0u);
    OIIO::ImageBuf scaled(OIIO::ImageSpec(width, height, 4, OIIO::TypeDesc::FLOAT));
    if (!OIIO::ImageBufAlgo::resize(scaled, RenderPixels::fromSurface(src)))
        return nullptr;
    return RenderPixels::toSurface(scaled);
}
