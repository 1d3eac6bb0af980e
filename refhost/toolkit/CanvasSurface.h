// Canvas::Surface: the backing image of a canvas.
#pragma once

#include <QImage>

#include "host/Canvas.h"

struct Canvas::Surface {
    QImage image;
    // The copy Canvas::keepSurface put aside; null when there is none.
    QImage kept;
};
