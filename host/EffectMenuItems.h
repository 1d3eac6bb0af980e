// EffectMenuItems: the commands of one component of an effect graph, as menu items.
#pragma once

#include <vector>

#include "host/EditGraphIterator.h"
#include "host/MenuItem.h"

class Vob;

// The iterator stands on the component. The flags choose groups of items: 0x1 switching on and
// off, 0x2 removing, 0x4 the parameter window, 0x8 resetting the parameters, 0x100 renaming
// back to the default name; 799 asks for everything. Every command is an undoable step of the
// Vob's edit. A source clip has only what applies to it.
class EffectMenuItems {
public:
    enum eItems : unsigned {
        kEnable = 0x1,
        kRemove = 0x2,
        kParameters = 0x4,
        kReset = 0x8,
        kDefaultName = 0x100,
    };
    static std::vector<MenuItem> getItemsForComponent(Vob* vob, const EditGraphIterator& at, unsigned flags);
};
