// Linear probing with deletion by shifting back, kept at most half full. A large table grows
// four times over: every entry moved is a write to a random place of the new table.
#include "nodeui/NodeUIRecIndex.h"

#include <cstdint>

size_t NodeUIRecIndex::home(const IdStamp& id) const {
    return static_cast<size_t>(IdStampMixHash::mix(id)) & (slots_.size() - 1);
}

size_t NodeUIRecIndex::slotOf(const IdStamp& id) const {
    const size_t mask = slots_.size() - 1;
    size_t i = home(id);
    while (slots_[i].rec && !(slots_[i].id == id))
        i = (i + 1) & mask;
    return i;
}

NodeUIRecBase* NodeUIRecIndex::find(const IdStamp& id) const {
    if (slots_.empty())
        return nullptr;
    const size_t i = slotOf(id);
    if (!slots_[i].rec) {
        missedId_ = id;
        missedSlot_ = i;
        missed_ = true;
    }
    return slots_[i].rec;
}

bool NodeUIRecIndex::insert(const IdStamp& id, NodeUIRecBase* rec) {
    if ((used_ + 1) * 2 > slots_.size())
        rehash(slots_.empty() ? 16 : slots_.size() * (slots_.size() < 4096 ? 2 : 4));
    Slot& s = slots_[missed_ && missedId_ == id ? missedSlot_ : slotOf(id)];
    missed_ = false;
    if (s.rec)
        return false;
    s.id = id;
    s.rec = rec;
    ++used_;
    return true;
}

bool NodeUIRecIndex::erase(const IdStamp& id, const NodeUIRecBase* rec) {
    if (slots_.empty())
        return false;
    size_t i = slotOf(id);
    if (!slots_[i].rec || slots_[i].rec != rec)
        return false;
    // Later entries of the same run move back into the hole where their probe would pass it.
    const size_t mask = slots_.size() - 1;
    for (size_t j = (i + 1) & mask; slots_[j].rec; j = (j + 1) & mask) {
        const size_t k = home(slots_[j].id);
        const bool between = i <= j ? (i < k && k <= j) : (i < k || k <= j);
        if (!between) {
            slots_[i] = slots_[j];
            i = j;
        }
    }
    slots_[i] = Slot();
    --used_;
    missed_ = false;
    return true;
}

void NodeUIRecIndex::clear() {
    slots_.clear();
    used_ = 0;
    missed_ = false;
}

void NodeUIRecIndex::reserve(size_t n) {
    size_t want = 16;
    while (want < n * 2)
        want *= 2;
    if (want > slots_.size())
        rehash(want);
}

void NodeUIRecIndex::rehash(size_t slots) {
    missed_ = false;
    std::vector<Slot> old(slots);
    old.swap(slots_);
    for (const Slot& s : old)
        if (s.rec)
            slots_[slotOf(s.id)] = s;
}
