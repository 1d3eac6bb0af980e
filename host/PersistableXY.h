// PersistableXY: the text form of a point or size, "(x,y)", as preferences store it.
#pragma once

#include "host/LightweightString.h"
#include "host/XY.h"

class PersistableXY {
public:
    static String toString(const XY<int>& v);
    // Reads "(x,y)" with optional blanks around the numbers; false for anything else, including
    // numbers out of the range of int.
    static bool parse(const String& text, XY<int>& out);
};
