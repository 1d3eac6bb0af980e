// GlobCreationInfo: what every widget is built from: size, canvas, palette, saved record.
#pragma once

#include "host/Palette.h"
#include "host/configb.h"

class Canvas;

// A width or height of 0 lets the widget size itself. canvas names the window the widget is
// made for (informational: every widget draws on its own canvas). config is the saved record a
// restored widget reads.
struct GlobCreationInfo {
    int width = 0;
    int height = 0;
    Canvas* canvas = nullptr;
    Palette palette;
    configb config;

    GlobCreationInfo() = default;
    GlobCreationInfo(int w, int h) : width(w), height(h) {}
    virtual ~GlobCreationInfo() = default;
};
