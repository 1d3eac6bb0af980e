// TabOrderManager: the keyboard focus order among a widget's children.
#pragma once

#include <vector>

class Glob;

// Children join the order as they are added and leave it when removed.
class TabOrderManager {
public:
    virtual ~TabOrderManager() = default;
    void addToTabOrder(Glob* g);
    void removeFromTabOrder(Glob* g);
    // The next child after g in the order, wrapping; null if the order is empty.
    Glob* nextInTabOrder(Glob* g) const;
    const std::vector<Glob*>& tabOrder() const { return order_; }

private:
    std::vector<Glob*> order_;
};
