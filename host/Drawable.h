// Drawable: repaint control of a widget and the process-wide redraw bracket.
#pragma once

// draw() repaints at once, update() soon. While redraws are disabled both only note that the
// widget is out of date; the last enableRedraws brings every such widget up to date.
class Drawable {
public:
    virtual ~Drawable() = default;

    void draw();
    void update();

    static void disableRedraws();
    static void enableRedraws();
    static bool redrawsDisabled();

protected:
    virtual void drawNow() = 0;
    virtual void markOutOfDate() = 0;
};
