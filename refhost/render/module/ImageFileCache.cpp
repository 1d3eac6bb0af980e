// Image files read into surfaces with the image library's readers.
#include "refhost/render/module/ImageFileCache.h"

#include <OpenImageIO/imageio.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <initializer_list>
#include <system_error>

#include "host/ImageConverter.h"
#include "host/Log.h"

namespace fs = std::filesystem;

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

const char* ImageFileCache::formatOf(const std::string& path) {
    unsigned char head[8] = {};
    std::FILE* f = std::fopen(path.c_str(), "rb");
    if (!f)
        return nullptr;
    const size_t n = std::fread(head, 1, sizeof head, f);
    std::fclose(f);
    auto is = [&](std::initializer_list<unsigned char> magic) {
        return n >= magic.size() && std::equal(magic.begin(), magic.end(), head);
    };
    if (is({0x89, 'P', 'N', 'G', 0x0d, 0x0a, 0x1a, 0x0a}))
        return "png";
    if (is({0xff, 0xd8, 0xff}))
        return "jpeg";
    if (is({'I', 'I', 42, 0}) || is({'M', 'M', 0, 42}))
        return "tiff";
    if (is({'B', 'M'}))
        return "bmp";
    return nullptr;
}

Zk::Ptr<Zk::Image::Surface> ImageFileCache::readFile(const std::string& path) {
    const char* format = formatOf(path);
    if (!format)
        return nullptr;
    auto in = OIIO::ImageInput::create(format);
    OIIO::ImageSpec header;
    if (!in || !in->open(path, header)) {
        if (in)
            in->geterror();
        OIIO::geterror(); // taken, so that the library does not print it later
        return nullptr;
    }
    const OIIO::ImageSpec spec = in->spec();
    const int w = spec.width;
    const int h = spec.height;
    const int nch = spec.nchannels;
    if (w <= 0 || h <= 0 || w > kMaxSide || h > kMaxSide || int64_t(w) * h > kMaxPixels || nch <= 0 ||
        nch > kMaxChannels || spec.depth > 1) {
        in->close();
        return nullptr;
    }
    // Row by row, so that no more than one row is held besides the picture. A tiled file is read
    // whole, its first four channels only.
    const bool tiled = spec.tile_width > 0;
    const int stride = tiled ? std::min(nch, 4) : nch;
    const int used = std::min(nch, 4);
    std::vector<uint8_t> data(static_cast<size_t>(w) * stride * (tiled ? h : 1));
    auto surface = Zk::make<Zk::Image::Surface>(w, h);
    bool ok = !tiled || in->read_image(0, 0, 0, stride, OIIO::TypeDesc::UINT8, data.data());
    for (int y = 0; ok && y < h; ++y) {
        const uint8_t* p = data.data();
        if (tiled)
            p += static_cast<size_t>(y) * w * stride;
        else
            ok = in->read_scanline(spec.y + y, spec.z, OIIO::TypeDesc::UINT8, data.data());
        uint32_t* row = surface->row(y);
        for (int x = 0; x < w; ++x, p += stride) {
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
    in->geterror(); // taken, so that the library does not print it later
    in->close();
    return ok ? surface : nullptr;
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
