// Palette: the set of shades a widget draws with, derived from one base colour.
#pragma once

#include "host/Colour.h"

// window(0) is the base colour; positive shades are lighter, negative darker, each step 12%.
// text(0) is the normal text colour for that window; text(1) is a greyed text, text(2) a
// secondary (dimmer) text.
class Palette {
public:
    Palette();
    explicit Palette(const Colour& base);

    Colour window(int shade = 0) const;
    Colour text(int kind = 0) const;
    void setText(const Colour& c) { text_ = c; }
    const Colour& base() const { return base_; }

private:
    Colour base_;
    Colour text_;
};
