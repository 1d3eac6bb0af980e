// GlobImpl: the Qt side of a Glob: its widget and the conversions between the two frames.
#pragma once

#include <QFontMetrics>
#include <QImage>
#include <QPoint>
#include <QWidget>

#include "host/Colour.h"
#include "host/Event.h"
#include "host/FontDesc.h"
#include "host/LightweightString.h"

class Glob;

// The QWidget behind a Glob. Paints the Glob's canvas and hands pointer events to it.
class GlobWidget : public QWidget {
public:
    GlobWidget(Glob& owner, QWidget* parent);
    Glob& owner() const { return owner_; }

protected:
    void paintEvent(QPaintEvent* e) override;
    void mousePressEvent(QMouseEvent* e) override;
    void mouseReleaseEvent(QMouseEvent* e) override;
    void mouseMoveEvent(QMouseEvent* e) override;
    void wheelEvent(QWheelEvent* e) override;
    void closeEvent(QCloseEvent* e) override;

private:
    Event makeEvent(QMouseEvent* e, Event::Action action);
    Glob& owner_;
    XY<int> press_;
};

struct GlobImpl {
    GlobWidget* widget = nullptr;
    // A Qt control filling the widget, for the stock widgets.
    QWidget* control = nullptr;

    // Resizes the control with the widget.
    void fitControl();
};

namespace toolkit {

// Qt's modifier and button state as click-state bits.
unsigned clickBits(Qt::KeyboardModifiers mods, Qt::MouseButtons buttons);
// Notes the pointer's last screen position (Qt's frame).
void notePointer(const QPoint& global);
QString toQString(const WString& s);
WString fromQString(const QString& s);
QColor toQColor(const Colour& c);
QFont toQFont(const FontDesc& f);
// The metrics of a font, made once per description.
const QFontMetrics& fontMetrics(const FontDesc& f);
// The screen's height, for turning Qt's downward y into the host's upward y.
int screenHeight();

} // namespace toolkit
