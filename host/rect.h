// rect: a widget's rectangle, its position in its parent's frame (y upward) and its size.
#pragma once

// x, y is the bottom-left corner in the parent's frame, or on the screen for a root widget.
class rect {
public:
    virtual ~rect() = default;
    int getX() const { return x_; }
    int getY() const { return y_; }
    int width() const { return w_; }
    int height() const { return h_; }

protected:
    int x_ = 0;
    int y_ = 0;
    int w_ = 0;
    int h_ = 0;
};
