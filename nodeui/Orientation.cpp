// Text forms of the layout direction.
#include "nodeui/Orientation.h"

using VidRouting::Orientations::Orientation;

LightweightString<char> orientationToString(Orientation o) {
    switch (o) {
    case VidRouting::Orientations::LeftToRight:
        return "LeftToRight";
    case VidRouting::Orientations::BottomToTop:
        return "BottomToTop";
    }
    return "";
}

Orientation orientationFromString(const LightweightString<char>& text) {
    return text == "BottomToTop" ? VidRouting::Orientations::BottomToTop
                                 : VidRouting::Orientations::LeftToRight;
}
