// Glib drawing helpers: rectangles, frames and rounded rectangles on a canvas.
#pragma once

#include "host/CanvasRenderer.h"
#include "host/Colour.h"
#include "host/ZkBox.h"

namespace Glib {

// The renderer of the current canvas (Glob::makeCanvasCurrent); null when none is current.
CanvasRenderer* currentRenderer();
void setCurrentRenderer(CanvasRenderer* r);

// On the current canvas: a filled box; a frame width pixels wide inside the box.
void drawRect(const Colour& c, const Zk::Box<int>& box);
void drawFrame(const Colour& c, const Zk::Box<int>& box, int width);
void drawRect(CanvasRenderer& r, const Colour& c, const Zk::Box<int>& box);
void drawFrame(CanvasRenderer& r, const Colour& c, const Zk::Box<int>& box, int width);
// A rounded rectangle filled with fill and framed in frame, corner the radius in pixels;
// style 0 is plain; frameWidth 0 draws no frame.
void drawRoundedRect(CanvasRenderer& r, const Colour& frame, const Colour& fill, const Zk::Box<int>& box,
                     int corner, unsigned style, unsigned short frameWidth);

} // namespace Glib
