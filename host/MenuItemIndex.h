// MenuItemIndex: the index of an item within a list of menu choices.
#pragma once

#include <cstdint>

struct MenuItemIndex {
    MenuItemIndex() = default;
    explicit MenuItemIndex(unsigned short i) : index(i) {}
    bool operator==(const MenuItemIndex& o) const { return index == o.index; }
    unsigned short index = 0;
};
