// The render service for stills: checks what is asked, then hands it to the render module.
#include "host/VidRenderUtils.h"

#include "host/Edit.h"
#include "refhost/render/RenderModule.h"
#include "refhost/render/StillsLru.h"

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
    const RenderModuleEntry* module = RenderModule::entry();
    Zk::Ptr<Zk::Image::Surface> still = module ? module->renderStill(context) : nullptr;
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
