// Canvas and CanvasRenderer: QPainter on a backing image, y upward, with recording.
#include "host/Canvas.h"

#include <QFontMetrics>
#include <QPainter>
#include <QPainterPath>
#include <QStaticText>
#include <algorithm>
#include <cstring>
#include <map>
#include <string>
#include <unordered_map>

#include "host/GlibFonts.h"
#include "host/Glob.h"
#include "refhost/toolkit/CanvasSurface.h"
#include "refhost/toolkit/GlobImpl.h"

namespace {

QColor qcol(const NormalisedRGB& c, double opacity) {
    auto ch = [](double v) { return std::clamp(static_cast<int>(v * 255.0 + 0.5), 0, 255); };
    return QColor(ch(c.r), ch(c.g), ch(c.b), ch(c.a * opacity));
}

bool hasArea(const Zk::Box<int>& b) {
    return b.x2 != b.x1 && b.y2 != b.y1;
}

Zk::Box<int> normalised(Zk::Box<int> b) {
    if (b.x1 > b.x2)
        std::swap(b.x1, b.x2);
    if (b.y1 > b.y2)
        std::swap(b.y1, b.y2);
    return b;
}

QRectF qrect(const Zk::Box<int>& b) {
    Zk::Box<int> n = normalised(b);
    return QRectF(n.x1, n.y1, n.x2 - n.x1, n.y2 - n.y1);
}

const QImage* cachedFile(const String& path) {
    static std::map<std::string, QImage> cache;
    auto it = cache.find(path.str());
    if (it == cache.end())
        it = cache.emplace(path.str(), QImage(QString::fromUtf8(path.c_str()))).first;
    return it->second.isNull() ? nullptr : &it->second;
}

// A painter on the surface with y upward, translated, clipped and translucent as the renderer is.
struct Painter {
    Painter(Canvas& c, const CanvasRenderer& r) : p(&c.surface().image) {
        p.setRenderHint(QPainter::Antialiasing);
        p.setRenderHint(QPainter::TextAntialiasing);
        p.setRenderHint(QPainter::SmoothPixmapTransform);
        p.translate(0, c.height());
        p.scale(1, -1);
        if (hasArea(r.getClipRect()))
            p.setClipRect(qrect(r.getClipRect()));
        p.translate(r.getTranslation().x, r.getTranslation().y);
        opacity = r.getTranslucency();
    }
    QPainter p;
    double opacity = 1.0;
};

void paint(Painter& pp, const Glib::RectDescription& d) {
    QRectF r = qrect(d.box);
    QPainter& p = pp.p;
    if (d.filled) {
        QPainterPath path;
        path.addRoundedRect(r, d.cornerRadius, d.cornerRadius);
        if (d.cornerRadius > 0)
            p.fillPath(path, qcol(d.colour, pp.opacity));
        else
            p.fillRect(r, qcol(d.colour, pp.opacity));
        return;
    }
    double lw = std::max(1, d.lineWidth);
    p.setPen(QPen(qcol(d.colour, pp.opacity), lw));
    p.setBrush(Qt::NoBrush);
    QRectF in = r.adjusted(lw / 2, lw / 2, -lw / 2, -lw / 2);
    p.drawRoundedRect(in, d.cornerRadius, d.cornerRadius);
}

void paint(Painter& pp, const Glib::BezierCurveDescription& d) {
    QPainterPath path(QPointF(d.p0.x, d.p0.y));
    path.cubicTo(QPointF(d.c0.x, d.c0.y), QPointF(d.c1.x, d.c1.y), QPointF(d.p1.x, d.p1.y));
    pp.p.setPen(QPen(qcol(d.colour, pp.opacity), std::max(1, d.thickness), Qt::SolidLine, Qt::RoundCap));
    pp.p.setBrush(Qt::NoBrush);
    pp.p.drawPath(path);
}

void paint(Painter& pp, const Glib::EllipseDescription& d) {
    QRectF r = qrect(d.box);
    QPainter& p = pp.p;
    if (d.style == 0) {
        p.setPen(Qt::NoPen);
        p.setBrush(qcol(d.colour, pp.opacity));
        p.drawEllipse(r);
        return;
    }
    double lw = std::max(1, d.lineWidth);
    p.setPen(QPen(qcol(d.colour, pp.opacity), lw));
    p.setBrush(Qt::NoBrush);
    QRectF in = r.adjusted(lw / 2, lw / 2, -lw / 2, -lw / 2);
    double span = d.endAngle - d.startAngle;
    if (span >= 360.0 || span <= -360.0) {
        p.drawEllipse(in);
        return;
    }
    // The painter's y is flipped, so Qt's counter-clockwise angles turn clockwise: negate them.
    p.drawArc(in, static_cast<int>(-d.startAngle * 16), static_cast<int>(-span * 16));
}

// Texts laid out once and kept, by font and text: a canvas repaints the same titles over and
// over, and shaping a text costs far more than drawing it. The table starts afresh when full.
const QStaticText& laidOut(const Glib::TextDescription& d, const QFont& f) {
    static std::unordered_map<std::wstring, QStaticText> texts;
    std::wstring key(d.text.view());
    key += L'\x1f';
    key += std::to_wstring(d.font.size) + (d.font.bold ? L"b" : L"");
    for (const char c : d.font.name.view())
        key += static_cast<wchar_t>(static_cast<unsigned char>(c));
    auto it = texts.find(key);
    if (it != texts.end())
        return it->second;
    if (texts.size() >= 4096)
        texts.clear();
    QStaticText st(toolkit::toQString(d.text));
    st.setTextFormat(Qt::PlainText);
    st.setPerformanceHint(QStaticText::AggressiveCaching);
    st.prepare(QTransform(), f);
    return texts.emplace(std::move(key), std::move(st)).first->second;
}

void paint(Painter& pp, const Glib::TextDescription& d) {
    QPainter& p = pp.p;
    const QFont f = toolkit::toQFont(d.font);
    const QFontMetrics& fm = toolkit::fontMetrics(d.font);
    const int w = Glib::textWidth(d.text, d.font);
    int x = d.alignment == 1 ? d.anchor.x - w : d.alignment == 2 ? d.anchor.x - w / 2 : d.anchor.x;
    p.save();
    p.translate(x, d.anchor.y);
    p.scale(1, -1);
    p.setFont(f);
    p.setPen(qcol(d.colour, pp.opacity));
    // A laid-out text is placed by its top left; the anchor is on the baseline.
    p.drawStaticText(QPointF(0, -fm.ascent()), laidOut(d, f));
    p.restore();
}

void paint(Painter& pp, const Glib::ImageDescription& d) {
    QImage img;
    if (d.pixels && d.width > 0 && d.height > 0 &&
        d.pixels->size() >= static_cast<std::size_t>(d.width) * static_cast<std::size_t>(d.height))
        img = QImage(reinterpret_cast<const uchar*>(d.pixels->data()), d.width, d.height, d.width * 4,
                     QImage::Format_ARGB32);
    else if (const QImage* f = d.path.empty() ? nullptr : cachedFile(d.path))
        img = *f;
    if (img.isNull())
        return;
    QRectF r = qrect(d.box);
    QPainter& p = pp.p;
    p.save();
    p.setOpacity(pp.opacity * d.opacity);
    // Pictures are stored top row first; undo the flip for them.
    p.translate(r.left(), r.bottom());
    p.scale(1, -1);
    p.drawImage(QRectF(0, 0, r.width(), r.height()), img);
    p.restore();
}

} // namespace

// The painter of one deferred repaint, with the state it was made for: a change of clip,
// translation, translucency or surface needs a new one.
struct CanvasRenderer::HeldPainter {
    HeldPainter(Canvas& c, const CanvasRenderer& r)
        : painter(c, r), clip(r.getClipRect()), translation(r.getTranslation()),
          translucency(r.getTranslucency()), size(c.surface().image.size()) {}
    bool fits(const Canvas& c, const CanvasRenderer& r) const {
        const Zk::Box<int>& k = r.getClipRect();
        return k.x1 == clip.x1 && k.y1 == clip.y1 && k.x2 == clip.x2 && k.y2 == clip.y2 &&
               r.getTranslation().x == translation.x && r.getTranslation().y == translation.y &&
               r.getTranslucency() == translucency && c.surface().image.size() == size;
    }
    Painter painter;
    Zk::Box<int> clip;
    XY<int> translation;
    double translucency;
    QSize size;
};

CanvasRenderer::CanvasRenderer(Canvas& canvas) : canvas_(canvas) {}
CanvasRenderer::~CanvasRenderer() = default;

void CanvasRenderer::finishPainting() const {
    held_.reset();
}

Canvas::Canvas(Glob& owner) : owner_(owner), renderer_(*this), surface_(std::make_unique<Surface>()) {}
Canvas::~Canvas() {
    renderer_.finishPainting();
}

int Canvas::width() const {
    return owner_.width();
}
int Canvas::height() const {
    return owner_.height();
}

void Canvas::deferUpdates() {
    ++deferrals_;
}

void Canvas::releaseUpdates() {
    if (deferrals_ > 0 && --deferrals_ == 0) {
        renderer_.finishPainting();
        renderer_.flush();
    }
}

void Canvas::keepSurface() {
    renderer_.finishPainting();
    surface_->kept = surface_->image.copy();
}

bool Canvas::hasKeptSurface() const {
    const QImage& kept = surface_->kept;
    return !kept.isNull() && kept.size() == surface_->image.size() &&
           kept.format() == surface_->image.format();
}

bool Canvas::restoreKept(const Zk::Box<int>& box) {
    QImage& img = surface_->image;
    const QImage& kept = surface_->kept;
    if (!hasKeptSurface())
        return false;
    const Zk::Box<int> b = normalised(box);
    const int x1 = std::max(b.x1, 0), x2 = std::min(b.x2, img.width());
    // Rows of the image run top down.
    const int top = std::max(img.height() - b.y2, 0), bottom = std::min(img.height() - b.y1, img.height());
    if (x2 <= x1 || bottom <= top)
        return true;
    renderer_.finishPainting();
    const size_t bytes = static_cast<size_t>(x2 - x1) * 4;
    for (int row = top; row < bottom; ++row)
        std::memcpy(img.scanLine(row) + static_cast<size_t>(x1) * 4,
                    kept.constScanLine(row) + static_cast<size_t>(x1) * 4, bytes);
    Zk::Box<int> changed;
    changed.x1 = x1;
    changed.x2 = x2;
    changed.y1 = img.height() - bottom;
    changed.y2 = img.height() - top;
    const XY<int> t = renderer_.getTranslation();
    changed.x1 -= t.x;
    changed.x2 -= t.x;
    changed.y1 -= t.y;
    changed.y2 -= t.y;
    renderer_.addModifiedArea(changed);
    return true;
}

void Canvas::dropKeptSurface() {
    surface_->kept = QImage();
}

unsigned Canvas::pixel(int x, int y) const {
    renderer_.finishPainting();
    const QImage& img = surface_->image;
    int row = img.height() - 1 - y;
    if (x < 0 || row < 0 || x >= img.width() || row >= img.height())
        return 0;
    return img.pixel(x, row);
}

bool Canvas::saveImage(const String& path) const {
    renderer_.finishPainting();
    return surface_->image.save(QString::fromUtf8(path.c_str()), "PNG");
}

bool CanvasRenderer::isReadyToRender() const {
    int w = canvas_.width(), h = canvas_.height();
    if (w <= 0 || h <= 0)
        return false;
    QImage& img = canvas_.surface().image;
    if (img.width() != w || img.height() != h) {
        finishPainting();
        QImage fresh(w, h, QImage::Format_ARGB32_Premultiplied);
        fresh.fill(Qt::transparent);
        if (!img.isNull()) {
            QPainter p(&fresh);
            // Keep the bottom-left part: the host's frame grows from the bottom.
            p.drawImage(0, h - img.height(), img);
        }
        img = fresh;
    }
    return true;
}

template <class D>
void CanvasRenderer::submit(const D& d) {
    if (recording_)
        recorded_.push_back(Glib::RecordedPrimitive{d, clip_, translation_, translucency_});
    if (!isReadyToRender())
        return;
    if (!canvas_.updatesDeferred()) {
        Painter p(canvas_, *this);
        paint(p, d);
        return;
    }
    if (!held_ || !held_->fits(canvas_, *this)) {
        held_.reset(); // one painter at a time on a surface
        held_ = std::make_unique<HeldPainter>(canvas_, *this);
    }
    paint(held_->painter, d);
}

void CanvasRenderer::renderPrimitive(const Glib::RectDescription& d) {
    submit(d);
}
void CanvasRenderer::renderPrimitive(const Glib::BezierCurveDescription& d) {
    submit(d);
}
void CanvasRenderer::renderPrimitive(const Glib::EllipseDescription& d) {
    submit(d);
}
void CanvasRenderer::renderPrimitive(const Glib::TextDescription& d) {
    submit(d);
}
void CanvasRenderer::renderPrimitive(const Glib::ImageDescription& d) {
    submit(d);
}

void CanvasRenderer::addModifiedArea(const Zk::Box<int>& b) {
    Zk::Box<int> n = normalised(b);
    n.x1 += translation_.x;
    n.x2 += translation_.x;
    n.y1 += translation_.y;
    n.y2 += translation_.y;
    if (!hasArea(n))
        return;
    modified_.push_back(n);
    if (!canvas_.updatesDeferred())
        flush();
}

void CanvasRenderer::flush() {
    finishPainting();
    if (canvas_.updatesDeferred())
        return;
    QWidget* w = canvas_.owner().impl().widget;
    if (modified_.empty()) {
        w->update();
    } else {
        int h = canvas_.height();
        // Many small areas go to the window system as the one box round them: merging hundreds
        // of rectangles into a region costs more than repainting the box.
        constexpr size_t kManyAreas = 32;
        if (modified_.size() > kManyAreas) {
            Zk::Box<int> all = modified_.front();
            for (const auto& b : modified_) {
                all.x1 = std::min(all.x1, b.x1);
                all.y1 = std::min(all.y1, b.y1);
                all.x2 = std::max(all.x2, b.x2);
                all.y2 = std::max(all.y2, b.y2);
            }
            w->update(QRect(all.x1, h - all.y2, all.x2 - all.x1, all.y2 - all.y1));
        } else {
            for (const auto& b : modified_)
                w->update(QRect(b.x1, h - b.y2, b.x2 - b.x1, b.y2 - b.y1));
        }
        modified_.clear();
    }
    canvas_.noteScreenUpdate();
}

void CanvasRenderer::translateCanvas(int dx, int dy) {
    translation_.x += dx;
    translation_.y += dy;
}

void CanvasRenderer::setTranslucency(double opacity) {
    translucency_ = std::clamp(opacity, 0.0, 1.0);
}

void CanvasRenderer::startRecording() {
    recording_ = true;
    recorded_.clear();
}

Zk::Box<int> Glib::TextDescription::boundingBox() const {
    const QFontMetrics& fm = toolkit::fontMetrics(font);
    int w = Glib::textWidth(text, font);
    int x = alignment == 1 ? anchor.x - w : alignment == 2 ? anchor.x - w / 2 : anchor.x;
    Zk::Box<int> b;
    b.x1 = x;
    b.x2 = x + w;
    b.y1 = anchor.y - fm.descent();
    b.y2 = anchor.y + fm.ascent();
    return b;
}
