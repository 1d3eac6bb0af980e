// GeneratedPictures: the test pictures that generated materials show, drawn at any size so that
// a thumbnail looks like the full frame.
#pragma once

#include <OpenImageIO/imagebuf.h>

#include <cstdint>
#include <string>

namespace GeneratedPictures {

// Colour bars: seven bars at 75% over a row of reversed bars and a strip of white, black and
// near-black patches.
OIIO::ImageBuf bars(int width, int height);
// A grey ramp from black on the left to white on the right.
OIIO::ImageBuf ramp(int width, int height);
// White lines on black, sixteen cells across and nine down, with a centre cross.
OIIO::ImageBuf grid(int width, int height);
// Grey noise, the same for the same seed and size.
OIIO::ImageBuf noise(int width, int height, int seed);
// A slate: a card that shows the name of a clip whose media can't be shown (a movie, missing
// media), so that it is never silently black.
OIIO::ImageBuf slate(int width, int height, const std::string& name, int seed);
// The picture a source names; false for a source with nothing to show (such as "tone", audio)
// or one not known.
bool make(const std::string& source, int width, int height, int seed, OIIO::ImageBuf& out);

} // namespace GeneratedPictures
