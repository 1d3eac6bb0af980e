// Scaling of surfaces, with the render module's filtering.
#include "host/ImageConverter.h"

#include "refhost/render/RenderModule.h"

Zk::Ptr<Zk::Image::Surface> ImageConverter::resize(const Zk::Image::Surface& src, int width, int height) {
    if (width <= 0 || height <= 0)
        return nullptr;
    // The scaled picture is of no video format: its size is no longer the format's.
    if (src.empty())
        return Zk::make<Zk::Image::Surface>(width, height, 0u);
    const RenderModuleEntry* module = RenderModule::entry();
    return module ? module->resize(src, width, height) : nullptr;
}
