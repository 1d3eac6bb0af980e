// Icons and strip colours of the reference host.
#include "host/IconCache.h"

#include <QImage>
#include <QString>
#include <algorithm>
#include <cmath>
#include <map>
#include <mutex>
#include <tuple>

#include "host/StripColourManager.h"

namespace {

struct CacheKey {
    std::string path;
    int r, g, b;
    bool operator<(const CacheKey& o) const {
        return std::tie(path, r, g, b) < std::tie(o.path, o.r, o.g, o.b);
    }
};

std::mutex& cacheMutex() {
    static std::mutex m;
    return m;
}
std::map<CacheKey, Icon>& cache() {
    static std::map<CacheKey, Icon> c;
    return c;
}

Icon read(const String& path) {
    QImage img(QString::fromUtf8(path.c_str()));
    if (img.isNull())
        return Icon();
    img = img.convertToFormat(QImage::Format_ARGB32);
    auto px = std::make_shared<std::vector<uint32_t>>(static_cast<size_t>(img.width()) * img.height());
    for (int y = 0; y < img.height(); ++y) {
        const auto* line = reinterpret_cast<const uint32_t*>(img.constScanLine(y));
        std::copy(line, line + img.width(), px->begin() + static_cast<ptrdiff_t>(y) * img.width());
    }
    Icon icon;
    icon.width = img.width();
    icon.height = img.height();
    icon.pixels = px;
    return icon;
}

int channel(double v) {
    return static_cast<int>(std::clamp(v, 0.0, 1.0) * 255.0 + 0.5);
}

// The icon as read (no colour) or recoloured, made once per path and colour.
Icon cachedIcon(const String& path, const Colour* colour) {
    const bool keep = colour == nullptr;
    CacheKey key{path.str(), keep ? -1 : channel(colour->red()), keep ? -1 : channel(colour->green()),
                 keep ? -1 : channel(colour->blue())};
    std::lock_guard<std::mutex> lock(cacheMutex());
    auto it = cache().find(key);
    if (it != cache().end())
        return it->second;
    Icon icon = read(path);
    if (icon.valid() && !keep) {
        auto px = std::make_shared<std::vector<uint32_t>>(*icon.pixels);
        for (uint32_t& p : *px) {
            const uint32_t a = p >> 24;
            const double lum =
                (0.299 * ((p >> 16) & 0xFF) + 0.587 * ((p >> 8) & 0xFF) + 0.114 * (p & 0xFF)) / 255.0;
            // Light pixels take the colour itself, dark ones a darker shade of it.
            const double shade = 0.35 + 0.65 * lum;
            p = (a << 24) | (static_cast<uint32_t>(channel(colour->red() * shade)) << 16) |
                (static_cast<uint32_t>(channel(colour->green() * shade)) << 8) |
                static_cast<uint32_t>(channel(colour->blue() * shade));
        }
        icon.pixels = px;
    }
    cache()[key] = icon;
    return icon;
}

} // namespace

Icon IconCache::loadIcon(const String& path) {
    return cachedIcon(path, nullptr);
}

Icon IconCache::createRecolouredIcon(const String& path, const Colour& colour) {
    return cachedIcon(path, &colour);
}

void IconCache::clear() {
    std::lock_guard<std::mutex> lock(cacheMutex());
    cache().clear();
}

Colour StripColourManager::getTypeColour(const String& tag) {
    struct Family {
        const char* prefix;
        double r, g, b;
    };
    static const Family families[] = {
        {"PixShader:Mattes:", 0.20, 0.62, 0.60},
        {"PixShader:Blur", 0.30, 0.52, 0.86},
        {"PixShader:Colour", 0.90, 0.58, 0.22},
        {"PixShader:Mix", 0.62, 0.42, 0.82},
        {"PixShader:Geometry", 0.40, 0.72, 0.34},
        {"PixShader:Stereo", 0.82, 0.36, 0.62},
        {"Transition:", 0.90, 0.80, 0.30},
        {"Audio:", 0.86, 0.36, 0.34},
        {"Import:", 0.50, 0.60, 0.72},
        {"Alias:", 0.58, 0.58, 0.58},
    };
    for (const Family& f : families)
        if (tag.startsWith(f.prefix))
            return Colour(f.r, f.g, f.b);
    return Colour(0.46, 0.52, 0.60);
}

Colour StripColourManager::getColourFor(const Cookie& material) {
    if (!material.valid())
        return Colour(0.5, 0.5, 0.5);
    // A hue from the cookie's words, at a fixed lightness that reads on dark and light palettes.
    const uint32_t h =
        material.id().a() * 2654435761u ^ material.id().b() * 40503u ^ material.id().c() * 2246822519u;
    const double hue = (h % 360) / 60.0;
    const double x = 1 - std::abs(std::fmod(hue, 2.0) - 1);
    double r = 0, g = 0, b = 0;
    switch (static_cast<int>(hue)) {
    case 0:
        r = 1, g = x;
        break;
    case 1:
        r = x, g = 1;
        break;
    case 2:
        g = 1, b = x;
        break;
    case 3:
        g = x, b = 1;
        break;
    case 4:
        r = x, b = 1;
        break;
    default:
        r = 1, b = x;
        break;
    }
    return Colour(0.25 + 0.55 * r, 0.25 + 0.55 * g, 0.25 + 0.55 * b);
}
