// Generated test pictures.
#include "refhost/render/module/GeneratedPictures.h"

#include <OpenImageIO/imagebufalgo.h>

#include <algorithm>
#include <array>

#include "refhost/render/module/SurfacePixels.h"

namespace GeneratedPictures {

namespace {

using Rgb = std::array<float, 3>;

void fillRect(OIIO::ImageBuf& buf, int x0, int y0, int x1, int y1, const Rgb& c) {
    x1 = std::min(x1, buf.spec().width);
    y1 = std::min(y1, buf.spec().height);
    if (x1 <= x0 || y1 <= y0)
        return;
    const float v[4] = {c[0], c[1], c[2], 1.f};
    OIIO::ImageBufAlgo::fill(buf, v, OIIO::ROI(x0, x1, y0, y1, 0, 1, 0, 4));
}

// The left edge of column k of n across a width, so that columns tile the width exactly.
int edge(int k, int n, int width) {
    return static_cast<int>(static_cast<int64_t>(k) * width / n);
}

} // namespace

OIIO::ImageBuf bars(int width, int height) {
    OIIO::ImageBuf buf = RenderPixels::blank(width, height, 0.f, 0.f, 0.f, 1.f);
    const float s = 0.75f;
    const std::array<Rgb, 7> top{
        {{s, s, s}, {s, s, 0}, {0, s, s}, {0, s, 0}, {s, 0, s}, {s, 0, 0}, {0, 0, s}}};
    const std::array<Rgb, 7> reversed{
        {{0, 0, s}, {0, 0, 0}, {s, 0, s}, {0, 0, 0}, {0, s, s}, {0, 0, 0}, {s, s, s}}};
    const int topEnd = height * 2 / 3;
    const int midEnd = height * 3 / 4;
    for (int k = 0; k < 7; ++k) {
        fillRect(buf, edge(k, 7, width), 0, edge(k + 1, 7, width), topEnd, top[static_cast<size_t>(k)]);
        fillRect(buf, edge(k, 7, width), topEnd, edge(k + 1, 7, width), midEnd,
                 reversed[static_cast<size_t>(k)]);
    }
    // The bottom strip: a dark blue, white, purple, then black with the near-black patches.
    const std::array<Rgb, 6> strip{
        {{0.f, 0.13f, 0.3f}, {1, 1, 1}, {0.2f, 0.f, 0.42f}, {0, 0, 0}, {0.03f, 0.03f, 0.03f}, {0, 0, 0}}};
    const std::array<int, 7> at{0, 5, 10, 15, 20, 23, 28}; // in 28ths of the width
    for (size_t k = 0; k < strip.size(); ++k)
        fillRect(buf, edge(at[k], 28, width), midEnd, edge(at[k + 1], 28, width), height, strip[k]);
    return buf;
}

OIIO::ImageBuf ramp(int width, int height) {
    OIIO::ImageBuf buf = RenderPixels::blank(width, height);
    const float black[4] = {0, 0, 0, 1};
    const float white[4] = {1, 1, 1, 1};
    OIIO::ImageBufAlgo::fill(buf, black, white, black, white);
    return buf;
}

OIIO::ImageBuf grid(int width, int height) {
    OIIO::ImageBuf buf = RenderPixels::blank(width, height, 0.f, 0.f, 0.f, 1.f);
    const int line = std::max(1, height / 180);
    const Rgb white{0.9f, 0.9f, 0.9f};
    for (int k = 0; k <= 16; ++k) {
        int x = std::min(edge(k, 16, width), width - line);
        fillRect(buf, x, 0, x + line, height, white);
    }
    for (int k = 0; k <= 9; ++k) {
        int y = std::min(edge(k, 9, height), height - line);
        fillRect(buf, 0, y, width, y + line, white);
    }
    const int cx = width / 2, cy = height / 2, arm = std::max(2, height / 12);
    const Rgb red{0.9f, 0.1f, 0.1f};
    fillRect(buf, cx - arm, cy - line, cx + arm, cy + line, red);
    fillRect(buf, cx - line, cy - arm, cx + line, cy + arm, red);
    return buf;
}

OIIO::ImageBuf noise(int width, int height, int seed) {
    OIIO::ImageBuf buf = RenderPixels::blank(width, height, 0.f, 0.f, 0.f, 1.f);
    OIIO::ImageBufAlgo::noise(buf, "uniform", 0.f, 1.f, true, seed,
                              OIIO::ROI(0, width, 0, height, 0, 1, 0, 3));
    return buf;
}

OIIO::ImageBuf slate(int width, int height, const std::string& name, int seed) {
    OIIO::ImageBuf buf(OIIO::ImageSpec(width, height, 4, OIIO::TypeDesc::FLOAT));
    // A dark card whose hue follows the material, a lighter band across it, the name on the band.
    const float hue = static_cast<float>(static_cast<unsigned>(seed) % 360u) / 360.f;
    const Rgb card = {0.12f + 0.10f * hue, 0.14f, 0.22f - 0.10f * hue};
    fillRect(buf, 0, 0, width, height, card);
    const int bandTop = height * 3 / 8, bandBottom = height * 5 / 8;
    fillRect(buf, 0, bandTop, width, bandBottom, {card[0] * 2.2f, card[1] * 2.2f, card[2] * 2.2f});
    if (!name.empty() && height >= 16) {
        const int size = std::max(8, (bandBottom - bandTop) * 2 / 3);
        const float white[4] = {0.95f, 0.95f, 0.95f, 1.f};
        // A font that the machine lacks leaves the card without its name; nothing else fails.
        OIIO::ImageBufAlgo::render_text(buf, width / 2, (bandTop + bandBottom) / 2, name, size,
                                        "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf", white,
                                        OIIO::ImageBufAlgo::TextAlignX::Center,
                                        OIIO::ImageBufAlgo::TextAlignY::Center);
        (void)OIIO::geterror(); // keep the library's error queue empty
    }
    return buf;
}

bool make(const std::string& source, int width, int height, int seed, OIIO::ImageBuf& out) {
    if (source == "bars")
        out = bars(width, height);
    else if (source == "ramp")
        out = ramp(width, height);
    else if (source == "grid")
        out = grid(width, height);
    else if (source == "noise")
        out = noise(width, height, seed);
    else
        return false;
    return true;
}

} // namespace GeneratedPictures
