// EffectOperations: the image operation behind each effect tag of the reference host, applied to
// working images (float RGBA, premultiplied, top row first).
#pragma once

#include <OpenImageIO/imagebuf.h>

#include <vector>

#include "host/EffectInstance_opu4h5a4j.h"

namespace EffectOperations {

// What an operation knows of the frame it is drawn in.
struct Frame {
    int width = 0;
    int height = 0;
    // Working pixels per pixel of the edit's own picture: sizes in parameters (a blur radius, a
    // shift) are in the edit's pixels, so that a thumbnail looks like the full frame.
    double scale = 1.0;
    // How far through its cel a transition is, 0 to 1.
    double progress = 0.0;
};

// The result of the effect on its inputs (null for an input with nothing); false when the tag is
// not one of the known operations. Every input is of the frame's size.
bool apply(const EffectInstance_opu4h5a4j& fx, const std::vector<const OIIO::ImageBuf*>& inputs,
           const Frame& frame, OIIO::ImageBuf& out);

// The operations on their own, for the renderer and for tests.
OIIO::ImageBuf blur(const OIIO::ImageBuf& src, double sigma);
// Gains per channel and overall, saturation, contrast around mid grey, lift and gamma.
struct Grade {
    double gain = 1.0, red = 1.0, green = 1.0, blue = 1.0;
    double saturation = 1.0, contrast = 1.0, lift = 0.0, gamma = 1.0;
};
OIIO::ImageBuf grade(const OIIO::ImageBuf& src, const Grade& g);
// A weighted sum of pictures; the weights are normalised over the pictures given.
OIIO::ImageBuf mix(const std::vector<const OIIO::ImageBuf*>& pictures, const std::vector<double>& weights,
                   int width, int height);
// `fg` laid over `bg` at the opacity.
OIIO::ImageBuf over(const OIIO::ImageBuf& fg, const OIIO::ImageBuf& bg, double opacity);
// A linear gradient between two colours; angle in degrees, 0 left to right, 90 bottom to top.
OIIO::ImageBuf linearGradient(int width, int height, const float from[3], const float to[3], double angle);

} // namespace EffectOperations
