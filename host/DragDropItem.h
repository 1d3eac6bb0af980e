// DragDropItem: something the user drags between widgets, told apart by its type: 6 is an
// effect template.
#pragma once

#include "host/iObject.h"

enum DragDropItemType { kDragNothing = 0, kDragEffectTemplate = 6 };

class DragDropItem : public virtual iObject {
public:
    virtual DragDropItemType type() const = 0;
};
