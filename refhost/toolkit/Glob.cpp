// Glob: widgets on QWidget, with the host's upward y and anchored children.
#include "host/Glob.h"
#include "host/UpdateDeferrer.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <unordered_set>

#include "host/Canvas.h"
#include "host/GlibDraw.h"
#include "host/GlobManager.h"
#include "host/MenuGlob.h"
#include "host/ToolkitApp.h"
#include "refhost/toolkit/CanvasSurface.h"
#include "refhost/toolkit/GlobImpl.h"

namespace {

enum Anchor { AnchorRight = 1, AnchorTop = 2 };

std::unordered_set<const Glob*>& liveGlobs() {
    static std::unordered_set<const Glob*> s;
    return s;
}

int anchorsFor(WidgetPosition::Kind k) {
    switch (k) {
    case WidgetPosition::TopLeftKind:
    case WidgetPosition::UserTopLeftKind:
        return AnchorTop;
    case WidgetPosition::TopRightKind:
    case WidgetPosition::UserTopRightKind:
        return AnchorTop | AnchorRight;
    case WidgetPosition::BottomRightKind:
    case WidgetPosition::UserBottomRightKind:
        return AnchorRight;
    default:
        return 0;
    }
}

int aligned(int refLow, int refSize, int size, int alignment) {
    if (alignment == 1)
        return refLow;
    if (alignment == 2)
        return refLow + refSize - size;
    return refLow + (refSize - size) / 2;
}

} // namespace

GlobWidget::GlobWidget(Glob& owner, QWidget* parent) : QWidget(parent), owner_(owner) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
}

void GlobWidget::paintEvent(QPaintEvent*) {
    if (owner_.isOutOfDate() && !Drawable::redrawsDisabled())
        owner_.draw();
    owner_.canvas()->renderer().finishPainting();
    QPainter p(this);
    p.drawImage(0, 0, owner_.canvas()->surface().image);
}

Event GlobWidget::makeEvent(QMouseEvent* e, Event::Action action) {
    toolkit::notePointer(e->globalPosition().toPoint());
    QPoint q = e->position().toPoint();
    XY<int> pos(q.x(), height() - 1 - q.y());
    Qt::MouseButton b = e->button();
    Qt::MouseButtons held = e->buttons();
    if (action == Event::Move)
        b = (held & Qt::LeftButton)     ? Qt::LeftButton
            : (held & Qt::RightButton)  ? Qt::RightButton
            : (held & Qt::MiddleButton) ? Qt::MiddleButton
                                        : Qt::NoButton;
    Event::Button button = b == Qt::LeftButton     ? Event::Left
                           : b == Qt::RightButton  ? Event::Right
                           : b == Qt::MiddleButton ? Event::Middle
                                                   : Event::NoButton;
    if (action == Event::Down)
        press_ = pos;
    return Event(action, button, pos, action == Event::Move && button == Event::NoButton ? pos : press_,
                 toolkit::clickBits(e->modifiers(), held | b));
}

void GlobWidget::mousePressEvent(QMouseEvent* e) {
    owner_.dispatchMouseEvent(makeEvent(e, Event::Down));
}
void GlobWidget::mouseReleaseEvent(QMouseEvent* e) {
    owner_.dispatchMouseEvent(makeEvent(e, Event::Up));
}

void GlobWidget::mouseMoveEvent(QMouseEvent* e) {
    Event ev = makeEvent(e, Event::Move);
    QPoint g = e->globalPosition().toPoint();
    MouseCursorID c = owner_.contextCursor(XY<int>(g.x(), toolkit::screenHeight() - 1 - g.y()));
    Qt::CursorShape shape = c == CursorHand         ? Qt::PointingHandCursor
                            : c == CursorWait       ? Qt::WaitCursor
                            : c == CursorResizeHorz ? Qt::SizeHorCursor
                            : c == CursorResizeVert ? Qt::SizeVerCursor
                            : c == CursorIBeam      ? Qt::IBeamCursor
                            : c == CursorForbidden  ? Qt::ForbiddenCursor
                            : c == CursorCross      ? Qt::CrossCursor
                            : c == CursorMove       ? Qt::SizeAllCursor
                            : c == CursorDragRow    ? Qt::SizeVerCursor
                                                    : Qt::ArrowCursor;
    if (cursor().shape() != shape)
        setCursor(shape);
    if (ev.button() != Event::NoButton || (owner_.getInterests() & Glob::MouseMoveInterest))
        owner_.dispatchMouseEvent(ev);
}

void GlobWidget::wheelEvent(QWheelEvent* e) {
    int dy = e->angleDelta().y();
    if (dy != 0)
        owner_.handleZoom(dy > 0 ? 1 : -1);
    e->accept();
}

void GlobWidget::closeEvent(QCloseEvent* e) {
    e->ignore();
    GlobManager::instance().requestDeletion(&owner_);
}

void GlobImpl::fitControl() {
    if (control)
        control->setGeometry(0, 0, widget->width(), widget->height());
}

bool is_good_glob_ptr(const Glob* g) {
    return g && liveGlobs().count(g) > 0;
}

Glob::Glob(const GlobCreationInfo& info) : impl_(std::make_unique<GlobImpl>()), palette_(info.palette) {
    ensureToolkitApplication();
    liveGlobs().insert(this);
    canvas_ = std::make_unique<Canvas>(*this);
    impl_->widget = new GlobWidget(*this, nullptr);
    impl_->widget->hide();
    w_ = std::max(0, info.width);
    h_ = std::max(0, info.height);
    applyGeometry();
}

Glob::Glob(const Glob& o)
    : rect(o), CanvasClient(o), EventHandler(o), Drawable(o), Glib::FontUser(o), TabOrderManager(),
      impl_(std::make_unique<GlobImpl>()), palette_(o.palette_) {
    liveGlobs().insert(this);
    canvas_ = std::make_unique<Canvas>(*this);
    impl_->widget = new GlobWidget(*this, nullptr);
    impl_->widget->hide();
    x_ = y_ = 0;
    applyGeometry();
}

Glob::~Glob() {
    liveGlobs().erase(this);
    GlobManager::instance().forget(this);
    if (Glib::currentRenderer() == &canvas_->renderer())
        Glib::setCurrentRenderer(nullptr);
    // A child goes while it still knows its parent, so that its own destructor can tell that it
    // was docked; the parent's list is already empty, so it unlinks from nothing.
    std::vector<Glob*> kids;
    kids.swap(children_);
    for (Glob* c : kids)
        delete c;
    if (parent_) {
        auto& sib = parent_->children_;
        sib.erase(std::remove(sib.begin(), sib.end(), this), sib.end());
        parent_->removeFromTabOrder(this);
        if (parent_->lastAdded_ == this)
            parent_->lastAdded_ = nullptr;
    }
    delete impl_->widget;
}

Glob* Glob::getRootParent(Glob* g) {
    while (g && g->parent_)
        g = g->parent_;
    return g;
}

XY<int> Glob::resolvePosition(const WidgetPosition& pos, int w, int h) const {
    const Zk::Box<int> ua = getUserArea();
    const int x = pos.x(), y = pos.y();
    switch (pos.kind()) {
    case WidgetPosition::TopLeftKind:
        return XY<int>(x, h_ - y - h);
    case WidgetPosition::TopRightKind:
        return XY<int>(w_ - x - w, h_ - y - h);
    case WidgetPosition::BottomLeftKind:
        return XY<int>(x, y);
    case WidgetPosition::BottomRightKind:
        return XY<int>(w_ - x - w, y);
    case WidgetPosition::UserTopLeftKind:
        return XY<int>(ua.x1 + x, ua.y2 - y - h);
    case WidgetPosition::UserTopRightKind:
        return XY<int>(ua.x2 - x - w, ua.y2 - y - h);
    case WidgetPosition::UserBottomLeftKind:
        return XY<int>(ua.x1 + x, ua.y1 + y);
    case WidgetPosition::UserBottomRightKind:
        return XY<int>(ua.x2 - x - w, ua.y1 + y);
    case WidgetPosition::RightOfKind:
    case WidgetPosition::LeftOfKind: {
        const Glob* ref = pos.reference() ? pos.reference() : lastAdded_;
        if (!ref)
            return XY<int>(x, 0);
        int px = pos.kind() == WidgetPosition::RightOfKind ? ref->x_ + ref->w_ + x : ref->x_ - x - w;
        return XY<int>(px, aligned(ref->y_, ref->h_, h, pos.alignment()));
    }
    case WidgetPosition::CentreKind:
        return XY<int>((w_ - w) / 2 + x, (h_ - h) / 2 + y);
    case WidgetPosition::ScreenKind:
    case WidgetPosition::None:
        return XY<int>(x, y);
    }
    return XY<int>(x, y);
}

Glob* Glob::addChild(Glob* child, const WidgetPosition& pos, const WidgetSurround& surround) {
    if (!child || child == this)
        return child;
    if (child->parent_)
        child->parent_->detachChild(child, false);
    else
        GlobManager::instance().forget(child);
    XY<int> at = resolvePosition(pos, child->w_, child->h_);
    child->parent_ = this;
    child->x_ = at.x;
    child->y_ = at.y;
    child->anchors_ = anchorsFor(pos.kind());
    if (pos.kind() == WidgetPosition::RightOfKind || pos.kind() == WidgetPosition::LeftOfKind) {
        const Glob* ref = pos.reference() ? pos.reference() : lastAdded_;
        if (ref)
            child->anchors_ = (ref->anchors_ & AnchorTop) |
                              (pos.kind() == WidgetPosition::LeftOfKind ? (ref->anchors_ & AnchorRight)
                                                                        : (ref->anchors_ & AnchorRight));
    }
    children_.push_back(child);
    lastAdded_ = child;
    addToTabOrder(child);
    child->impl_->widget->setParent(impl_->widget);
    child->applyGeometry();
    child->impl_->widget->show();
    return child;
}

Glob* Glob::addWidgetRelative(Glob* child, const Glob* ref, int gap, int relativity,
                              const WidgetSurround& surround, int alignment) {
    if (!ref)
        ref = lastAdded_;
    if (relativity == 2 || relativity == 3 || !ref)
        return addChild(child, relativity == 3 ? LeftOf(gap, ref, alignment) : RightOf(gap, ref, alignment),
                        surround);
    addChild(child, BottomLeft(0, 0), surround);
    child->anchors_ = ref->anchors_;
    child->x_ = aligned(ref->x_, ref->w_, child->w_, alignment);
    child->y_ = relativity == 0 ? ref->y_ + ref->h_ + gap : ref->y_ - gap - child->h_;
    child->applyGeometry();
    return child;
}

bool Glob::detachChild(Glob* child, bool destroy) {
    auto it = std::find(children_.begin(), children_.end(), child);
    if (!child || it == children_.end())
        return false;
    children_.erase(it);
    removeFromTabOrder(child);
    if (lastAdded_ == child)
        lastAdded_ = children_.empty() ? nullptr : children_.back();
    child->parent_ = nullptr;
    if (destroy) {
        delete child;
    } else {
        child->impl_->widget->hide();
        child->impl_->widget->setParent(nullptr);
    }
    return true;
}

void Glob::resize(double w, double h) {
    int nw = std::max(minSize_.x, std::max(0, static_cast<int>(std::lround(w))));
    int nh = std::max(minSize_.y, std::max(0, static_cast<int>(std::lround(h))));
    if (nw == w_ && nh == h_)
        return;
    int ow = w_, oh = h_;
    w_ = nw;
    h_ = nh;
    if (parent_) {
        if (anchors_ & AnchorRight)
            x_ -= nw - ow;
        if (anchors_ & AnchorTop)
            y_ -= nh - oh;
    }
    applyGeometry();
    sizeChanged();
    reanchorChildren(ow, oh);
    markOutOfDate();
}

void Glob::reanchorChildren(int oldW, int oldH) {
    for (Glob* c : children_) {
        if (c->anchors_ & AnchorRight)
            c->x_ += w_ - oldW;
        if (c->anchors_ & AnchorTop)
            c->y_ += h_ - oldH;
        c->applyGeometry();
    }
}

void Glob::applyGeometry() {
    QWidget* w = impl_->widget;
    if (parent_) {
        w->setGeometry(x_, parent_->h_ - y_ - h_, w_, h_);
    } else {
        w->resize(w_, h_);
        w->move(x_, toolkit::screenHeight() - y_ - h_);
    }
    impl_->fitControl();
}

void Glob::setPos(int x, int y) {
    x_ = x;
    y_ = y;
    applyGeometry();
}

XY<int> Glob::getPosition() const {
    QPoint topLeft = impl_->widget->mapToGlobal(QPoint(0, 0));
    if (!parent_)
        topLeft = impl_->widget->pos();
    else
        topLeft = getRootParent(const_cast<Glob*>(this))->impl_->widget->pos() +
                  impl_->widget->mapTo(getRootParent(const_cast<Glob*>(this))->impl_->widget, QPoint(0, 0));
    return XY<int>(topLeft.x(), toolkit::screenHeight() - topLeft.y() - h_);
}

XY<int> Glob::screenXYToGlobXY(const XY<int>& s) const {
    XY<int> p = getPosition();
    return XY<int>(s.x - p.x, s.y - p.y);
}

Zk::Box<int> Glob::getUserArea() const {
    Zk::Box<int> b;
    b.x2 = w_;
    b.y2 = h_;
    return b;
}

void Glob::setMinSize(int w, int h) {
    minSize_ = XY<int>(std::max(0, w), std::max(0, h));
    if (w_ < minSize_.x || h_ < minSize_.y)
        resize(std::max(w_, minSize_.x), std::max(h_, minSize_.y));
}

void Glob::setActive(bool active, eRedrawFlag redraw) {
    active_ = active;
    impl_->widget->setEnabled(active);
    if (redraw == Redraw)
        update();
}

void Glob::setVisible(bool visible) {
    impl_->widget->setVisible(visible);
}
bool Glob::isVisible() const {
    return !impl_->widget->isHidden();
}

void Glob::setContextString(const UIString& text, const UIString& extra) {
    context_ = text;
    QString tip = toolkit::toQString(text.resolve());
    WString more = extra.resolve();
    if (!more.empty())
        tip += QStringLiteral("\n") + toolkit::toQString(more);
    impl_->widget->setToolTip(tip);
    if (impl_->control)
        impl_->control->setToolTip(tip);
}

void Glob::popToTop(bool activate) {
    QWidget* w = getRootParent(this)->impl_->widget;
    w->raise();
    if (activate)
        w->activateWindow();
}

void Glob::setInterest(int bits) {
    bool hadTimer = interests_ & TimerInterest;
    interests_ |= bits;
    if (!hadTimer && (interests_ & TimerInterest))
        GlobManager::instance().noteTimerInterest(this, true);
}

void Glob::clearInterest(int bits) {
    bool hadTimer = interests_ & TimerInterest;
    interests_ &= ~bits;
    if (hadTimer && !(interests_ & TimerInterest))
        GlobManager::instance().noteTimerInterest(this, false);
}

bool Glob::dispatchMouseEvent(const Event& e) {
    if (!active_)
        return false;
    if (handleMouseEvent(e))
        return true;
    if (auto* m = dynamic_cast<MenuGlob*>(this))
        return m->processRightMouseClicks(e);
    return false;
}

void Glob::makeCanvasCurrent() {
    Glib::setCurrentRenderer(&canvas_->renderer());
}

void Glob::setPalette(const Palette& p) {
    palette_ = p;
    update();
}

void Glob::drawBackground() {
    Zk::Box<int> all;
    all.x2 = w_;
    all.y2 = h_;
    Glib::drawRect(canvas_->renderer(), palette_.window(0), all);
    if (shadow_)
        Glib::drawFrame(canvas_->renderer(), palette_.window(-4), all, 1);
}

void Glob::drawNow() {
    if (Drawable::redrawsDisabled()) {
        markOutOfDate();
        return;
    }
    outOfDate_ = false;
    if (!canvas_->renderer().isReadyToRender())
        return;
    ++drawCount_;
    CanvasRenderer* previous = Glib::currentRenderer();
    makeCanvasCurrent();
    {
        // A repaint reaches the screen once, at its end, not primitive by primitive.
        Glib::UpdateDeferrer defer(canvas_.get(), 1);
        drawBackground();
    }
    canvas_->renderer().flush();
    Glib::setCurrentRenderer(previous);
}

void Glob::markOutOfDate() {
    outOfDate_ = true;
    impl_->widget->update();
}

bool Glob::saveSnapshot(const String& path) {
    processToolkitEvents();
    QWidget* w = impl_->widget;
    w->ensurePolished();
    QImage img(w->size(), QImage::Format_ARGB32);
    img.fill(Qt::transparent);
    w->render(&img, QPoint(), QRegion(), QWidget::DrawChildren);
    return img.save(QString::fromUtf8(path.c_str()), "PNG");
}

void Glob::dump(configb& c) {
    c.set("TYPE", idstring());
    c.set("X", x_);
    c.set("Y", y_);
    c.set("W", w_);
    c.set("H", h_);
}

void Glob::load(const configb& c) {
    int x = x_, y = y_, w = w_, h = h_;
    c.in("X", x);
    c.in("Y", y);
    c.in("W", w);
    c.in("H", h);
    setPos(x, y);
    resize(w, h);
}
