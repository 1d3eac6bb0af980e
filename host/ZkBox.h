// Zk::Box: a rectangle in a space whose y grows upward; (x1, y1) bottom left, (x2, y2) top right.
#pragma once

namespace Zk {

struct BottomUpTraits {};

template <class T, class Traits = BottomUpTraits>
struct Box {
    T x1 = T();
    T y1 = T();
    T x2 = T();
    T y2 = T();

    T width() const { return x2 - x1; }
    T height() const { return y2 - y1; }
    bool contains(T x, T y) const { return x >= x1 && x <= x2 && y >= y1 && y <= y2; }
    bool operator==(const Box& o) const { return x1 == o.x1 && y1 == o.y1 && x2 == o.x2 && y2 == o.y2; }
};

} // namespace Zk
