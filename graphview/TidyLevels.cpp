// The walk and the sorting into levels of the tree tidier.
#include "graphview/TidyLevels.h"

#include <algorithm>

#include "host/EffectInstance_opu4h5a4j.h"
#include "nodeui/NodeUIPosRec.h"
#include "nodeui/NodeUIPosSource.h"

uint64_t TidyLevels::distinctTracks(FXGraphNodeBase* node) {
    auto* effect = dynamic_cast<EffectInstance_opu4h5a4j*>(node);
    if (!effect)
        return 0;
    const uint16_t n = effect->getNumTrackInputs();
    IdStamp small[8];
    std::vector<IdStamp> large;
    IdStamp* seen = small;
    if (n > 8) {
        large.resize(n);
        seen = large.data();
    }
    uint64_t count = 0;
    for (uint16_t i = 0; i < n; ++i) {
        const IdStamp id = effect->getInputTrackId(i);
        if (id.valid() && std::find(seen, seen + count, id) == seen + count)
            seen[count++] = id;
    }
    return count;
}

TidyLevels::TidyLevels(EditGraphIterator& iterator, NodeUIPosSource* source) : source_(source) {
    baseDepth_ = static_cast<int64_t>(iterator.depth()) + 1;
    // Room for a few hundred nodes from the start, so that common trees never grow the table.
    table_.assign(1024, Slot{0, 0});
    recs_.reserve(256);
    walked_.reserve(256);
    mask_ = table_.size() - 1;
    // The path above the walk's start closes cycles too.
    for (int i = iterator.depth() - 1; i >= 0; --i) {
        const IdStamp id = iterator.getNodeId(i);
        const uint64_t h = hash(id);
        if (lookup(id, h) == kEmpty) {
            above_.push_back(id);
            insert(h, kAbove | static_cast<uint32_t>(above_.size() - 1));
        }
    }
    walk(iterator);
    // The source is asked for each record in order of first visit, as the walk met them, but
    // after it: the lookups then don't wait on one another.
    if (source_)
        for (uint32_t i = 0; i < recs_.size(); ++i)
            recs_[i].posRec = source_->getPosRecForNode(walked_[i].id);
    sortIntoLevels();
}

void TidyLevels::insert(uint64_t h, uint32_t value) {
    if ((used_ + 1) * 2 > table_.size())
        rebuild(table_.size() * 2);
    for (uint64_t i = h & mask_;; i = (i + 1) & mask_) {
        if (table_[i].tag == 0) {
            table_[i] = Slot{tagOf(h), value};
            break;
        }
    }
    ++used_;
}

void TidyLevels::rebuild(size_t size) {
    // Every entry is found again from the ids kept beside the records, in order.
    table_.assign(size, Slot{0, 0});
    mask_ = size - 1;
    auto put = [&](const IdStamp& id, uint32_t value) {
        const uint64_t h = hash(id);
        for (uint64_t i = h & mask_;; i = (i + 1) & mask_) {
            if (table_[i].tag == 0) {
                table_[i] = Slot{tagOf(h), value};
                return;
            }
        }
    };
    for (uint32_t k = 0; k < above_.size(); ++k)
        put(above_[k], kAbove | k);
    for (uint32_t k = 0; k < walked_.size(); ++k)
        put(walked_[k].id, k);
}

uint32_t TidyLevels::indexOf(const IdStamp& id) const {
    const uint32_t v = lookup(id, hash(id));
    return (v == kEmpty || (v & kAbove)) ? kNone : v;
}

const TidyNodeRec* TidyLevels::find(const IdStamp& id) const {
    const uint32_t i = indexOf(id);
    return i == kNone ? nullptr : &recs_[i];
}

uint32_t TidyLevels::enter(EditGraphIterator& iterator, const Frame* parent, FXGraphNodeBase*& node) {
    // The walk steps without holding nodes: the graph holds them, and nothing changes it while
    // the walk runs.
    FXGraphNodeBase* const here = iterator.peekNode(-1);
    if (!here)
        return kNone;
    const IdStamp id = here->getId();
    if (!id.valid())
        return kNone;
    const uint64_t h = hash(id);
    uint32_t index = lookup(id, h);
    if (index != kEmpty && ((index & kAbove) || walked_[index].onPath > 0))
        return kNone; // the path above already holds this node: a cycle is closed

    const int depth = iterator.depth();
    const uint64_t level = static_cast<uint64_t>(static_cast<int64_t>(depth) + 1 - baseDepth_);
    if (index != kEmpty) {
        TidyNodeRec& rec = recs_[index];
        if (level > rec.level)
            rec.level = level;
        // A node moved to a deeper parent keeps the input slot of its first parent.
        if (rec.parentLevel < level - 1 && parent) {
            rec.parent = parent->node;
            rec.parentLevel = level - 1;
            walked_[index].parent = parent->rec;
        }
    } else {
        index = static_cast<uint32_t>(recs_.size());
        TidyNodeRec& rec = recs_.emplace_back();
        rec.level = level;
        rec.node = here;
        uint32_t parentRec = kNone;
        if (level != 0 && parent) {
            rec.parentInput = iterator.getParentInputNum();
            rec.parent = parent->node;
            rec.parentLevel = level - 1;
            parentRec = parent->rec;
        }
        insert(h, index); // before the id stands beside its record, so a rebuild doesn't see it
        walked_.push_back({id, parentRec, 0, kUncounted});
    }
    node = here;
    ++walked_[index].onPath;
    return index;
}

void TidyLevels::walk(EditGraphIterator& iterator) {
    // Depth first over inputs in rising order; each frame is a node whose input count was read
    // once on entry.
    std::vector<Frame> stack;
    stack.reserve(64);
    FXGraphNodeBase* node = nullptr;
    const uint32_t root = enter(iterator, nullptr, node);
    if (root == kNone)
        return;
    stack.push_back({node, root, node->getNumInputs(), 0});
    while (!stack.empty()) {
        Frame& f = stack.back();
        if (f.next >= f.inputs) {
            --walked_[f.rec].onPath;
            stack.pop_back();
            if (!stack.empty())
                iterator.moveBack();
            continue;
        }
        const unsigned input = f.next++;
        if (!iterator.lookToInput(input))
            continue;
        // Counted while the parent is at hand; a second node under the same id is counted
        // when it is placed.
        if (walked_[f.rec].tracks == kUncounted && f.node == recs_[f.rec].node)
            walked_[f.rec].tracks = distinctTracks(f.node);
        const uint32_t child = enter(iterator, &f, node);
        if (child != kNone)
            stack.push_back({node, child, node->getNumInputs(), 0});
        else
            iterator.moveBack();
    }
}

void TidyLevels::sortIntoLevels() {
    // A counting sort of the visit order by level; the levels end at the first empty one, exactly
    // as a level-by-level scan that stops when a level stays empty.
    const size_t n = recs_.size();
    std::vector<uint32_t> count;
    for (const TidyNodeRec& rec : recs_) {
        if (rec.level > n)
            continue; // no level can be above the node count; such a level is never reached
        if (rec.level >= count.size())
            count.resize(rec.level + 1, 0);
        ++count[rec.level];
    }
    size_t levels = 0;
    while (levels < count.size() && count[levels] != 0)
        ++levels;
    levelStart_.assign(levels + 1, 0);
    for (size_t L = 0; L < levels; ++L)
        levelStart_[L + 1] = levelStart_[L] + count[L];
    order_.resize(levelStart_[levels]);
    std::vector<uint32_t> fill(levelStart_.begin(), levelStart_.end() - 1);
    for (uint32_t i = 0; i < n; ++i)
        if (recs_[i].level < levels)
            order_[fill[recs_[i].level]++] = i;
}
