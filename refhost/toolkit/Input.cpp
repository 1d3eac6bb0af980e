// Pointer and keyboard: event tests, click state, pointer position, key state and the clock.
#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <chrono>
#include <cstdlib>
#include <set>

#include "host/Event.h"
#include "host/OSServices.h"
#include "host/ToolkitApp.h"
#include "refhost/toolkit/GlobImpl.h"
#include "refhost/toolkit/KeyState.h"

namespace {

std::set<int>& keysDown() {
    static std::set<int> k;
    return k;
}
Qt::KeyboardModifiers lastMods;
bool havePointer = false;
QPoint lastPointer;

} // namespace

void toolkit::noteKey(int qtKey, bool down, Qt::KeyboardModifiers mods) {
    if (down)
        keysDown().insert(qtKey);
    else
        keysDown().erase(qtKey);
    lastMods = mods;
    // A key event reports the modifiers before the key itself changed.
    Qt::KeyboardModifier own = qtKey == Qt::Key_Control ? Qt::ControlModifier
                               : qtKey == Qt::Key_Shift ? Qt::ShiftModifier
                               : qtKey == Qt::Key_Alt   ? Qt::AltModifier
                                                        : Qt::NoModifier;
    if (own != Qt::NoModifier)
        lastMods.setFlag(own, down);
}

void toolkit::noteModifiers(Qt::KeyboardModifiers mods) {
    lastMods = mods;
    if (!mods.testFlag(Qt::ControlModifier))
        keysDown().erase(Qt::Key_Control);
    if (!mods.testFlag(Qt::ShiftModifier))
        keysDown().erase(Qt::Key_Shift);
    if (!mods.testFlag(Qt::AltModifier))
        keysDown().erase(Qt::Key_Alt);
}

bool toolkit::keyDown(int qtKey) {
    return keysDown().count(qtKey) > 0;
}
Qt::KeyboardModifiers toolkit::modifiers() {
    return lastMods;
}

unsigned toolkit::clickBits(Qt::KeyboardModifiers mods, Qt::MouseButtons buttons) {
    unsigned b = 0;
    if (mods & Qt::ShiftModifier)
        b |= ClickShift;
    if (mods & Qt::ControlModifier)
        b |= ClickControl;
    if (mods & Qt::AltModifier)
        b |= ClickAlt;
    if (buttons & Qt::LeftButton)
        b |= ClickLeftButton;
    if (buttons & Qt::RightButton)
        b |= ClickRightButton;
    if (buttons & Qt::MiddleButton)
        b |= ClickMiddleButton;
    return b;
}

void toolkit::notePointer(const QPoint& global) {
    havePointer = true;
    lastPointer = global;
}

int toolkit::screenHeight() {
    QScreen* s = QGuiApplication::primaryScreen();
    return s ? s->geometry().height() : 1080;
}

bool mouse_left_event(const Event& e) {
    return e.button() == Event::Left;
}
bool mouse_right_event(const Event& e) {
    return e.button() == Event::Right;
}
bool mouse_middle_event(const Event& e) {
    return e.button() == Event::Middle;
}
bool mouse_down_event(const Event& e) {
    return e.action() == Event::Down;
}
bool mouse_up_event(const Event& e) {
    return e.action() == Event::Up;
}
bool mouse_move_event(const Event& e) {
    return e.action() == Event::Move;
}

int mouseClickTolerance() {
    return 3;
}

bool isMouseMoveSignificant(const Event& e) {
    XY<int> d = e.distance();
    return std::abs(d.x) > mouseClickTolerance() || std::abs(d.y) > mouseClickTolerance();
}

unsigned getMouseClickState() {
    ensureToolkitApplication();
    return toolkit::clickBits(toolkit::modifiers(), QGuiApplication::mouseButtons());
}

XY<int> glib_getMousePos() {
    ensureToolkitApplication();
    QPoint p = havePointer ? lastPointer : QCursor::pos();
    return XY<int>(p.x(), toolkit::screenHeight() - 1 - p.y());
}

int mouse_get_current_x() {
    return glib_getMousePos().x;
}
int mouse_get_current_y() {
    return glib_getMousePos().y;
}

bool OSServices::isKeyDown(int keyCode) const {
    Qt::KeyboardModifiers m = toolkit::modifiers();
    switch (keyCode) {
    case KeyTreeMove:
    case KeyControl:
        return m.testFlag(Qt::ControlModifier) || toolkit::keyDown(Qt::Key_Control);
    case KeyShift:
        return m.testFlag(Qt::ShiftModifier) || toolkit::keyDown(Qt::Key_Shift);
    case KeyAlt:
        return m.testFlag(Qt::AltModifier) || toolkit::keyDown(Qt::Key_Alt);
    default:
        return toolkit::keyDown(keyCode);
    }
}

OSServices& OS() {
    static OSServices os;
    return os;
}

double msecsNow() {
    using namespace std::chrono;
    return duration<double, std::milli>(steady_clock::now().time_since_epoch()).count();
}
