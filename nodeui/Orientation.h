// The direction in which the effect graph runs on the canvas, and its text forms, which are what
// the preference "Video Routing : Orientation" stores.
#pragma once

#include "host/LightweightString.h"

namespace VidRouting {
namespace Orientations {

enum Orientation { LeftToRight = 0, BottomToTop = 1 };

} // namespace Orientations
} // namespace VidRouting

// 0 gives "LeftToRight", 1 gives "BottomToTop", any other value the empty string.
LightweightString<char> orientationToString(VidRouting::Orientations::Orientation o);
// "BottomToTop" gives BottomToTop; "LeftToRight" and any other text give LeftToRight.
VidRouting::Orientations::Orientation orientationFromString(const LightweightString<char>& text);

// The preference that holds the orientation, and the text used when it is absent.
inline constexpr const char* kOrientationPrefKey = "Video Routing : Orientation";
inline constexpr const char* kOrientationPrefDefault = "BottomToTop";
