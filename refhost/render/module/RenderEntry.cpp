// The render module's entry: what the host library calls once it has loaded the module.
#include <OpenImageIO/imagebufalgo.h>

#include "host/Edit.h"
#include "refhost/render/RenderModule.h"
#include "refhost/render/module/GraphRenderer.h"
#include "refhost/render/module/ImageFileCache.h"
#include "refhost/render/module/SurfacePixels.h"
#include "refhost/render/module/ViewTransform.h"

namespace {

Zk::Ptr<Zk::Image::Surface> renderStill(const Render::RenderContextRep& context) {
    const EditGraphIterator& it = context.iterator();
    const ShotVideoMetadata& m = context.metadata();
    GraphRenderer renderer(m.width, m.height, it.getEditH()->getVideoMetadata().height);
    GraphRenderer::Picture picture = renderer.render(it);
    if (!picture)
        return nullptr;
    if (context.viewLUT().empty())
        return RenderPixels::toSurface(*picture);
    OIIO::ImageBuf viewed = picture->copy(OIIO::TypeDesc::FLOAT);
    ViewTransform::instance().apply(context.viewLUT().str(), viewed);
    return RenderPixels::toSurface(viewed);
}

Zk::Ptr<Zk::Image::Surface> resize(const Zk::Image::Surface& src, int width, int height) {
    OIIO::ImageBuf scaled(OIIO::ImageSpec(width, height, 4, OIIO::TypeDesc::FLOAT));
    if (!OIIO::ImageBufAlgo::resize(scaled, RenderPixels::fromSurface(src)))
        return nullptr;
    return RenderPixels::toSurface(scaled);
}

ZkImage::Cache& imageCache() {
    return ImageFileCache::instance();
}

std::string resolveImage(const std::string& name) {
    return ImageFileCache::instance().resolve(name);
}

const RenderModuleEntry kEntry{renderStill, resize, imageCache, resolveImage};

} // namespace

extern "C" __attribute__((visibility("default"))) const RenderModuleEntry* nodedesk_render_entry() {
    return &kEntry;
}
