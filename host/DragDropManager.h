// DragDropManager: the host's drag and drop. A widget that starts a drag hands its item over;
// the manager then follows the pointer, shows the item's drag widget beside it, tells the
// destination under the pointer how the drag stands and gives it the item on release.
#pragma once

#include "host/DragDropItem.h"
#include "host/XY.h"

class Glob;
class DragDropDestination;

// One drag at a time. Positions are screen pixels, y upward, as glib_getMousePos gives them.
// A drag is offered only to widgets that take drops: other windows under the pointer, such as
// a destination's own preview, let it pass. The destination under the pointer is the deepest
// such widget of the topmost window that has one there.
class DragDropManager {
public:
    static DragDropManager& instance();

    // Starts dragging item from source at the pointer; false while another drag goes on.
    bool startDrag(const Zk::Ptr<DragDropItem>& item, Glob* source, const XY<int>& screen);
    // The pointer moved: the drag widget follows, and the destinations under the old and new
    // positions hear of it.
    void dragTo(const XY<int>& screen);
    // The button was released: the destination under the pointer takes the item (replace asks it
    // to take the place of what it lands on). True when it did. The drag ends either way.
    bool drop(const XY<int>& screen, bool replace);
    // Ends the drag without a drop.
    void cancel();

    bool dragging() const { return item_ != nullptr; }
    DragDropItem* item() const { return item_.get(); }
    Glob* source() const { return source_; }
    // The widget that last heard of the drag, or null.
    Glob* destination() const;
    // The deepest widget taking drops under that screen point, or null.
    Glob* destinationAt(const XY<int>& screen) const;

private:
    DragDropManager() = default;
    void leaveDestination();
    void finish();

    Zk::Ptr<DragDropItem> item_;
    Glob* source_ = nullptr;
    Glob* dragWidget_ = nullptr;
    Glob* over_ = nullptr;
};
