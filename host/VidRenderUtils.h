// Render::VidRenderUtils: the host's render service for stills: evaluates an edit's effect graph
// at a time into pixels.
#pragma once

#include "host/CelEventPair.h"
#include "host/ImageSurface.h"
#include "host/RenderContextRep.h"

namespace Render {

class VidRenderUtils {
public:
    // One still of the graph below the context's node, at the context's size; null when the
    // context's iterator is not valid or the render fails. `wait` true renders before returning.
    static Zk::Ptr<Zk::Image::Surface> renderStill(const RenderContextRep& context, bool wait);
    // Drops whatever has been rendered of a cel, so that it renders afresh.
    static void unRender(CelEventPair& cel, bool wait);
};

} // namespace Render
