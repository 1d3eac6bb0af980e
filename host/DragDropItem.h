// DragDropItem: something the user drags between widgets, told apart by its type: 6 is an
// effect template.
#pragma once

#include "host/iObject.h"

class Glob;

enum DragDropItemType { kDragNothing = 0, kDragEffectTemplate = 6 };

// While a drag goes on the item has a drag widget, the small window that shows it under the
// pointer; a destination that draws its own preview hides it and shows it again when the drop
// would fail. The drag manager owns the widget.
class DragDropItem : public virtual iObject {
public:
    virtual DragDropItemType type() const = 0;
    Glob* getDragWidget() const { return dragWidget_; }
    void setDragWidget(Glob* widget) { dragWidget_ = widget; }

private:
    Glob* dragWidget_ = nullptr;
};
