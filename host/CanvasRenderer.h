// CanvasRenderer: paints primitives on a widget's canvas and keeps the clip and changed areas.
#pragma once

#include <memory>
#include <vector>

#include "host/BezierCurveDescription.h"
#include "host/EllipseDescription.h"
#include "host/ImageDescription.h"
#include "host/RecordedPrimitive.h"
#include "host/RectDescription.h"
#include "host/TextDescription.h"
#include "host/XY.h"
#include "host/ZkBox.h"

class Canvas;

// Coordinates are the widget's pixels, y upward, shifted by translateCanvas. A clip box with no
// area means no clip. Primitives are anti-aliased. In recording mode each primitive is also kept,
// exactly as submitted, for tests to read back. While the canvas defers its updates, the
// primitives of a repaint share one painter; it ends with the deferral or when anyone reads the
// surface.
class CanvasRenderer {
public:
    explicit CanvasRenderer(Canvas& canvas);
    ~CanvasRenderer();
    CanvasRenderer(const CanvasRenderer&) = delete;
    CanvasRenderer& operator=(const CanvasRenderer&) = delete;

    // Whether there is a surface to paint on (the widget has a size).
    bool isReadyToRender() const;

    void renderPrimitive(const Glib::RectDescription& d);
    void renderPrimitive(const Glib::BezierCurveDescription& d);
    void renderPrimitive(const Glib::EllipseDescription& d);
    void renderPrimitive(const Glib::TextDescription& d);
    void renderPrimitive(const Glib::ImageDescription& d);

    const Zk::Box<int>& getClipRect() const { return clip_; }
    void setClipRect(const Zk::Box<int>& b) { clip_ = b; }
    void clearClipRect() { clip_ = Zk::Box<int>(); }

    // Marks a box (in the current translation) as changed: it reaches the screen at the next
    // flush, or at the end of an update deferral.
    void addModifiedArea(const Zk::Box<int>& b);
    // The changed areas not yet sent to the screen, in widget pixels.
    const std::vector<Zk::Box<int>>& modifiedAreas() const { return modified_; }
    void flush();

    void translateCanvas(int dx, int dy);
    XY<int> getTranslation() const { return translation_; }
    void setTranslation(const XY<int>& t) { translation_ = t; }
    // Opacity applied to every primitive, 0 to 1.
    void setTranslucency(double opacity);
    double getTranslucency() const { return translucency_; }

    void startRecording();
    void stopRecording() { recording_ = false; }
    bool isRecording() const { return recording_; }
    const std::vector<Glib::RecordedPrimitive>& recorded() const { return recorded_; }
    void clearRecording() { recorded_.clear(); }

    Canvas& canvas() const { return canvas_; }

    // Ends the painter kept across a repaint, so that the surface is complete for its readers.
    void finishPainting() const;

private:
    struct HeldPainter;

    template <class D>
    void submit(const D& d);

    Canvas& canvas_;
    Zk::Box<int> clip_;
    XY<int> translation_;
    double translucency_ = 1.0;
    bool recording_ = false;
    std::vector<Glib::RecordedPrimitive> recorded_;
    std::vector<Zk::Box<int>> modified_;
    mutable std::unique_ptr<HeldPainter> held_;
};
