// TidyLevels: one walk of a tree from its root, with every reached node recorded once and sorted
// into levels by the longest path at which it was reached. Records stand in a flat table in order
// of first visit and are found through a hash of their ids; a level is a run of record indices.
#pragma once

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "graphview/TidyNodeRec.h"
#include "host/EditGraphIterator.h"
#include "host/IdStamp.h"

class NodeUIPosSource;

class TidyLevels {
public:
    static constexpr uint32_t kNone = 0xFFFFFFFFu;

    // Walks the tree under the iterator's node, then sorts the records into levels. The walk
    // keeps its own stack, so a tree of any depth is safe; a node reached by several paths is
    // descended once per path, which is how its level comes to be its longest path. The iterator
    // is back on its node afterwards.
    TidyLevels(EditGraphIterator& iterator, NodeUIPosSource* source);

    // Records are numbered in order of first visit; the root is 0.
    size_t size() const { return recs_.size(); }
    const TidyNodeRec& rec(uint32_t index) const { return recs_[index]; }
    const IdStamp& id(uint32_t index) const { return walked_[index].id; }
    // The record of the parent the node hangs from; kNone for the root.
    uint32_t parentIndex(uint32_t index) const { return walked_[index].parent; }
    // The number of distinct valid channels feeding the track inputs of the record's node, 0
    // unless it is an effect; counted during the walk, while the node is at hand, for every
    // record through which the walk stepped to an input, else kUncounted.
    uint64_t tracks(uint32_t index) const { return walked_[index].tracks; }
    static constexpr uint64_t kUncounted = ~uint64_t{0};
    static uint64_t distinctTracks(FXGraphNodeBase* node);
    uint32_t indexOf(const IdStamp& id) const;
    const TidyNodeRec* find(const IdStamp& id) const;

    // The levels end at the first level without a record; a record above that stands in none.
    size_t numLevels() const { return levelStart_.empty() ? 0 : levelStart_.size() - 1; }
    // The records of level L in order of first visit.
    std::span<const uint32_t> level(size_t L) const {
        return {order_.data() + levelStart_[L], order_.data() + levelStart_[L + 1]};
    }
    bool inLevels(uint32_t index) const { return recs_[index].level < numLevels(); }

    int64_t baseDepth() const { return baseDepth_; }

private:
    struct Frame {
        FXGraphNodeBase* node; // held by the iterator's path while the frame stands
        uint32_t rec;
        unsigned inputs;
        unsigned next;
    };
    // What the walk keeps of a record beside it.
    struct Walked {
        IdStamp id;
        uint32_t parent;
        int32_t onPath; // how often the record stands on the walk's path
        uint64_t tracks;
    };
    // A table entry: a tag from the id's hash (0 where there is none) and a record index, or
    // kAbove with the index of a node above the walk's start. A matching tag is confirmed
    // against the id kept beside the record, so that a slot is 8 bytes and a table of a
    // hundred thousand nodes stays within the cache.
    struct Slot {
        uint32_t tag;
        uint32_t value;
    };
    static constexpr uint32_t kEmpty = 0xFFFFFFFFu;
    static constexpr uint32_t kAbove = 0x80000000u;

    void walk(EditGraphIterator& iterator);
    // The record of the iterator's node, made or deepened; kNone where the walk of this node
    // ends before its inputs: no node, or a closed cycle.
    uint32_t enter(EditGraphIterator& iterator, const Frame* parent, FXGraphNodeBase*& node);
    void sortIntoLevels();

    static uint64_t hash(const IdStamp& id) { return IdStampMixHash::mix(id); }
    static uint32_t tagOf(uint64_t h) {
        const uint32_t t = static_cast<uint32_t>(h >> 32);
        return t ? t : 1;
    }
    const IdStamp& idOf(uint32_t value) const {
        return (value & kAbove) ? above_[value & ~kAbove] : walked_[value].id;
    }
    // The value stored for the id, or kEmpty.
    uint32_t lookup(const IdStamp& id, uint64_t h) const {
        const uint32_t tag = tagOf(h);
        for (uint64_t i = h & mask_;; i = (i + 1) & mask_) {
            const Slot slot = table_[i];
            if (slot.tag == 0)
                return kEmpty;
            if (slot.tag == tag && idOf(slot.value) == id)
                return slot.value;
        }
    }
    // Stores a value for an id that is not in the table yet.
    void insert(uint64_t h, uint32_t value);
    void rebuild(size_t size);

    NodeUIPosSource* source_ = nullptr;
    int64_t baseDepth_ = 0;
    std::vector<TidyNodeRec> recs_;
    std::vector<Walked> walked_;
    std::vector<IdStamp> above_; // the path above the walk's start
    std::vector<Slot> table_;    // open addressing, linear probing, at most half full
    uint64_t mask_ = 0;
    size_t used_ = 0;
    std::vector<uint32_t> order_;
    std::vector<uint32_t> levelStart_;
};
