// TabOrderManager: children in the order they were added.
#include "host/TabOrderManager.h"

#include <algorithm>

void TabOrderManager::addToTabOrder(Glob* g) {
    if (g && std::find(order_.begin(), order_.end(), g) == order_.end())
        order_.push_back(g);
}

void TabOrderManager::removeFromTabOrder(Glob* g) {
    order_.erase(std::remove(order_.begin(), order_.end(), g), order_.end());
}

Glob* TabOrderManager::nextInTabOrder(Glob* g) const {
    if (order_.empty())
        return nullptr;
    auto it = std::find(order_.begin(), order_.end(), g);
    if (it == order_.end() || ++it == order_.end())
        return order_.front();
    return *it;
}
