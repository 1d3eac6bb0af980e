// Colour: the user interface's colour, three components from 0 to 1 and an opacity flag.
#pragma once

#include "host/NormalisedRGB.h"

// A widget or drawing colour. Components are kept clamped to 0..1.
class Colour {
public:
    Colour() = default;
    // translucent: the colour is drawn at half opacity.
    Colour(double r, double g, double b, bool translucent = false);

    double red() const { return r_; }
    double green() const { return g_; }
    double blue() const { return b_; }
    bool translucent() const { return translucent_; }
    bool operator==(const Colour& o) const;
    bool operator!=(const Colour& o) const { return !(*this == o); }

private:
    double r_ = 0.0;
    double g_ = 0.0;
    double b_ = 0.0;
    bool translucent_ = false;
};

using UifColour = Colour;

// The colour with each component multiplied by factor, clamped to 0..1.
Colour scale(const Colour& c, double factor);
NormalisedRGB fromColour(const Colour& c);
