// Glib::StateSaver: keeps the drawing state (current canvas, its clip and translation) for a scope.
#pragma once

#include "host/XY.h"
#include "host/ZkBox.h"

class CanvasRenderer;
class Glob;

namespace Glib {

// Whatever the scope makes current or changes, the state at construction is back at its end.
class StateSaver {
public:
    explicit StateSaver(int flags = 1);
    ~StateSaver();
    StateSaver(const StateSaver&) = delete;
    StateSaver& operator=(const StateSaver&) = delete;

private:
    CanvasRenderer* renderer_;
    const Glob* owner_ = nullptr;
    Zk::Box<int> clip_;
    XY<int> translation_;
    double translucency_ = 1.0;
};

} // namespace Glib
