// PointerDriver: drives a widget with Qt mouse and key events, as the window system delivers
// them, so that a test goes through the toolkit's own translation into Events. Points are in the
// widget's pixels with y upward, as the widget's handlers see them.
#pragma once

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWidget>

#include "host/Glob.h"
#include "refhost/toolkit/GlobImpl.h"

class PointerDriver {
public:
    explicit PointerDriver(Glob& g) : glob_(g) {}

    void press(const XY<int>& p, Qt::MouseButton b = Qt::LeftButton, Qt::KeyboardModifiers m = {}) {
        held_ |= b;
        send(QEvent::MouseButtonPress, p, b, m);
    }
    void move(const XY<int>& p, Qt::KeyboardModifiers m = {}) { send(QEvent::MouseMove, p, Qt::NoButton, m); }
    void release(const XY<int>& p, Qt::MouseButton b = Qt::LeftButton, Qt::KeyboardModifiers m = {}) {
        held_ &= ~Qt::MouseButtons(b);
        send(QEvent::MouseButtonRelease, p, b, m);
    }
    void click(const XY<int>& p, Qt::KeyboardModifiers m = {}) {
        press(p, Qt::LeftButton, m);
        release(p, Qt::LeftButton, m);
    }
    // A key going down or up, as the keyboard reports it.
    void key(int qtKey, bool down, Qt::KeyboardModifiers m = {}) {
        QKeyEvent e(down ? QEvent::KeyPress : QEvent::KeyRelease, qtKey, m);
        QApplication::sendEvent(widget(), &e);
    }
    // Places the pointer without an event: what a timer round sees.
    void pointAt(const XY<int>& p) { toolkit::notePointer(global(p)); }
    QWidget* widget() const { return glob_.impl().widget; }

private:
    QPoint local(const XY<int>& p) const { return QPoint(p.x, glob_.height() - 1 - p.y); }
    // The widget's frame on the screen, as Glob::getPosition reads it.
    QPoint global(const XY<int>& p) const { return widget()->pos() + local(p); }
    void send(QEvent::Type type, const XY<int>& p, Qt::MouseButton b, Qt::KeyboardModifiers m) {
        const QPointF l(local(p)), g(global(p));
        QMouseEvent e(type, l, g, b, held_, m);
        QApplication::sendEvent(widget(), &e);
    }

    Glob& glob_;
    Qt::MouseButtons held_;
};
