// Glib::RecordedPrimitive: a primitive as a recording canvas kept it, with the state it met.
#pragma once

#include <variant>

#include "host/BezierCurveDescription.h"
#include "host/EllipseDescription.h"
#include "host/ImageDescription.h"
#include "host/RectDescription.h"
#include "host/TextDescription.h"
#include "host/XY.h"

namespace Glib {

struct RecordedPrimitive {
    std::variant<RectDescription, BezierCurveDescription, EllipseDescription, TextDescription,
                 ImageDescription>
        primitive;
    Zk::Box<int> clip;
    XY<int> translation;
    double translucency = 1.0;

    template <class D>
    const D* as() const {
        return std::get_if<D>(&primitive);
    }
};

} // namespace Glib
