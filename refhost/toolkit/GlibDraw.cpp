// Glib drawing helpers, the current canvas, update deferral and the drawing state saver.
#include "host/GlibDraw.h"

#include "host/Canvas.h"
#include "host/Glob.h"
#include "host/StateSaver.h"
#include "host/UpdateDeferrer.h"

namespace {
CanvasRenderer* current = nullptr;
}

CanvasRenderer* Glib::currentRenderer() {
    return current;
}
void Glib::setCurrentRenderer(CanvasRenderer* r) {
    current = r;
}

void Glib::drawRect(CanvasRenderer& r, const Colour& c, const Zk::Box<int>& box) {
    RectDescription d;
    d.box = box;
    d.colour = fromColour(c);
    r.renderPrimitive(d);
    r.addModifiedArea(box);
}

void Glib::drawFrame(CanvasRenderer& r, const Colour& c, const Zk::Box<int>& box, int width) {
    RectDescription d;
    d.box = box;
    d.colour = fromColour(c);
    d.filled = false;
    d.lineWidth = width;
    r.renderPrimitive(d);
    r.addModifiedArea(box);
}

void Glib::drawRect(const Colour& c, const Zk::Box<int>& box) {
    if (current)
        drawRect(*current, c, box);
}

void Glib::drawFrame(const Colour& c, const Zk::Box<int>& box, int width) {
    if (current)
        drawFrame(*current, c, box, width);
}

void Glib::drawRoundedRect(CanvasRenderer& r, const Colour& frame, const Colour& fill,
                           const Zk::Box<int>& box, int corner, unsigned style, unsigned short frameWidth) {
    RectDescription d;
    d.box = box;
    d.colour = fromColour(fill);
    d.cornerRadius = corner;
    r.renderPrimitive(d);
    if (frameWidth > 0) {
        d.colour = fromColour(frame);
        d.filled = false;
        d.lineWidth = frameWidth;
        r.renderPrimitive(d);
    }
    r.addModifiedArea(box);
}

Glib::UpdateDeferrer::UpdateDeferrer(Canvas* canvas, int) : canvas_(canvas) {
    if (canvas_) {
        owner_ = &canvas_->owner();
        canvas_->deferUpdates();
    }
}

Glib::UpdateDeferrer::~UpdateDeferrer() {
    if (canvas_ && is_good_glob_ptr(owner_))
        canvas_->releaseUpdates();
}

Glib::StateSaver::StateSaver(int) : renderer_(current) {
    if (renderer_) {
        owner_ = &renderer_->canvas().owner();
        clip_ = renderer_->getClipRect();
        translation_ = renderer_->getTranslation();
        translucency_ = renderer_->getTranslucency();
    }
}

Glib::StateSaver::~StateSaver() {
    if (renderer_ && !is_good_glob_ptr(owner_)) {
        current = nullptr;
        return;
    }
    current = renderer_;
    if (renderer_) {
        renderer_->setClipRect(clip_);
        renderer_->setTranslation(translation_);
        renderer_->setTranslucency(translucency_);
    }
}
