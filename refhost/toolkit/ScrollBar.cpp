// ScrollBar on QScrollBar: the owner moves the thumb; the bar reports what the user does.
#include "host/ScrollBar.h"

#include <QMouseEvent>
#include <QScrollBar>
#include <algorithm>
#include <cmath>

#include "refhost/toolkit/GlobImpl.h"

namespace {

constexpr int Steps = 10000;

// Shift-drag on the bar stretches the thumb from the end nearer the press.
class StretchFilter : public QObject {
public:
    StretchFilter(ScrollBar& bar, QScrollBar* control) : QObject(control), bar_(bar), control_(control) {}

    bool eventFilter(QObject*, QEvent* e) override {
        if (e->type() != QEvent::MouseButtonPress && e->type() != QEvent::MouseMove &&
            e->type() != QEvent::MouseButtonRelease)
            return false;
        auto* m = static_cast<QMouseEvent*>(e);
        double along = bar_.orientation() == ScrollBar::Horizontal ? m->position().x() : m->position().y();
        double length = bar_.orientation() == ScrollBar::Horizontal ? control_->width() : control_->height();
        if (length <= 0)
            return false;
        double at = along / length;
        if (e->type() == QEvent::MouseButtonPress) {
            if (!bar_.isStretchable() || !(m->modifiers() & Qt::ShiftModifier) ||
                m->button() != Qt::LeftButton)
                return false;
            stretching_ = true;
            fromEnd_ = at > bar_.getThumbPos() + bar_.getThumbSize() / 2;
            last_ = at;
            bar_.setHeld(true);
            return true;
        }
        if (!stretching_)
            return false;
        if (e->type() == QEvent::MouseButtonRelease) {
            stretching_ = false;
            bar_.setHeld(false);
            return true;
        }
        double d = at - last_;
        last_ = at;
        if (fromEnd_) {
            bar_.userStretchedThumb(bar_.getThumbSize() + d);
        } else {
            double end = bar_.getThumbPos() + bar_.getThumbSize();
            double pos = std::clamp(bar_.getThumbPos() + d, 0.0, std::max(0.0, end - 0.01));
            bar_.setThumbPos(pos);
            bar_.userStretchedThumb(end - pos);
        }
        return true;
    }

private:
    ScrollBar& bar_;
    QScrollBar* control_;
    bool stretching_ = false;
    bool fromEnd_ = true;
    double last_ = 0.0;
};

} // namespace

ScrollBar::ScrollBar(const InitArgs& args)
    : Glob(args), orientation_(args.orientation), stretchable_(args.stretchable) {
    auto* s = new QScrollBar(orientation_ == Horizontal ? Qt::Horizontal : Qt::Vertical, impl().widget);
    impl().control = s;
    s->setRange(0, 0);
    s->setSingleStep(0);
    s->installEventFilter(new StretchFilter(*this, s));
    QObject::connect(s, &QScrollBar::actionTriggered, [this, s](int action) {
        switch (action) {
        case QAbstractSlider::SliderSingleStepSub:
        case QAbstractSlider::SliderPageStepSub:
            userPressedButton(true);
            break;
        case QAbstractSlider::SliderSingleStepAdd:
        case QAbstractSlider::SliderPageStepAdd:
            userPressedButton(false);
            break;
        case QAbstractSlider::SliderMove:
            userMovedThumb(static_cast<double>(s->sliderPosition()) / Steps);
            return;
        default:
            return;
        }
        s->setSliderPosition(static_cast<int>(std::lround(pos_ * Steps)));
    });
    QObject::connect(s, &QScrollBar::sliderPressed, [this] { held_ = true; });
    QObject::connect(s, &QScrollBar::sliderReleased, [this] { held_ = false; });
    int t = thickness();
    resize(args.width > 0 ? args.width : (orientation_ == Horizontal ? 100 : t),
           args.height > 0 ? args.height : (orientation_ == Horizontal ? t : 100));
    syncControl();
}

int ScrollBar::thickness() {
    return 14;
}

bool ScrollBar::setThumbPos(double pos) {
    pos = std::clamp(pos, 0.0, 1.0);
    if (pos == pos_)
        return false;
    pos_ = pos;
    syncControl();
    return true;
}

bool ScrollBar::setThumbSize(double size) {
    size = std::clamp(size, 0.0, 1.0);
    if (size == size_)
        return false;
    size_ = size;
    syncControl();
    return true;
}

void ScrollBar::redrawThumb() {
    impl().control->update();
}

void ScrollBar::syncControl() {
    auto* s = static_cast<QScrollBar*>(impl().control);
    QSignalBlocker block(s);
    int page = std::max(1, static_cast<int>(std::lround(size_ * Steps)));
    s->setPageStep(page);
    s->setRange(0, std::max(0, Steps - page));
    s->setValue(std::clamp(static_cast<int>(std::lround(pos_ * Steps)), 0, s->maximum()));
}

void ScrollBar::notifyParent(const char* msg) {
    if (parent())
        parent()->handleMessageEvent(msg, this);
}

void ScrollBar::userPressedButton(bool towardsStart) {
    if (orientation_ == Horizontal)
        notifyParent(towardsStart ? leftButtonPressedMsg : rightButtonPressedMsg);
    else
        notifyParent(towardsStart ? upButtonPressedMsg : downButtonPressedMsg);
}

void ScrollBar::userMovedThumb(double pos) {
    pos_ = std::clamp(pos, 0.0, 1.0);
    notifyParent(thumbMovedMsg);
}

void ScrollBar::userStretchedThumb(double size) {
    // At least 0.01 long, unless the thumb already stands closer than that to the end.
    const double room = 1.0 - pos_;
    size_ = std::clamp(size, std::min(0.01, room), room);
    syncControl();
    notifyParent(thumbStretchedMsg);
}
