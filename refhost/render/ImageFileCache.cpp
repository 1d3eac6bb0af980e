// Image files read into surfaces with the image library's readers.
#include "refhost/render/ImageFileCache.h"

#include <OpenImageIO/imageio.h>

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "host/ImageConverter.h"
#include "host/Log.h"

namespace fs = std::filesystem;

namespace ZkImage {
Cache& Cache::instance() {
    return ImageFileCache::instance();
}
} // namespace ZkImage

ImageFileCache& ImageFileCache::instance() {
    static ImageFileCache cache;
    return cache;
}

ImageFileCache::ImageFileCache() : folders_{NODEDESK_SOURCE_DIR "/samples"} {}

std::string ImageFileCache::resolve(const std::string& name) const {
    if (name.empty())
        return {};
    std::error_code ec;
    const fs::path p(name);
    if (fs::is_regular_file(p, ec))
        return name;
    if (p.is_absolute())
        return {};
    for (const std::string& folder : folders_) {
        fs::path candidate = fs::path(folder) / p;
        if (fs::is_regular_file(candidate, ec))
            return candidate.string();
    }
    return {};
}

Zk::Ptr<Zk::Image::Surface> ImageFileCache::readFile(const std::string& path) {
    auto in = OIIO::ImageInput::open(path);
    if (!in) {
        OIIO::geterror(); // taken, so that the library does not print it later
        return nullptr;
    }
    const OIIO::ImageSpec spec = in->spec();
    const int w = spec.width;
    const int h = spec.height;
    const int nch = spec.nchannels;
    if (w <= 0 || h <= 0 || w > kMaxSide || h > kMaxSide || int64_t(w) * h > kMaxPixels || nch <= 0 ||
        spec.depth > 1) {
        in->close();
        return nullptr;
    }
    const int used = std::min(nch, 4);
    std::vector<uint8_t> data(static_cast<size_t>(w) * h * used);
    const bool ok = in->read_image(0, 0, 0, used, OIIO::TypeDesc::UINT8, data.data());
    in->geterror();
    in->close();
    if (!ok)
        return nullptr;
    auto surface = Zk::make<Zk::Image::Surface>(w, h);
    const uint8_t* p = data.data();
    for (int y = 0; y < h; ++y) {
        uint32_t* row = surface->row(y);
        for (int x = 0; x < w; ++x, p += used) {
            uint32_t r, g, b, a = 255;
            if (used >= 3) {
                r = p[0];
                g = p[1];
                b = p[2];
                if (used == 4)
                    a = p[3];
            } else {
                r = g = b = p[0];
                if (used == 2)
                    a = p[1];
            }
            row[x] = a << 24 | r << 16 | g << 8 | b;
        }
    }
    return surface;
}

Zk::Ptr<Zk::Image::Surface> ImageFileCache::loadImage(const WString& name, uint32_t dataFormat, int width,
                                                      int height) {
    // Only the host's 8-bit ARGB layout is made.
    if (dataFormat != 0x42475241u && dataFormat != 0)
        return nullptr;
    if (width < 0 || height < 0)
        return nullptr;
    const std::string wanted = toUtf8(name).str();
    const std::string path = resolve(wanted);
    auto report = [&](const char* what) {
        if (std::find(reported_.begin(), reported_.end(), wanted) == reported_.end()) {
            reported_.push_back(wanted);
            Log("image file %s: %s\n", wanted.c_str(), what);
        }
    };
    if (path.empty()) {
        report("not found");
        return nullptr;
    }
    std::error_code ec;
    const auto stamp = fs::last_write_time(path, ec);
    const int64_t when = ec ? 0 : static_cast<int64_t>(stamp.time_since_epoch().count());
    const uintmax_t bytes = fs::file_size(path, ec);

    for (auto it = entries_.begin(); it != entries_.end(); ++it)
        if (it->name == wanted && it->width == width && it->height == height) {
            if (it->stamp == when && it->bytes == bytes) {
                entries_.splice(entries_.begin(), entries_, it);
                return it->picture;
            }
            entries_.erase(it);
            break;
        }

    ++reads_;
    Zk::Ptr<Zk::Image::Surface> picture = readFile(path);
    if (!picture) {
        // Kept as a failure too, so that it is not read again until the file changes.
        report("not a picture that can be read");
        entries_.push_front(Entry{wanted, width, height, when, bytes, nullptr});
        if (entries_.size() > kCapacity)
            entries_.pop_back();
        return nullptr;
    }
    if ((width && width != picture->width()) || (height && height != picture->height())) {
        picture = ImageConverter::resize(*picture, width ? width : picture->width(),
                                         height ? height : picture->height());
        if (!picture)
            return nullptr;
    }
    entries_.push_front(Entry{wanted, width, height, when, bytes, picture});
    if (entries_.size() > kCapacity)
        entries_.pop_back();
    return picture;
}
