// The host's reader of image files is the render module's.
#include "host/ZkImageCache.h"

#include "refhost/render/RenderModule.h"

namespace ZkImage {

namespace {
// Stands in when the render module cannot be loaded: no file gives a picture.
class NoImages : public Cache {
public:
    Zk::Ptr<Zk::Image::Surface> loadImage(const WString&, uint32_t, int, int) override { return nullptr; }
};
} // namespace

Cache& Cache::instance() {
    static NoImages none;
    const RenderModuleEntry* module = RenderModule::entry();
    return module ? module->imageCache() : none;
}

} // namespace ZkImage
