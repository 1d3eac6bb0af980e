// Render::StillsCache: stills by render context, so that a frame drawn twice renders once and
// two nodes on one frame share a render.
#pragma once

#include <cstddef>

#include "host/ImageSurface.h"
#include "host/RenderContextRep.h"

namespace Render {

class StillsCache {
public:
    enum eSave { kKeep = 0, kSaveToDisk = 1 };

    static StillsCache& instance();

    // The still kept for the context, or null.
    virtual Zk::Ptr<Zk::Image::Surface> getStillImage(const RenderContextRep& context) = 0;
    virtual void add(const RenderContextRep& context, const Zk::Ptr<Zk::Image::Surface>& still,
                     eSave save) = 0;
    virtual void clear() = 0;
    virtual size_t size() const = 0;

protected:
    virtual ~StillsCache() = default;
};

} // namespace Render
