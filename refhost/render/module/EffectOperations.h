// EffectOperations: the image operation behind each effect tag of the reference host, applied to
// working images (float RGBA, premultiplied, top row first). The tags, their inputs and their
// parameters (with the value taken when a parameter is not set), the shader tags without their
// "PixShader:" and ".fx":
//   Blur:gaussian      radius 5 (the deviation, in the edit's pixels)
//   Colour:correct     gain 1; red, green, blue 1 (gains); saturation 1; contrast 1; lift 0; gamma 1
//   Colour:mono        amount 1 (0 leaves the colour)
//   Colour:sepia       amount 1
//   Geometry:vignette  amount 0.5 (darkening at the corners); size 0.4 (where it starts, of the
//                      way from the centre to a corner)
//   Geometry:crop      left, right, top, bottom 0 (fractions of the frame cut to clear black)
//   Mix:pip            0 background, 1 inset; scale 0.25; x, y 0.75 (the inset's centre, from the
//                      left and from the bottom)
//   Mix:key            0 foreground, 1 background, 2 an optional matte whose brightness is the
//                      foreground's opacity; without one a colour key: red 0, green 1, blue 0,
//                      tolerance 0.3, softness 0.1
//   Mix:over           0 laid over 1 at opacity 0.5, so that both show, as a glow needs
//   Mix:mix3           the inputs that have a picture, weighted by balance 0.5: 0 the first
//                      alone, 0.5 all alike, 1 the last alone
//   Mix:split          0 left of position 0.5 (of the width), 1 right of it
//   Mattes:flatcol     red, green, blue 0; alpha 1
//   Mattes:gradients:linear  from red1, green1, blue1 (0) to red2, green2, blue2 (1) along angle
//                      0 (degrees: 0 left to right, 90 bottom to top)
//   Stereo:converge    offset 0 (the shift between the eyes; a still shows the left eye)
//   Transition:Dissolve, Transition:Wipe   0 outgoing, 1 incoming, by how far through its cel
//                      the transition is; a wipe comes in from the left
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
