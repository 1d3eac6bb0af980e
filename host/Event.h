// Event: one pointer event as a widget receives it, in the widget's pixels with y upward.
#pragma once

#include "host/XY.h"

// A mouse event. pos is in the receiving widget's frame, origin at its bottom-left pixel; press
// is where the button went down for the gesture this event belongs to.
class Event {
public:
    enum Button { NoButton = 0, Left = 1, Right = 2, Middle = 3 };
    enum Action { Down = 1, Up = 2, Move = 3, Wheel = 4 };

    Event() = default;
    Event(Action action, Button button, const XY<int>& pos, const XY<int>& press, unsigned modifiers = 0)
        : action_(action), button_(button), pos_(pos), press_(press), modifiers_(modifiers) {}

    XY<int> pos() const { return pos_; }
    XY<int> pressPos() const { return press_; }
    // Offset of this event from the press of its gesture.
    XY<int> distance() const { return XY<int>(pos_.x - press_.x, pos_.y - press_.y); }
    Action action() const { return action_; }
    Button button() const { return button_; }
    // The click-state bits (see getMouseClickState) held when the event happened.
    unsigned modifiers() const { return modifiers_; }
    int wheelSteps() const { return wheel_; }
    void setWheelSteps(int steps) { wheel_ = steps; }

private:
    Action action_ = Move;
    Button button_ = NoButton;
    XY<int> pos_;
    XY<int> press_;
    unsigned modifiers_ = 0;
    int wheel_ = 0;
};

// A move with the left button held is both a left event and a move event.
bool mouse_left_event(const Event& e);
bool mouse_right_event(const Event& e);
bool mouse_middle_event(const Event& e);
bool mouse_down_event(const Event& e);
bool mouse_up_event(const Event& e);
bool mouse_move_event(const Event& e);

// The click tolerance, in pixels: a gesture that moved less is a click.
int mouseClickTolerance();
// Whether the pointer moved beyond the click tolerance since the press.
bool isMouseMoveSignificant(const Event& e);

// Bits of getMouseClickState: shift 0x1, control 0x2, alt 0x4, left button 0x10, right
// button 0x20, middle button 0x40.
enum MouseClickBits : unsigned {
    ClickShift = 0x1,
    ClickControl = 0x2,
    ClickAlt = 0x4,
    ClickLeftButton = 0x10,
    ClickRightButton = 0x20,
    ClickMiddleButton = 0x40,
};
unsigned getMouseClickState();

// The pointer in screen pixels, y upward from the bottom row of the primary screen.
XY<int> glib_getMousePos();
int mouse_get_current_x();
int mouse_get_current_y();
