// XY: the host's point-or-size pair, in pixels (int) or graph and view units (double).
#pragma once

template <class T>
class XY {
public:
    XY() : x(T()), y(T()) {}
    XY(T x_, T y_) : x(x_), y(y_) {}
    XY(const XY&) = default;
    XY& operator=(const XY&) = default;
    virtual ~XY() = default;

    bool operator==(const XY& o) const { return x == o.x && y == o.y; }
    bool operator!=(const XY& o) const { return !(*this == o); }

    T x;
    T y;
};
