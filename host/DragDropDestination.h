// DragDropDestination: a widget that can take dropped items. The drag-and-drop manager asks it
// whether it takes an item, tells it how the drag goes, and hands the item over on release.
#pragma once

#include "host/DragDropItem.h"
#include "host/Glob.h"

// How a drag stands over a destination: acceptable, refused, or (once the pointer has left it)
// no longer over it. Destinations tell only acceptable from the rest.
class iDragDropDestination {
public:
    enum eAcceptance { kAcceptable = 0, kUnacceptable = 1, kNotOver = 2 };
    virtual ~iDragDropDestination() = default;
};

class DragDropDestination : public iDragDropDestination {
public:
    virtual bool canAccept(DragDropItem* item, Glob::eDropReason reason) const = 0;
    virtual bool canAccept(DragDropItemType type, Glob::eDropReason reason) const = 0;
    virtual bool accept(DragDropItem* item, Glob::eDropReason reason) = 0;
    virtual void indicateAcceptability(DragDropItem* item, eAcceptance acceptance) = 0;
};
