// Helpers of the render tests: small edits of known pictures, stills of them, pixel reading.
#pragma once

#include <OpenImageIO/imageio.h>

#include <cmath>
#include <string>

#include "host/DigitalVideoFormats.h"
#include "host/VidRenderUtils.h"
#include "tests/support/GraphBuilder.h"

namespace rendertest {

struct Rgba {
    int r, g, b, a;
};

inline Rgba at(const Zk::Image::Surface& s, int x, int y) {
    const uint32_t v = s.pixel(x, y);
    return {int(v >> 16 & 0xff), int(v >> 8 & 0xff), int(v & 0xff), int(v >> 24)};
}

inline int to255(double v) {
    return static_cast<int>(std::lround(v * 255.0));
}

// The mean of each colour channel over the picture, 0 to 255.
inline void meanOf(const Zk::Image::Surface& s, double mean[3]) {
    mean[0] = mean[1] = mean[2] = 0;
    for (int y = 0; y < s.height(); ++y)
        for (int x = 0; x < s.width(); ++x) {
            Rgba p = at(s, x, y);
            mean[0] += p.r;
            mean[1] += p.g;
            mean[2] += p.b;
        }
    for (int c = 0; c < 3; ++c)
        mean[c] /= double(s.width()) * s.height();
}

inline Zk::Ptr<EffectInstance_opu4h5a4j> flat(GraphBuilder& g, uint32_t n, double r, double gr, double b) {
    auto fx = g.effect(n, 0, "PixShader:Mattes:flatcol.fx");
    fx->setParam("red", r);
    fx->setParam("green", gr);
    fx->setParam("blue", b);
    return fx;
}

inline Render::RenderContextRep context(const EditGraphIterator& it, int w, int h) {
    ShotVideoMetadata m = it.getEditH() ? it.getEditH()->getVideoMetadata() : ShotVideoMetadata();
    m.width = w;
    m.height = h;
    m.formatUID = DigitalVideoFormats::kThumbnailFormatUID;
    return Render::RenderContextRep(it, m, 0, 0, 1, true);
}

// The still of the graph on channel `chan` at `time`, or of the node `node` below it.
inline Zk::Ptr<Zk::Image::Surface> still(const EditPtr& edit, int chan, double time, int w = 64, int h = 36,
                                         const FXGraphNodeBase* node = nullptr) {
    EditGraphIterator it(edit, chan, time, 0);
    if (node && !it.search(node))
        return nullptr;
    return Render::VidRenderUtils::renderStill(context(it, w, h), true);
}

// Writes a still as a PNG for a person to look at.
inline bool writePng(const Zk::Image::Surface& s, const std::string& path) {
    auto out = OIIO::ImageOutput::create(path);
    if (!out)
        return false;
    OIIO::ImageSpec spec(s.width(), s.height(), 4, OIIO::TypeDesc::UINT8);
    if (!out->open(path, spec))
        return false;
    std::vector<uint8_t> bytes;
    for (int y = 0; y < s.height(); ++y)
        for (int x = 0; x < s.width(); ++x) {
            Rgba p = at(s, x, y);
            bytes.insert(bytes.end(), {uint8_t(p.r), uint8_t(p.g), uint8_t(p.b), uint8_t(p.a)});
        }
    bool ok = out->write_image(OIIO::TypeDesc::UINT8, bytes.data());
    return out->close() && ok;
}

} // namespace rendertest
