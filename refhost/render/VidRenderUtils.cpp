// The render service for stills.
#include "host/VidRenderUtils.h"

#include "host/Edit.h"
#include "refhost/render/GraphRenderer.h"
#include "refhost/render/StillsLru.h"
#include "refhost/render/SurfacePixels.h"
#include "refhost/render/ViewTransform.h"

namespace Render {

namespace {
// Larger stills are refused rather than allocated.
constexpr int kMaxSide = 16384;
constexpr int64_t kMaxPixels = int64_t(1) << 26;
} // namespace

// Renders at once whatever `wait` says: the reference host has no render queue, and the caller
// on the user-interface thread wants its picture now.
Zk::Ptr<Zk::Image::Surface> VidRenderUtils::renderStill(const RenderContextRep& context, bool) {
    const EditGraphIterator& it = context.iterator();
    const ShotVideoMetadata& m = context.metadata();
    if (!it.isValid() || !it.getEditH() || m.width <= 0 || m.height <= 0 || m.width > kMaxSide ||
        m.height > kMaxSide || int64_t(m.width) * m.height > kMaxPixels)
        return nullptr;
    GraphRenderer renderer(m.width, m.height, it.getEditH()->getVideoMetadata().height);
    GraphRenderer::Picture picture = renderer.render(it);
    if (!picture)
        return nullptr;
    Zk::Ptr<Zk::Image::Surface> still;
    if (!context.viewLUT().empty()) {
        OIIO::ImageBuf viewed = picture->copy(OIIO::TypeDesc::FLOAT);
        ViewTransform::instance().apply(context.viewLUT().str(), viewed);
        still = RenderPixels::toSurface(viewed);
    } else {
        still = RenderPixels::toSurface(*picture);
    }
    if (still)
        still->setFormatUID(m.formatUID);
    return still;
}

void VidRenderUtils::unRender(CelEventPair& cel, bool) {
    if (!cel.valid() || !cel.edit())
        return;
    StillsLru::instance().dropEditTimes(cel.edit().get(), cel.editTime(), cel.endEditTime());
}

} // namespace Render
