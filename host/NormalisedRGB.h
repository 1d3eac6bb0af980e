// NormalisedRGB: a colour as it goes to the canvas, four components from 0 to 1.
#pragma once

// The renderer's colour form; alpha 1 is opaque.
struct NormalisedRGB {
    double r = 0.0;
    double g = 0.0;
    double b = 0.0;
    double a = 1.0;

    bool operator==(const NormalisedRGB& o) const { return r == o.r && g == o.g && b == o.b && a == o.a; }
};
