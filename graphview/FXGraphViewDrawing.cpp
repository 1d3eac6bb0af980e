// Painting the view: the background, the primary node's highlight, the connections in their two
// passes, the nodes, the dragged connection, the partial repaints and the text service.
#include <algorithm>
#include <cmath>

#include "graphnodes/FXGraphViewNode.h"
#include "graphview/FXGraphView.h"
#include "host/Canvas.h"
#include "host/EditGraphSearchScope.h"
#include "host/Event.h"
#include "host/GlibDraw.h"
#include "host/GlibFonts.h"
#include "host/Palette.h"
#include "host/UpdateDeferrer.h"

using VidRouting::Orientations::BottomToTop;
using VidRouting::Orientations::LeftToRight;

namespace {

constexpr double kNoTime = 1e99;
const Colour kHighlight(0.7, 0.7, 0.4, false);

Zk::Box<int> intersect(const Zk::Box<int>& a, const Zk::Box<int>& b) {
    Zk::Box<int> r;
    r.x1 = std::max(a.x1, b.x1);
    r.y1 = std::max(a.y1, b.y1);
    r.x2 = std::min(a.x2, b.x2);
    r.y2 = std::min(a.y2, b.y2);
    if (r.x2 <= r.x1 || r.y2 <= r.y1)
        return Zk::Box<int>();
    return r;
}

} // namespace

// --- the gate every primitive passes --------------------------------------------------------------

template <class D>
void FXGraphView::gate(const D& d) {
    CanvasRenderer& r = canvas()->renderer();
    if (!r.isReadyToRender())
        return;
    Zk::Box<int> box = d.boundingBox();
    const Zk::Box<int>& clip = r.getClipRect();
    if (clip.width() != 0 && clip.height() != 0)
        box = intersect(box, clip);
    if (box.width() != 0 && box.height() != 0) {
        r.renderPrimitive(d);
        r.addModifiedArea(box);
    }
}

void FXGraphView::submitPrimitive(const Glib::RectDescription& d) {
    gate(d);
}
void FXGraphView::submitPrimitive(const Glib::BezierCurveDescription& d) {
    gate(d);
}
void FXGraphView::submitPrimitive(const Glib::EllipseDescription& d) {
    gate(d);
}
void FXGraphView::submitPrimitive(const Glib::TextDescription& d) {
    gate(d);
}
void FXGraphView::submitPrimitive(const Glib::ImageDescription& d) {
    gate(d);
}

Zk::Box<int> FXGraphView::currentClip() const {
    Zk::Box<int> clip = canvas()->renderer().getClipRect();
    if (clip.width() == 0 || clip.height() == 0) {
        // No clip: the whole canvas.
        clip = Zk::Box<int>();
        clip.x2 = width();
        clip.y2 = height();
    }
    return clip;
}

// --- the passes -------------------------------------------------------------------------------------

void FXGraphView::drawBackground() {
    // Drawing changes no graph: the nodes' searches for themselves share one walk of the edit.
    EditGraphSearchScope still(edit_);
    updateMinAndMaxPositions();
    if (floating_ && !floatingAreas_.empty() && canvas()->hasKeptSurface()) {
        paintFloating();
        return;
    }
    // Any other repaint may change what the kept picture shows.
    if (!hidingFloating_)
        forgetPicture();
    CanvasRenderer& r = canvas()->renderer();
    // The margins round the window, where the scroll bars stand, in the panel's darker shade.
    Zk::Box<int> all;
    all.x2 = width();
    all.y2 = height();
    const Zk::Box<int> clip = r.getClipRect();
    const Zk::Box<int> window = getWindowPos();
    // A repaint of part of the window leaves the margins as they are.
    const bool partOfWindow =
        clip.width() != 0 && clip.height() != 0 && clip.x1 >= window.x1 && clip.y1 >= window.y1 &&
        clip.x2 <= window.x2 && clip.y2 <= window.y2 &&
        !(clip.x1 == window.x1 && clip.y1 == window.y1 && clip.x2 == window.x2 && clip.y2 == window.y2);
    if (!partOfWindow) {
        r.clearClipRect();
        Glib::drawRect(r, getPalette().window(-1), all);
        r.setClipRect(clip);
    }

    Glib::RectDescription fill;
    fill.box = window;
    fill.colour = fromColour(getPalette().window(0));
    submitPrimitive(fill);

    // A node list for a span of time that the edit no longer reaches is not painted.
    if (morphologyStart_ != kNoTime && edit_ &&
        !(edit_->getEndTime() > morphologyStart_ && morphologyEnd_ > edit_->getStartTime()))
        return;
    // Connections end at the nodes' boxes, which a node works out as it draws: a node moved since
    // the last repaint would otherwise be joined where it was.
    for (const auto& n : nodes_)
        n->box_ = n->pixelBox();
    drawPrimaryNodeHighlight();
    drawConnections(EdgeOutline);
    drawNodes();
    drawConnections(EdgeMain);
    drawDraggedConnection();
}

void FXGraphView::drawPrimaryNodeHighlight() {
    FXGraphViewNode* primary = getPrimaryNodePtr();
    if (!primary || (hidingFloating_ && primary == floating_.get()))
        return;
    const int r = static_cast<uint16_t>(physicalScale_ * 0.01);
    Zk::Box<int> box = primary->pixelBox();
    box.x1 -= r;
    box.y1 -= r;
    box.x2 += r;
    box.y2 += r;
    CanvasRenderer& renderer = canvas()->renderer();
    if (!renderer.isReadyToRender())
        return;
    Glib::drawRoundedRect(renderer, scale(kHighlight, 0.8), kHighlight, box, 2, 0, 1);
}

void FXGraphView::drawConnections(eEdgeType type) {
    drawConnections(type, nullptr);
}

void FXGraphView::drawConnections(eEdgeType type, const FXGraphViewNode* only) {
    const FXGraphViewNode* hidden = hidingFloating_ ? floating_.get() : nullptr;
    // The connection the user holds is not drawn where it was.
    const FXGraphViewNode* heldNode = nullptr;
    int heldInput = -1;
    if (draggingIFNode_) {
        if (draggedIFIsInput_) {
            heldNode = draggingIFNode_.get();
            heldInput = draggedIF_;
        } else if (FXGraphViewNode* d = draggingIFNode_->getOutputNode(draggedIF_)) {
            heldNode = d;
            heldInput = d->getInputFor(draggingIFNode_.get(), draggedIF_);
        }
    }
    const unsigned short thickness = getEdgeThickness(type);
    for (const auto& node : nodes_) {
        if (!node->node())
            continue;
        int n = node->numInputs();
        if (n >= 3)
            n = std::min(n, static_cast<int>(node->inputs().size()) + 1);
        for (int i = 0; i < n; ++i) {
            FXGraphViewNode* source = node->getInputNode(i);
            if (!source)
                continue;
            const int output = source->getOutputFor(node.get(), i);
            if (output < 0)
                continue;
            if (node.get() == heldNode && i == heldInput)
                continue;
            if (only ? node.get() != only && source != only : node.get() == hidden || source == hidden)
                continue;
            Colour colour = source->getColour();
            if (type == EdgeOutline)
                colour = Palette(colour).window(-3);
            drawConnection(source->getOutputPos(static_cast<unsigned char>(output)), node->getInputPos(i),
                           colour, thickness);
        }
    }
}

void FXGraphView::drawConnection(const XY<int>& from, const XY<int>& to, const Colour& colour,
                                 unsigned short thickness) {
    const int mx = (from.x + to.x) / 2;
    const int my = (from.y + to.y) / 2;
    const bool backwards =
        (orientation_ == LeftToRight && from.x > to.x) || (orientation_ == BottomToTop && from.y > to.y);
    Glib::BezierCurveDescription c;
    c.colour = fromColour(colour);
    c.thickness = thickness;
    if (!backwards) {
        c.p0 = from;
        c.p1 = to;
        if (orientation_ == LeftToRight) {
            c.c0 = XY<int>(mx, from.y);
            c.c1 = XY<int>(mx, to.y);
        } else {
            c.c0 = XY<int>(from.x, my);
            c.c1 = XY<int>(to.x, my);
        }
        submitPrimitive(c);
        return;
    }
    // Backwards: out of the port in the direction of flow, back through the middle, and into the
    // other port in the direction of flow.
    const int stub = static_cast<int>(physicalScale_ * 0.0625);
    const XY<int> mid(mx, my);
    c.p0 = from;
    c.p1 = mid;
    if (orientation_ == LeftToRight) {
        c.c0 = XY<int>(from.x + stub, from.y);
        c.c1 = XY<int>(from.x + stub, my);
    } else {
        c.c0 = XY<int>(from.x, from.y + stub);
        c.c1 = XY<int>(mx, from.y + stub);
    }
    submitPrimitive(c);
    c.p0 = mid;
    c.p1 = to;
    if (orientation_ == LeftToRight) {
        c.c0 = XY<int>(to.x - stub, my);
        c.c1 = XY<int>(to.x - stub, to.y);
    } else {
        c.c0 = XY<int>(mx, to.y - stub);
        c.c1 = XY<int>(to.x, to.y - stub);
    }
    submitPrimitive(c);
}

void FXGraphView::drawDraggedConnection() {
    if (!draggingIFNode_)
        return;
    drawDraggedConnection(EdgeOutline);
    drawDraggedConnection(EdgeMain);
}

void FXGraphView::drawDraggedConnection(eEdgeType type) {
    if (!draggingIFNode_)
        return;
    const unsigned short thickness = getEdgeThickness(type);
    const XY<int> mouse = glib_getMousePos();
    const XY<int> at = getPosition();
    const XY<int> p(mouse.x - at.x, mouse.y - at.y);
    Colour colour = draggingIFNode_->getColour();
    if (type == EdgeOutline)
        colour = Palette(colour).window(-3);
    XY<int> from, to;
    if (draggedIFIsInput_) {
        from = p;
        to = draggingIFNode_->getInputPos(draggedIF_);
    } else {
        from = draggingIFNode_->getOutputPos(static_cast<unsigned char>(draggedIF_));
        to = p;
    }
    drawConnection(from, to, colour, thickness);

    unsigned r = static_cast<uint16_t>(static_cast<int>(0.01 * physicalScale_ + 0.5));
    if (r > 5)
        r = 5;
    if (r < 3)
        return;
    if (type == EdgeOutline)
        r += 1;
    const int ri = static_cast<int>(r);
    for (const XY<int>& end : {to, from})
        submitPrimitive(dotAt(end, ri, colour));
}

Glib::EllipseDescription FXGraphView::dotAt(const XY<int>& centre, int r, const Colour& colour) {
    Glib::EllipseDescription dot;
    dot.box.x1 = centre.x - r;
    dot.box.y1 = centre.y - r;
    dot.box.x2 = centre.x + r;
    dot.box.y2 = centre.y + r;
    dot.colour = fromColour(colour);
    dot.style = 0;
    dot.lineWidth = 1;
    return dot;
}

void FXGraphView::drawNodes() {
    const FXGraphViewNode* hidden = hidingFloating_ ? floating_.get() : nullptr;
    for (const auto& n : nodes_)
        if (n.get() != hidden)
            n->draw();
    for (const auto& n : nodes_)
        chanPositions_[{n->chanId(), n->slotKey()}] = XY<double>(n->x(), n->y());
}

void FXGraphView::drawNodeNames() {
    forgetPicture();
    Glib::UpdateDeferrer defer(canvas(), 1);
    for (const auto& n : nodes_)
        if (n->onScreen_)
            n->drawTitleBar();
}

void FXGraphView::drawStills() {
    forgetPicture();
    EditGraphSearchScope still(edit_);
    Glib::UpdateDeferrer defer(canvas(), 1);
    for (const auto& n : nodes_)
        if (n->hasThumbnail())
            n->redrawThumbnail();
}

void FXGraphView::nodePosRecUpdate(FXGraphViewNode*) {
    draw();
}

void FXGraphView::nodeInputsChanged(FXGraphViewNode*) {
    if (!suppressInputRecalc_)
        recalcNodeList(true);
}

// --- text -------------------------------------------------------------------------------------------

void FXGraphView::drawText(const WString& text, const Zk::Box<int>& box, const Colour& colour,
                           TextAlignment alignment, const char*) {
    const int h = std::abs(box.y2 - box.y1);
    const int size = std::min(getDefaultFontSize(), h);
    const FontDesc font = Glib::loadFont(getDefaultFontName(0), size, 0);
    Glib::TextDescription d;
    if (alignment.horizontal == 1)
        d.anchor.x = box.x2;
    else if (alignment.horizontal == 2)
        d.anchor.x = static_cast<int>(std::abs(box.x2 - box.x1) * 0.5 + box.x1);
    else
        d.anchor.x = box.x1;
    d.anchor.y = box.y1 + getFontYOffset(h, font);
    d.text = Glib::fitTextToWidth(text, font, std::abs(box.x2 - box.x1), 0);
    d.font = font;
    d.colour = fromColour(colour);
    d.alignment = alignment.horizontal == 1 || alignment.horizontal == 2 ? alignment.horizontal : 0;
    submitPrimitive(d);
}

void FXGraphView::drawText(const String& text, const Zk::Box<int>& box, const Colour& colour,
                           TextAlignment alignment, const char* fontName) {
    std::wstring wide;
    for (const char c : text.view())
        wide += static_cast<wchar_t>(static_cast<unsigned char>(c));
    drawText(WString(wide), box, colour, alignment, fontName);
}
