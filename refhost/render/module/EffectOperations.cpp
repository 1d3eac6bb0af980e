// The image operations behind the effect tags.
#include "refhost/render/module/EffectOperations.h"

#include <OpenImageIO/Imath.h>
#include <OpenImageIO/imagebufalgo.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <string>

#include "refhost/render/module/SurfacePixels.h"

namespace EffectOperations {

namespace IBA = OIIO::ImageBufAlgo;

namespace {

constexpr double kPi = 3.14159265358979323846;
// Rec. 709 luma weights.
constexpr float kLuma[3] = {0.2126f, 0.7152f, 0.0722f};
// From this deviation on a blur is made of box blurs.
constexpr double kBoxBlurFrom = 2.0;

// A colour matrix (rows are what one input channel gives to each output channel, as the image
// library applies colour * M) on straight colour.
OIIO::ImageBuf colourMatrix(const OIIO::ImageBuf& src, const float m[3][3]) {
    Imath::M44f M(m[0][0], m[0][1], m[0][2], 0.f, m[1][0], m[1][1], m[1][2], 0.f, m[2][0], m[2][1], m[2][2],
                  0.f, 0.f, 0.f, 0.f, 1.f);
    return IBA::colormatrixtransform(src, M, true);
}

// The matrix that scales saturation around Rec. 709 luma: 0 grey, 1 unchanged.
void saturationMatrix(double s, float m[3][3]) {
    for (int i = 0; i < 3; ++i)
        for (int o = 0; o < 3; ++o)
            m[i][o] = static_cast<float>((1.0 - s) * kLuma[i] + (i == o ? s : 0.0));
}

const OIIO::ImageBuf& orBlank(const OIIO::ImageBuf* b, OIIO::ImageBuf& keep, const Frame& f) {
    if (b)
        return *b;
    keep = RenderPixels::blank(f.width, f.height);
    return keep;
}

float smoothstep(float e0, float e1, float x) {
    if (e1 <= e0)
        return x < e0 ? 0.f : 1.f;
    float t = std::clamp((x - e0) / (e1 - e0), 0.f, 1.f);
    return t * t * (3.f - 2.f * t);
}

// Calls `f(x, y, pixel)` on every pixel of a working image made by this renderer (local floats).
template <class F>
void eachPixel(OIIO::ImageBuf& b, F f) {
    const int w = b.spec().width, h = b.spec().height;
    float* p = static_cast<float*>(b.localpixels());
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x, p += 4)
            f(x, y, p);
}

// A copy that is local float RGBA, whatever the source holds.
OIIO::ImageBuf localCopy(const OIIO::ImageBuf& src) {
    if (src.spec().nchannels == 4)
        return src.copy(OIIO::TypeDesc::FLOAT);
    OIIO::ImageBuf out = RenderPixels::blank(src.spec().width, src.spec().height);
    IBA::paste(out, 0, 0, 0, 0, src);
    return out;
}

// A box blur of the given radius along lines of `length` pixels `step` floats apart, for
// `count` lines `lineStep` floats apart.
void boxPass(float* px, int length, int count, size_t step, size_t lineStep, int radius,
             std::vector<float>& line) {
    if (radius <= 0 || length <= 0)
        return;
    // The line with `radius` pixels more at each end, mirrored there (the end pixel repeated
    // once): with a symmetric kernel each pixel then gives out exactly its own weight, so the
    // mean of the picture is kept.
    const int padded = length + 2 * radius + 1;
    line.resize(static_cast<size_t>(padded) * 4);
    const int period = 2 * length;
    auto mirror = [&](int i) {
        i %= period;
        if (i < 0)
            i += period;
        return i >= length ? period - 1 - i : i;
    };
    const double scale = 1.0 / (2 * radius + 1);
    for (int l = 0; l < count; ++l) {
        float* base = px + static_cast<size_t>(l) * lineStep;
        for (int k = 0; k < padded; ++k) {
            const float* from = base + static_cast<size_t>(mirror(k - radius)) * step;
            float* to = &line[static_cast<size_t>(k) * 4];
            to[0] = from[0];
            to[1] = from[1];
            to[2] = from[2];
            to[3] = from[3];
        }
        double sum[4] = {0, 0, 0, 0};
        for (int k = 0; k < 2 * radius + 1; ++k)
            for (int c = 0; c < 4; ++c)
                sum[c] += line[static_cast<size_t>(k) * 4 + c];
        for (int i = 0; i < length; ++i) {
            float* out = base + static_cast<size_t>(i) * step;
            const float* enter = &line[static_cast<size_t>(i + 2 * radius + 1) * 4];
            const float* leave = &line[static_cast<size_t>(i) * 4];
            for (int c = 0; c < 4; ++c) {
                out[c] = static_cast<float>(sum[c] * scale);
                sum[c] += enter[c] - leave[c];
            }
        }
    }
}

// The same down the columns, a whole row at a time so that memory is read in order; `copy`
// holds the picture as it was before the pass.
void boxPassDown(float* px, int width, int height, int radius, std::vector<float>& copy,
                 std::vector<double>& sums) {
    if (radius <= 0 || height <= 0)
        return;
    const size_t row = static_cast<size_t>(width) * 4;
    copy.assign(px, px + row * static_cast<size_t>(height));
    const int period = 2 * height;
    auto rowAt = [&](int i) {
        i %= period;
        if (i < 0)
            i += period;
        return copy.data() + static_cast<size_t>(i >= height ? period - 1 - i : i) * row;
    };
    sums.assign(row, 0.0);
    for (int k = -radius; k <= radius; ++k) {
        const float* r = rowAt(k);
        for (size_t j = 0; j < row; ++j)
            sums[j] += r[j];
    }
    const double scale = 1.0 / (2 * radius + 1);
    for (int y = 0; y < height; ++y) {
        float* out = px + static_cast<size_t>(y) * row;
        const float* enter = rowAt(y + radius + 1);
        const float* leave = rowAt(y - radius);
        for (size_t j = 0; j < row; ++j) {
            out[j] = static_cast<float>(sums[j] * scale);
            sums[j] += static_cast<double>(enter[j]) - leave[j];
        }
    }
}

using Op = std::function<OIIO::ImageBuf(const EffectInstance_opu4h5a4j&,
                                        const std::vector<const OIIO::ImageBuf*>&, const Frame&)>;

const OIIO::ImageBuf* inputOf(const std::vector<const OIIO::ImageBuf*>& in, size_t i) {
    return i < in.size() ? in[i] : nullptr;
}

// The first input, or clear black kept in `keep`.
const OIIO::ImageBuf& first(const std::vector<const OIIO::ImageBuf*>& in, OIIO::ImageBuf& keep,
                            const Frame& f) {
    return orBlank(inputOf(in, 0), keep, f);
}

OIIO::ImageBuf opBlur(const EffectInstance_opu4h5a4j& fx, const std::vector<const OIIO::ImageBuf*>& in,
                      const Frame& f) {
    OIIO::ImageBuf keep;
    return blur(first(in, keep, f), fx.param("radius", 5.0) * f.scale);
}

OIIO::ImageBuf opCorrect(const EffectInstance_opu4h5a4j& fx, const std::vector<const OIIO::ImageBuf*>& in,
                         const Frame& f) {
    Grade g;
    g.gain = fx.param("gain", 1.0);
    g.red = fx.param("red", 1.0);
    g.green = fx.param("green", 1.0);
    g.blue = fx.param("blue", 1.0);
    g.saturation = fx.param("saturation", 1.0);
    g.contrast = fx.param("contrast", 1.0);
    g.lift = fx.param("lift", 0.0);
    g.gamma = fx.param("gamma", 1.0);
    OIIO::ImageBuf keep;
    return grade(first(in, keep, f), g);
}

OIIO::ImageBuf opMono(const EffectInstance_opu4h5a4j& fx, const std::vector<const OIIO::ImageBuf*>& in,
                      const Frame& f) {
    float m[3][3];
    saturationMatrix(1.0 - std::clamp(fx.param("amount", 1.0), 0.0, 1.0), m);
    OIIO::ImageBuf keep;
    return colourMatrix(first(in, keep, f), m);
}

OIIO::ImageBuf opSepia(const EffectInstance_opu4h5a4j& fx, const std::vector<const OIIO::ImageBuf*>& in,
                       const Frame& f) {
    // Warm browns: the classic print-toning matrix, blended with the picture by `amount`.
    static const float tone[3][3] = {
        {0.393f, 0.349f, 0.272f}, {0.769f, 0.686f, 0.534f}, {0.189f, 0.168f, 0.131f}};
    const float a = static_cast<float>(std::clamp(fx.param("amount", 1.0), 0.0, 1.0));
    float m[3][3];
    for (int i = 0; i < 3; ++i)
        for (int o = 0; o < 3; ++o)
            m[i][o] = a * tone[i][o] + (1.f - a) * (i == o ? 1.f : 0.f);
    OIIO::ImageBuf keep;
    return colourMatrix(first(in, keep, f), m);
}

OIIO::ImageBuf opVignette(const EffectInstance_opu4h5a4j& fx, const std::vector<const OIIO::ImageBuf*>& in,
                          const Frame& f) {
    OIIO::ImageBuf keep;
    OIIO::ImageBuf out = localCopy(first(in, keep, f));
    const float amount = static_cast<float>(std::clamp(fx.param("amount", 0.5), 0.0, 1.0));
    // Darkening starts at `inner` of the way from the centre to a corner.
    const float inner = static_cast<float>(std::clamp(fx.param("size", 0.4), 0.0, 1.0));
    const float cx = f.width / 2.f, cy = f.height / 2.f;
    const float reach = std::sqrt(cx * cx + cy * cy);
    eachPixel(out, [&](int x, int y, float* p) {
        const float dx = x + 0.5f - cx, dy = y + 0.5f - cy;
        const float k = 1.f - amount * smoothstep(inner, 1.f, std::sqrt(dx * dx + dy * dy) / reach);
        p[0] *= k;
        p[1] *= k;
        p[2] *= k;
    });
    return out;
}

OIIO::ImageBuf opCrop(const EffectInstance_opu4h5a4j& fx, const std::vector<const OIIO::ImageBuf*>& in,
                      const Frame& f) {
    auto edge = [&](const char* name) { return std::clamp(fx.param(name, 0.0), 0.0, 1.0); };
    const int x0 = static_cast<int>(std::lround(edge("left") * f.width));
    const int x1 = f.width - static_cast<int>(std::lround(edge("right") * f.width));
    const int y0 = static_cast<int>(std::lround(edge("top") * f.height));
    const int y1 = f.height - static_cast<int>(std::lround(edge("bottom") * f.height));
    OIIO::ImageBuf out = RenderPixels::blank(f.width, f.height), keep;
    if (x1 > x0 && y1 > y0)
        IBA::paste(out, 0, 0, 0, 0, first(in, keep, f), OIIO::ROI(x0, x1, y0, y1, 0, 1, 0, 4));
    return out;
}

OIIO::ImageBuf opPip(const EffectInstance_opu4h5a4j& fx, const std::vector<const OIIO::ImageBuf*>& in,
                     const Frame& f) {
    OIIO::ImageBuf keep;
    const OIIO::ImageBuf& bg = orBlank(inputOf(in, 0), keep, f);
    const OIIO::ImageBuf* fg = inputOf(in, 1);
    const double scale = std::clamp(fx.param("scale", 0.25), 0.0, 1.0);
    const int w = static_cast<int>(std::lround(f.width * scale));
    const int h = static_cast<int>(std::lround(f.height * scale));
    if (!fg || w <= 0 || h <= 0)
        return bg;
    // The inset's centre, as fractions of the frame from the left and from the bottom.
    const double cx = fx.param("x", 0.75), cy = fx.param("y", 0.75);
    OIIO::ImageBuf small(OIIO::ImageSpec(w, h, 4, OIIO::TypeDesc::FLOAT));
    IBA::resize(small, *fg);
    OIIO::ImageBuf layer = RenderPixels::blank(f.width, f.height);
    const int x = static_cast<int>(std::lround(cx * f.width - w / 2.0));
    const int y = static_cast<int>(std::lround((1.0 - cy) * f.height - h / 2.0));
    IBA::paste(layer, x, y, 0, 0, small);
    return over(layer, bg, 1.0);
}

OIIO::ImageBuf opKey(const EffectInstance_opu4h5a4j& fx, const std::vector<const OIIO::ImageBuf*>& in,
                     const Frame& f) {
    OIIO::ImageBuf keepBg;
    const OIIO::ImageBuf* fgIn = inputOf(in, 0);
    const OIIO::ImageBuf& bg = orBlank(inputOf(in, 1), keepBg, f);
    if (!fgIn)
        return bg;
    OIIO::ImageBuf fg = localCopy(IBA::unpremult(*fgIn));
    const OIIO::ImageBuf* matteIn = inputOf(in, 2);
    if (matteIn) {
        // A separate matte: its brightness is the foreground's opacity.
        OIIO::ImageBuf matte = localCopy(*matteIn);
        const float* m = static_cast<const float*>(matte.localpixels());
        eachPixel(fg, [&](int, int, float* p) {
            p[3] *= kLuma[0] * m[0] + kLuma[1] * m[1] + kLuma[2] * m[2];
            m += 4;
        });
    } else {
        // A colour key: pixels near the key colour (green unless told) go clear.
        const float kr = static_cast<float>(fx.param("red", 0.0));
        const float kg = static_cast<float>(fx.param("green", 1.0));
        const float kb = static_cast<float>(fx.param("blue", 0.0));
        const float tolerance = static_cast<float>(fx.param("tolerance", 0.3));
        const float softness = static_cast<float>(fx.param("softness", 0.1));
        eachPixel(fg, [&](int, int, float* p) {
            const float d =
                std::sqrt((p[0] - kr) * (p[0] - kr) + (p[1] - kg) * (p[1] - kg) + (p[2] - kb) * (p[2] - kb));
            p[3] *= smoothstep(tolerance, tolerance + softness, d);
        });
    }
    return over(IBA::premult(fg), bg, 1.0);
}

OIIO::ImageBuf opOver(const EffectInstance_opu4h5a4j& fx, const std::vector<const OIIO::ImageBuf*>& in,
                      const Frame& f) {
    OIIO::ImageBuf keepFg, keepBg;
    return over(orBlank(inputOf(in, 0), keepFg, f), orBlank(inputOf(in, 1), keepBg, f),
                std::clamp(fx.param("opacity", 0.5), 0.0, 1.0));
}

OIIO::ImageBuf opMix(const EffectInstance_opu4h5a4j& fx, const std::vector<const OIIO::ImageBuf*>& in,
                     const Frame& f) {
    // `balance` tilts the mix from the first input (0) through an even mix (0.5) to the last (1);
    // inputs with nothing take no part.
    std::vector<const OIIO::ImageBuf*> present;
    for (const auto* b : in)
        if (b)
            present.push_back(b);
    const double b = std::clamp(fx.param("balance", 0.5), 0.0, 1.0);
    const size_t n = present.size();
    std::vector<double> weights;
    for (size_t i = 0; i < n; ++i)
        weights.push_back(n == 1 ? 1.0
                                 : (1.0 - b) * static_cast<double>(n - 1 - i) + b * static_cast<double>(i));
    return mix(present, weights, f.width, f.height);
}

OIIO::ImageBuf opSplit(const EffectInstance_opu4h5a4j& fx, const std::vector<const OIIO::ImageBuf*>& in,
                       const Frame& f) {
    // The first input left of the split, the second right of it.
    OIIO::ImageBuf keepLeft;
    OIIO::ImageBuf out = localCopy(first(in, keepLeft, f));
    const int x = static_cast<int>(std::lround(std::clamp(fx.param("position", 0.5), 0.0, 1.0) * f.width));
    OIIO::ImageBuf keep;
    const OIIO::ImageBuf& right = orBlank(inputOf(in, 1), keep, f);
    if (x < f.width)
        IBA::paste(out, 0, 0, 0, 0, right, OIIO::ROI(x, f.width, 0, f.height, 0, 1, 0, 4));
    return out;
}

OIIO::ImageBuf opDissolve(const EffectInstance_opu4h5a4j&, const std::vector<const OIIO::ImageBuf*>& in,
                          const Frame& f) {
    OIIO::ImageBuf keepA, keepB;
    const OIIO::ImageBuf& a = orBlank(inputOf(in, 0), keepA, f);
    const OIIO::ImageBuf& b = orBlank(inputOf(in, 1), keepB, f);
    const double p = std::clamp(f.progress, 0.0, 1.0);
    return mix({&a, &b}, {1.0 - p, p}, f.width, f.height);
}

OIIO::ImageBuf opWipe(const EffectInstance_opu4h5a4j&, const std::vector<const OIIO::ImageBuf*>& in,
                      const Frame& f) {
    // The incoming picture sweeps in from the left.
    OIIO::ImageBuf keepA, keepB;
    OIIO::ImageBuf out = localCopy(orBlank(inputOf(in, 0), keepA, f));
    const OIIO::ImageBuf& b = orBlank(inputOf(in, 1), keepB, f);
    const int x = static_cast<int>(std::lround(std::clamp(f.progress, 0.0, 1.0) * f.width));
    if (x > 0)
        IBA::paste(out, 0, 0, 0, 0, b, OIIO::ROI(0, x, 0, f.height, 0, 1, 0, 4));
    return out;
}

OIIO::ImageBuf opFlat(const EffectInstance_opu4h5a4j& fx, const std::vector<const OIIO::ImageBuf*>&,
                      const Frame& f) {
    const float a = static_cast<float>(std::clamp(fx.param("alpha", 1.0), 0.0, 1.0));
    auto c = [&](const char* n) { return static_cast<float>(std::clamp(fx.param(n, 0.0), 0.0, 1.0)) * a; };
    return RenderPixels::blank(f.width, f.height, c("red"), c("green"), c("blue"), a);
}

OIIO::ImageBuf opGradient(const EffectInstance_opu4h5a4j& fx, const std::vector<const OIIO::ImageBuf*>&,
                          const Frame& f) {
    // From the start colour (black unless told) to the end colour (white unless told).
    const float from[3] = {static_cast<float>(fx.param("red1", 0.0)),
                           static_cast<float>(fx.param("green1", 0.0)),
                           static_cast<float>(fx.param("blue1", 0.0))};
    const float to[3] = {static_cast<float>(fx.param("red2", 1.0)),
                         static_cast<float>(fx.param("green2", 1.0)),
                         static_cast<float>(fx.param("blue2", 1.0))};
    return linearGradient(f.width, f.height, from, to, fx.param("angle", 0.0));
}

OIIO::ImageBuf opConverge(const EffectInstance_opu4h5a4j& fx, const std::vector<const OIIO::ImageBuf*>& in,
                          const Frame& f) {
    // A still shows the left eye, which moves by half the convergence shift.
    const int dx = static_cast<int>(std::lround(fx.param("offset", 0.0) * f.scale / 2.0));
    OIIO::ImageBuf out = RenderPixels::blank(f.width, f.height);
    OIIO::ImageBuf keep;
    IBA::paste(out, dx, 0, 0, 0, first(in, keep, f));
    return out;
}

const std::map<std::string, Op>& operations() {
    static const std::map<std::string, Op> ops{
        {"PixShader:Blur:gaussian.fx", opBlur},
        {"PixShader:Colour:correct.fx", opCorrect},
        {"PixShader:Colour:mono.fx", opMono},
        {"PixShader:Colour:sepia.fx", opSepia},
        {"PixShader:Geometry:vignette.fx", opVignette},
        {"PixShader:Geometry:crop.fx", opCrop},
        {"PixShader:Mix:pip.fx", opPip},
        {"PixShader:Mix:key.fx", opKey},
        {"PixShader:Mix:over.fx", opOver},
        {"PixShader:Mix:mix3.fx", opMix},
        {"PixShader:Mix:split.fx", opSplit},
        {"PixShader:Mattes:flatcol.fx", opFlat},
        {"PixShader:Mattes:gradients:linear.fx", opGradient},
        {"PixShader:Stereo:converge.fx", opConverge},
        {"Transition:Dissolve", opDissolve},
        {"Transition:Wipe", opWipe},
    };
    return ops;
}

} // namespace

OIIO::ImageBuf blur(const OIIO::ImageBuf& src, double sigma) {
    if (!(sigma >= 0.3))
        return src;
    if (sigma < kBoxBlurFrom) {
        // Separable: a row kernel, then a column kernel. The image library's gaussian of width w
        // has a deviation of w / 4 and reaches two deviations either side.
        const float width = static_cast<float>(std::max(3.0, 4.0 * sigma));
        OIIO::ImageBuf across = IBA::make_kernel("gaussian", width, 1.f);
        OIIO::ImageBuf down = IBA::make_kernel("gaussian", 1.f, width);
        return IBA::convolve(IBA::convolve(src, across), down);
    }
    // Wider blurs: three box blurs each way, whose sum of variances is the gaussian's, at a cost
    // that does not grow with the radius.
    OIIO::ImageBuf out = localCopy(src);
    const int w = out.spec().width, h = out.spec().height;
    float* px = static_cast<float*>(out.localpixels());
    const double s = std::min(sigma, 2000.0);
    const int n = 3;
    int lower = static_cast<int>(std::floor(std::sqrt(12.0 * s * s / n + 1.0)));
    if (lower % 2 == 0)
        --lower;
    const int m = static_cast<int>(
        std::lround((12.0 * s * s - n * lower * lower - 4.0 * n * lower - 3.0 * n) / (-4.0 * lower - 4.0)));
    std::vector<float> line;
    std::vector<double> sums;
    for (int pass = 0; pass < n; ++pass)
        boxPass(px, w, h, 4, static_cast<size_t>(w) * 4, ((pass < m ? lower : lower + 2) - 1) / 2, line);
    for (int pass = 0; pass < n; ++pass)
        boxPassDown(px, w, h, ((pass < m ? lower : lower + 2) - 1) / 2, line, sums);
    return out;
}

OIIO::ImageBuf grade(const OIIO::ImageBuf& src, const Grade& g) {
    float m[3][3];
    saturationMatrix(g.saturation, m);
    const double gains[3] = {g.gain * g.red, g.gain * g.green, g.gain * g.blue};
    for (int i = 0; i < 3; ++i)
        for (int o = 0; o < 3; ++o)
            m[i][o] *= static_cast<float>(gains[o]);
    // One pass on straight colour: matrix, contrast and lift, gamma.
    OIIO::ImageBuf out = localCopy(src);
    const float contrast = static_cast<float>(g.contrast);
    const float offset = static_cast<float>(0.5 * (1.0 - g.contrast) + g.lift);
    const float power = g.gamma > 1e-3 ? static_cast<float>(1.0 / g.gamma) : 1000.f;
    eachPixel(out, [&](int, int, float* p) {
        const float a = p[3];
        if (a <= 0.f)
            return;
        const float in[3] = {p[0] / a, p[1] / a, p[2] / a};
        for (int o = 0; o < 3; ++o) {
            float v = in[0] * m[0][o] + in[1] * m[1][o] + in[2] * m[2][o];
            v = std::clamp(v * contrast + offset, 0.f, 1.f);
            p[o] = (power == 1.f ? v : std::pow(v, power)) * a;
        }
    });
    return out;
}

OIIO::ImageBuf mix(const std::vector<const OIIO::ImageBuf*>& pictures, const std::vector<double>& weights,
                   int width, int height) {
    OIIO::ImageBuf out = RenderPixels::blank(width, height);
    double total = 0.0;
    for (size_t i = 0; i < pictures.size() && i < weights.size(); ++i)
        if (pictures[i] && weights[i] > 0.0)
            total += weights[i];
    if (total <= 0.0)
        return out;
    for (size_t i = 0; i < pictures.size() && i < weights.size(); ++i)
        if (pictures[i] && weights[i] > 0.0)
            IBA::mad(out, *pictures[i], static_cast<float>(weights[i] / total), out);
    return out;
}

OIIO::ImageBuf over(const OIIO::ImageBuf& fg, const OIIO::ImageBuf& bg, double opacity) {
    if (opacity >= 1.0)
        return IBA::over(fg, bg);
    return IBA::over(IBA::mul(fg, static_cast<float>(std::max(0.0, opacity))), bg);
}

OIIO::ImageBuf linearGradient(int width, int height, const float from[3], const float to[3], double angle) {
    // The gradient runs along the direction of the angle across the whole frame; a linear ramp is
    // exactly its four corners interpolated.
    const double a = angle * kPi / 180.0;
    const double dx = std::cos(a), dy = std::sin(a); // y upward
    const double reach = std::abs(dx) * width + std::abs(dy) * height;
    auto at = [&](double x, double yUp, float* c) {
        const double t = reach > 0 ? ((x - width / 2.0) * dx + (yUp - height / 2.0) * dy) / reach + 0.5 : 0.5;
        for (int k = 0; k < 3; ++k)
            c[k] = static_cast<float>(from[k] + (to[k] - from[k]) * t);
        c[3] = 1.f;
    };
    float tl[4], tr[4], bl[4], br[4];
    at(0, height, tl);
    at(width, height, tr);
    at(0, 0, bl);
    at(width, 0, br);
    OIIO::ImageBuf out = RenderPixels::blank(width, height);
    IBA::fill(out, tl, tr, bl, br);
    return out;
}

bool apply(const EffectInstance_opu4h5a4j& fx, const std::vector<const OIIO::ImageBuf*>& inputs,
           const Frame& frame, OIIO::ImageBuf& out) {
    const auto& ops = operations();
    auto it = ops.find(fx.tagTypeId().str());
    if (it == ops.end())
        return false;
    out = it->second(fx, inputs, frame);
    return !out.has_error() && out.spec().width == frame.width && out.spec().height == frame.height;
}

} // namespace EffectOperations
