// ScrollBar: a scroll bar whose thumb stands for a part of a larger range.
#pragma once

#include "host/Glob.h"

// Thumb position and size are fractions of the bar's length (0..1), position measured from the
// left or top. The buttons and thumb only send messages to the parent (or the callback target);
// the owner moves the thumb. Dragging the thumb with Shift held stretches it from its nearer end:
// a thumb-stretched message follows and the thumb size has changed.
class ScrollBar : public Glob {
public:
    static constexpr const char* leftButtonPressedMsg = "ScrollBarLeft";
    static constexpr const char* rightButtonPressedMsg = "ScrollBarRight";
    static constexpr const char* upButtonPressedMsg = "ScrollBarUp";
    static constexpr const char* downButtonPressedMsg = "ScrollBarDown";
    static constexpr const char* thumbMovedMsg = "ScrollBarThumbMoved";
    static constexpr const char* thumbStretchedMsg = "ScrollBarThumbStretched";

    enum eOrientation { Horizontal = 0, Vertical = 1 };
    struct InitArgs : GlobCreationInfo {
        InitArgs(int w, int h, int orient) : GlobCreationInfo(w, h), orientation(orient) {}
        int orientation = Horizontal;
        bool stretchable = true;
    };

    explicit ScrollBar(const InitArgs& args);
    const char* idstring() const override { return "ScrollBar"; }

    // Each returns whether the value changed; values are clamped to 0..1.
    bool setThumbPos(double pos);
    bool setThumbSize(double size);
    double getThumbPos() const { return pos_; }
    double getThumbSize() const { return size_; }
    void redrawThumb();
    int orientation() const { return orientation_; }
    void setStretchable(bool b) { stretchable_ = b; }
    bool isStretchable() const { return stretchable_; }
    // Whether the user is holding the thumb (dragging or stretching it).
    bool isHeld() const { return held_; }
    static int thickness();

    // What the user's actions do; the Qt control calls these.
    void userPressedButton(bool towardsStart);
    void userMovedThumb(double pos);
    void userStretchedThumb(double size);
    void setHeld(bool held) { held_ = held; }

private:
    void syncControl();
    void notifyParent(const char* msg);

    int orientation_;
    double pos_ = 0.0;
    double size_ = 1.0;
    bool stretchable_;
    bool held_ = false;
};
