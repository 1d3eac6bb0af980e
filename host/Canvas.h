// Canvas: the drawing surface of one widget, a backing image that the screen shows.
#pragma once

#include <memory>

#include "host/CanvasRenderer.h"
#include "host/LightweightString.h"

class Glob;

// Owned by its widget. Screen updates of changed areas can be held back (UpdateDeferrer) and
// are then sent once.
class Canvas {
public:
    explicit Canvas(Glob& owner);
    ~Canvas();
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    CanvasRenderer& renderer() { return renderer_; }
    Glob& owner() const { return owner_; }
    int width() const;
    int height() const;

    void deferUpdates();
    void releaseUpdates();
    bool updatesDeferred() const { return deferrals_ > 0; }
    // How many times changed areas were sent to the screen.
    int screenUpdateCount() const { return screenUpdates_; }

    // The colour of one pixel (x, y upward) as 0xAARRGGBB; 0 outside.
    unsigned pixel(int x, int y) const;
    // Writes the canvas alone (not the child widgets) to a PNG file.
    bool saveImage(const String& path) const;

    // A copy of the surface put aside, to be put back box by box: a view that moves one thing
    // over a scene that holds still paints the scene once and then only what moves.
    void keepSurface();
    // Whether a copy is kept that still fits the surface.
    bool hasKeptSurface() const;
    // Puts the kept pixels of a box (widget pixels, y upward) back and marks the box changed;
    // false, with nothing done, when nothing is kept or the surface changed size since.
    bool restoreKept(const Zk::Box<int>& box);
    void dropKeptSurface();

    struct Surface;
    Surface& surface() const { return *surface_; }
    void noteScreenUpdate() { ++screenUpdates_; }

private:
    Glob& owner_;
    CanvasRenderer renderer_;
    std::unique_ptr<Surface> surface_;
    int deferrals_ = 0;
    int screenUpdates_ = 0;
};
