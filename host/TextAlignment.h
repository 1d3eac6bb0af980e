// TextAlignment: where a line of text stands in its box. Horizontally 1 is the right end, 2 the
// middle, anything else the left end; vertically the line is centred.
#pragma once

struct TextAlignment {
    int horizontal = 0;
    int vertical = 0;

    TextAlignment() = default;
    explicit TextAlignment(int h, int v = 0) : horizontal(h), vertical(v) {}
};
