// Push, image and check buttons and the drop-down menu button, on Qt's controls.
#include <QCheckBox>
#include <QComboBox>
#include <QFontMetrics>
#include <QIcon>
#include <QPushButton>
#include <QToolButton>
#include <algorithm>

#include "host/Checkbox.h"
#include "host/DropDownMenuButton.h"
#include "host/EventMsgData.h"
#include "host/GlibFonts.h"
#include "host/ImageButton.h"
#include "host/MenuData.h"
#include "host/PushButton.h"
#include "host/UifStd.h"
#include "refhost/toolkit/GlobImpl.h"

namespace {

void styleControl(QWidget* c, const Palette& p) {
    QPalette qp = c->palette();
    qp.setColor(QPalette::Button, toolkit::toQColor(p.window(1)));
    qp.setColor(QPalette::Window, toolkit::toQColor(p.window(0)));
    qp.setColor(QPalette::Base, toolkit::toQColor(p.window(-2)));
    qp.setColor(QPalette::ButtonText, toolkit::toQColor(p.text(0)));
    qp.setColor(QPalette::WindowText, toolkit::toQColor(p.text(0)));
    qp.setColor(QPalette::Text, toolkit::toQColor(p.text(0)));
    c->setPalette(qp);
    c->setFont(toolkit::toQFont(Glib::getDefaultFont()));
}

// Sizes a widget made with a width or height of 0 from its control's natural size.
void naturalSize(Glob& g, const GlobCreationInfo& info, int minW, int minH) {
    QSize hint = g.impl().control->sizeHint();
    int w = info.width > 0 ? info.width : std::max(minW, hint.width());
    int h = info.height > 0 ? info.height : std::max(minH, hint.height());
    g.resize(w, h);
}

} // namespace

Button::Button(const InitArgs& args) : Button(args, 0) {}

Button::Button(const InitArgs& args, int kind) : Glob(args), label_(args.label), callback_(args.callback) {
    QWidget* w = impl().widget;
    QAbstractButton* b = kind == 1 ? static_cast<QAbstractButton*>(new QToolButton(w)) : new QPushButton(w);
    impl().control = b;
    styleControl(b, getPalette());
    b->setText(toolkit::toQString(label_.resolve()));
    b->setFocusPolicy(Qt::TabFocus);
    QObject::connect(b, &QAbstractButton::clicked, [this] { click(); });
    if (kind == 0)
        naturalSize(*this, args, 0, UifStd::getRowHeight());
}

void Button::setLabel(const UIString& label) {
    label_ = label;
    static_cast<QAbstractButton*>(impl().control)->setText(toolkit::toQString(label.resolve()));
}

bool Button::click() {
    if (!isActive())
        return false;
    callback_.fire(this, toUtf8(label_.resolve()), nullptr);
    return true;
}

PushButton::PushButton(const InitArgs& args) : Button(args) {}

int PushButton::calcHeight() {
    return UifStd::getRowHeight() + 2;
}

ImageButton::ImageButton(const InitArgs& args) : Button(args, 1), iconPath_(args.iconPath) {
    auto* b = static_cast<QToolButton*>(impl().control);
    QIcon icon(QString::fromUtf8(iconPath_.c_str()));
    hasIcon_ = !iconPath_.empty() && !icon.pixmap(16, 16).isNull();
    if (hasIcon_) {
        b->setIcon(icon);
        b->setText(QString());
        b->setToolButtonStyle(Qt::ToolButtonIconOnly);
    }
    int side = UifStd::getRowHeight();
    resize(args.width > 0 ? args.width : side, args.height > 0 ? args.height : side);
    b->setIconSize(QSize(std::max(8, width() - 6), std::max(8, height() - 6)));
}

Checkbox::Checkbox(const InitArgs& args)
    : Glob(args), label_(args.label), callback_(args.callback), value_(args.value) {
    auto* c = new QCheckBox(toolkit::toQString(label_.resolve()), impl().widget);
    impl().control = c;
    styleControl(c, getPalette());
    c->setChecked(value_);
    QObject::connect(c, &QCheckBox::toggled, [this](bool on) {
        if (on != value_)
            userChanged(on);
    });
    resize(args.width > 0 ? args.width : calcWidth(label_, 0, FontDesc()),
           args.height > 0 ? args.height : UifStd::getRowHeight());
}

void Checkbox::setValue(bool v) {
    value_ = v;
    auto* c = static_cast<QCheckBox*>(impl().control);
    QSignalBlocker block(c);
    c->setChecked(v);
}

bool Checkbox::click() {
    if (!isActive())
        return false;
    static_cast<QCheckBox*>(impl().control)->setChecked(!value_);
    return true;
}

void Checkbox::userChanged(bool v) {
    value_ = v;
    LightweightString<char> msg =
        callback_.message().empty() ? LightweightString<char>(checkboxMsg) : callback_.message() + " ";
    msg += v ? "1" : "0";
    WidgetCallback cb = callback_;
    if (!cb.empty())
        cb.setMessage(msg);
    else
        cb = WidgetCallback(msg);
    cb.fire(this, msg, nullptr);
}

int Checkbox::calcWidth(const UIString& label, int, const FontDesc& font) {
    FontDesc f = font.size > 0 ? font : Glib::getDefaultFont();
    return UifStd::getRowHeight() + UifStd::getWidgetGap() + Glib::textWidth(label.resolve(), f) + 4;
}

DropDownMenuButton::DropDownMenuButton(const InitArgs& args)
    : Glob(args), items_(args.items), callback_(args.callback) {
    auto* c = new QComboBox(impl().widget);
    impl().control = c;
    styleControl(c, getPalette());
    for (const UIString& s : items_)
        c->addItem(toolkit::toQString(s.resolve()));
    c->setCurrentIndex(items_.empty() ? -1 : 0);
    QObject::connect(c, QOverload<int>::of(&QComboBox::activated), [this](int i) {
        if (i >= 0)
            choose(static_cast<unsigned short>(i));
    });
    naturalSize(*this, args, 0, UifStd::getRowHeight());
}

bool DropDownMenuButton::setSelectedItem(MenuItemIndex i) {
    if (i.index >= items_.size())
        return false;
    selected_ = i;
    auto* c = static_cast<QComboBox*>(impl().control);
    QSignalBlocker block(c);
    c->setCurrentIndex(i.index);
    return true;
}

void DropDownMenuButton::choose(unsigned short index) {
    if (!setSelectedItem(MenuItemIndex(index)))
        return;
    Zk::Ptr<iObject> data(new MenuData::Change(items_[index].resolve(), index));
    WidgetCallback cb = callback_.empty() ? WidgetCallback(dropDownMenuButtonMsg) : callback_;
    cb.fire(this, toUtf8(items_[index].resolve()), data);
}
