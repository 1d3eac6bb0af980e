// TextBox: a QLabel for shown text, a QLineEdit for edited text.
#include "host/TextBox.h"

#include <QFontMetrics>
#include <QLabel>
#include <QLineEdit>
#include <algorithm>

#include "host/GlibFonts.h"
#include "host/LightweightString.h"
#include "host/UifStd.h"
#include "refhost/toolkit/GlobImpl.h"

TextBox::TextBox(const InitArgs& args)
    : Glob(args), text_(args.text.resolve()), callback_(args.callback), editable_(args.editable) {
    Glib::FontUser::setFont(args.font.size > 0 ? args.font : Glib::getDefaultFont());
    QWidget* c;
    if (editable_) {
        auto* e = new QLineEdit(toolkit::toQString(text_), impl().widget);
        QObject::connect(e, &QLineEdit::editingFinished,
                         [this, e] { userEdited(toolkit::fromQString(e->text())); });
        c = e;
    } else {
        auto* l = new QLabel(toolkit::toQString(text_), impl().widget);
        l->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        c = l;
    }
    impl().control = c;
    QPalette qp = c->palette();
    qp.setColor(QPalette::WindowText, toolkit::toQColor(getPalette().text(0)));
    qp.setColor(QPalette::Text, toolkit::toQColor(getPalette().text(0)));
    qp.setColor(QPalette::Base, toolkit::toQColor(getPalette().window(-2)));
    c->setPalette(qp);
    c->setFont(toolkit::toQFont(getFont()));
    XY<int> n = naturalSize();
    resize(args.width > 0 ? args.width : n.x, args.height > 0 ? args.height : n.y);
}

void TextBox::setText(const WString& text) {
    text_ = text;
    if (auto* l = dynamic_cast<QLabel*>(impl().control))
        l->setText(toolkit::toQString(text));
    else if (auto* e = dynamic_cast<QLineEdit*>(impl().control))
        e->setText(toolkit::toQString(text));
}

void TextBox::setFont(const FontDesc& f) {
    Glib::FontUser::setFont(f);
    impl().control->setFont(toolkit::toQFont(f));
}

void TextBox::userEdited(const WString& text) {
    if (text == text_)
        return;
    text_ = text;
    WidgetCallback cb = callback_.empty() ? WidgetCallback(textChangedMsg) : callback_;
    cb.fire(this, toUtf8(text), nullptr);
}

XY<int> TextBox::naturalSize() const {
    int w = Glib::textWidth(text_, getFont()) + (editable_ ? 12 : 4);
    return XY<int>(std::max(editable_ ? 60 : 1, w), UifStd::getRowHeight());
}
