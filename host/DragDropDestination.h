// DragDropDestination: a widget that can take dropped items. The drag-and-drop manager asks it
// whether it takes an item, tells it how the drag goes, and hands the item over on release.
#pragma once

#include "host/DragDropItem.h"
#include "host/Glob.h"

class iDragDropDestination {
public:
    enum eAcceptance { kNotOver = 0, kAcceptable = 1, kUnacceptable = 2 };
    virtual ~iDragDropDestination() = default;
};

class DragDropDestination : public iDragDropDestination {
public:
    virtual bool canAccept(DragDropItem* item, Glob::eDropReason reason) const = 0;
    virtual bool canAccept(DragDropItemType type, Glob::eDropReason reason) const = 0;
    virtual bool accept(DragDropItem* item, Glob::eDropReason reason) = 0;
    virtual void indicateAcceptability(DragDropItem* item, eAcceptance acceptance) = 0;
};
