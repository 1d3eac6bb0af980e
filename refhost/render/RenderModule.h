// RenderModule: the reference host's renderer of stills, a shared object of its own that is loaded
// on the first still, the way an editor loads its renderers. Only it links the image and colour
// libraries, so a program that never draws a picture never loads them. The module lives beside the
// host library and is found there; when it cannot be loaded, the log says so once and every still
// and scaled picture is null.
#pragma once

#include <string>

#include "host/ImageSurface.h"
#include "host/RenderContextRep.h"
#include "host/ZkImageCache.h"

// Nodes more than this many links below a still's node give it nothing; a still's cache key looks
// no deeper either.
inline constexpr int kMaxStillDepth = 256;

// What the module gives the host, all on the user-interface thread.
struct RenderModuleEntry {
    // The still of the context's graph at the context's size, already checked to be sensible.
    Zk::Ptr<Zk::Image::Surface> (*renderStill)(const Render::RenderContextRep& context);
    // `src` (not empty) scaled with filtering to a size above 0.
    Zk::Ptr<Zk::Image::Surface> (*resize)(const Zk::Image::Surface& src, int width, int height);
    ZkImage::Cache& (*imageCache)();
    // The file an image name stands for, empty when none exists.
    std::string (*resolveImage)(const std::string& name);
};

class RenderModule {
public:
    static constexpr const char* kFileName = "libnodedesk_render.so";
    static constexpr const char* kEntryName = "nodedesk_render_entry";

    // The module's entry, loading it on the first call; null when it cannot be loaded.
    static const RenderModuleEntry* entry();
    // Whether the module has been loaded in this process: for tests and tools.
    static bool loaded();
};
