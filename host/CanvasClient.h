// CanvasClient: the drawing face of a widget, what a repaint and the pointer ask of it.
#pragma once

#include "host/MouseCursorID.h"
#include "host/XY.h"

class CanvasClient {
public:
    virtual ~CanvasClient() = default;
    // Paints the widget's own area; the default fills it with the palette's window colour.
    virtual void drawBackground() {}
    // The cursor for the pointer at a screen position over the widget.
    virtual MouseCursorID contextCursor(const XY<int>& screenPos) { return CursorArrow; }
};
