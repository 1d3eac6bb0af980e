// NodeUIRecIndex: records by node id, one per id, in an open-addressed table; what a manager
// keeps beside its list to find the first record of an id without walking the list.
#pragma once

#include <cstddef>
#include <vector>

#include "host/IdStamp.h"

class NodeUIRecBase;

class NodeUIRecIndex {
public:
    NodeUIRecBase* find(const IdStamp& id) const;
    // Adds the record under its id unless the id is there already; false then.
    bool insert(const IdStamp& id, NodeUIRecBase* rec);
    // Takes the id out if it stands for `rec`; false, changing nothing, otherwise.
    bool erase(const IdStamp& id, const NodeUIRecBase* rec);
    void clear();
    // Room for n ids without growing.
    void reserve(size_t n);

private:
    struct Slot {
        IdStamp id;
        NodeUIRecBase* rec = nullptr; // null: free
    };

    size_t home(const IdStamp& id) const;
    size_t slotOf(const IdStamp& id) const;
    void rehash(size_t slots);

    std::vector<Slot> slots_;
    size_t used_ = 0;
    // Where the last id that find missed would go, so that adding it next needs no second
    // probe; any change of the table forgets it.
    mutable IdStamp missedId_;
    mutable size_t missedSlot_ = 0;
    mutable bool missed_ = false;
};
