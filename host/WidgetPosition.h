// WidgetPosition: where a widget goes, told relative to its parent, its user area or a sibling.
#pragma once

#include "host/XY.h"

class Glob;

// Kinds and the corner they place. All offsets are in pixels, positive inwards.
//   TopLeft / TopRight / BottomLeft / BottomRight: that corner of the child, offset from the
//   same corner of the parent. User...: the same within the parent's user area.
//   RightOf / LeftOf: beside a sibling (null: the widget added last) with a gap, aligned by
//   alignment: 0 centres, 1 levels the bottoms, 2 levels the tops.
//   Centre (kind 17): a root widget goes where the window system puts a new window, centred
//   on the screen; for a child, the centre of the parent offset by (x, y).
//   Screen: a root widget's bottom-left corner on the screen.
class WidgetPosition {
public:
    enum Kind {
        None = 0,
        TopLeftKind = 1,
        TopRightKind = 2,
        BottomLeftKind = 3,
        BottomRightKind = 4,
        UserTopLeftKind = 5,
        UserTopRightKind = 6,
        UserBottomLeftKind = 7,
        UserBottomRightKind = 8,
        RightOfKind = 9,
        LeftOfKind = 10,
        ScreenKind = 11,
        CentreKind = 17,
    };

    WidgetPosition() = default;
    WidgetPosition(Kind kind, int x, int y, const Glob* ref = nullptr, int alignment = 0)
        : kind_(kind), x_(x), y_(y), ref_(ref), alignment_(alignment) {}

    Kind kind() const { return kind_; }
    int x() const { return x_; }
    int y() const { return y_; }
    const Glob* reference() const { return ref_; }
    int alignment() const { return alignment_; }

private:
    Kind kind_ = None;
    int x_ = 0;
    int y_ = 0;
    const Glob* ref_ = nullptr;
    int alignment_ = 0;
};
