// Glib::UpdateDeferrer: holds back screen updates of a canvas for a scope, then sends them once.
#pragma once

class Canvas;
class Glob;

namespace Glib {

// Nests; the outermost one sends the changed areas. A null canvas makes it do nothing.
class UpdateDeferrer {
public:
    explicit UpdateDeferrer(Canvas* canvas, int flags = 1);
    ~UpdateDeferrer();
    UpdateDeferrer(const UpdateDeferrer&) = delete;
    UpdateDeferrer& operator=(const UpdateDeferrer&) = delete;

private:
    Canvas* canvas_;
    const Glob* owner_ = nullptr;
};

} // namespace Glib
