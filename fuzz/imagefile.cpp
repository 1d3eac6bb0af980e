// Fuzz target: the image file reader. The bytes are written to a file and read as a picture;
// whatever they hold, the reader gives a picture within its size limit or nothing.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "refhost/render/module/ImageFileCache.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const std::string path = "/tmp/nodedesk-fuzz-image-" + std::to_string(getpid());
    FILE* f = std::fopen(path.c_str(), "wb");
    if (!f)
        return 0;
    std::fwrite(data, 1, size, f);
    std::fclose(f);
    Zk::Ptr<Zk::Image::Surface> s = ImageFileCache::readFile(path);
    if (s && (s->empty() || int64_t(s->width()) * s->height() > ImageFileCache::kMaxPixels))
        std::abort();
    std::remove(path.c_str());
    return 0;
}
