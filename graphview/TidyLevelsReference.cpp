// The walk and the sorting into levels of the first tree tidier.
#include "graphview/TidyLevelsReference.h"

#include "nodeui/NodeUIPosRec.h"
#include "nodeui/NodeUIPosSource.h"

TidyLevelsReference::TidyLevelsReference(EditGraphIterator& iterator, NodeUIPosSource* src) : source(src) {
    baseDepth = static_cast<int64_t>(iterator.depth()) + 1;
    walk(iterator);
    sortIntoLevels();
}

bool TidyLevelsReference::enter(EditGraphIterator& iterator) {
    if (!iterator.isValid())
        return false;
    IdStamp id = iterator.getNodeId(-1);
    if (!id.valid())
        return false;
    auto it = onPath_.find(id);
    if (it != onPath_.end() && it->second > 0)
        return false; // the path above already holds this node: a cycle is closed
    addNode(iterator);
    if (!iterator.getNode(-1))
        return false;
    ++onPath_[id];
    return true;
}

void TidyLevelsReference::walk(EditGraphIterator& iterator) {
    // Depth first over inputs in rising order, on an explicit stack: each frame is a node whose
    // input count was read once on entry.
    struct Frame {
        unsigned inputs;
        unsigned next;
    };
    // The path above the starting node counts too.
    for (int i = iterator.depth() - 1; i >= 0; --i)
        ++onPath_[iterator.getNodeId(i)];
    if (!enter(iterator))
        return;
    std::vector<Frame> stack{{iterator.getNode(-1)->getNumInputs(), 0}};
    while (!stack.empty()) {
        Frame& f = stack.back();
        if (f.next >= f.inputs) {
            --onPath_[iterator.getNodeId(-1)];
            stack.pop_back();
            if (!stack.empty())
                iterator.moveBack();
            continue;
        }
        unsigned input = f.next++;
        if (!iterator.moveToInput(input))
            continue;
        if (enter(iterator))
            stack.push_back({iterator.getNode(-1)->getNumInputs(), 0});
        else
            iterator.moveBack();
    }
}

void TidyLevelsReference::addNode(EditGraphIterator& iterator) {
    const int depth = iterator.depth();
    const uint64_t level = static_cast<uint64_t>(static_cast<int64_t>(depth) + 1 - baseDepth);
    const IdStamp id = iterator.getNodeId(-1);
    auto it = records.find(id);
    if (it != records.end()) {
        TidyLevelsReference::NodeRec& rec = it->second;
        if (level > rec.level)
            rec.level = level;
        // A node moved to a deeper parent keeps the input slot of its first parent.
        if (rec.parentLevel < level - 1) {
            rec.parent = iterator.getNode(depth - 1);
            rec.parentLevel = level - 1;
        }
        return;
    }
    TidyLevelsReference::NodeRec rec;
    rec.level = level;
    rec.node = iterator.getNode(-1);
    rec.posRec = source ? source->getPosRecForNode(id) : nullptr;
    if (level != 0) {
        rec.parentInput = iterator.getParentInputNum();
        rec.parent = iterator.getNode(depth - 1);
        rec.parentLevel = level - 1;
    }
    records.emplace(id, std::move(rec));
    firstVisitOrder.push_back(id);
}

void TidyLevelsReference::sortIntoLevels() {
    // One pass over the visit order into buckets; the levels end at the first empty one, exactly
    // as a level-by-level scan that stops when a level stays empty.
    std::vector<std::list<TidyLevelsReference::NodeRec>> buckets;
    for (const IdStamp& id : firstVisitOrder) {
        const TidyLevelsReference::NodeRec& rec = records.at(id);
        if (rec.level >= buckets.size()) {
            if (rec.level > records.size())
                continue; // no level can be above the node count; such a level is never reached
            buckets.resize(rec.level + 1);
        }
        buckets[rec.level].push_back(rec);
    }
    for (auto& b : buckets) {
        if (b.empty())
            break;
        levels.push_back(std::move(b));
    }
}

void TidyLevelsReference::applyOffsets(const OffsetMap& offsets,
                                       VidRouting::Orientations::Orientation orientation, size_t fromLevel) {
    if (cachedMap_ != &offsets || cachedSize_ != offsets.size()) {
        cachedMap_ = &offsets;
        cachedSize_ = offsets.size();
        offsetOf_.assign(levels.size(), {});
        for (size_t L = 0; L < levels.size(); ++L)
            for (const TidyLevelsReference::NodeRec& rec : levels[L]) {
                auto it = offsets.find(rec.node->getId());
                offsetOf_[L].push_back(it == offsets.end() ? nullptr : &it->second);
            }
    }
    for (size_t L = fromLevel; L < levels.size(); ++L) {
        size_t i = 0;
        for (const TidyLevelsReference::NodeRec& rec : levels[L]) {
            const TidyOffset* found = offsetOf_[L][i++];
            if (!found || !rec.posRec)
                continue;
            const TidyOffset& o = *found;
            double x = o.offset.x;
            double y = o.offset.y;
            if (o.parentRec) {
                const double px = o.parentRec->x();
                const double py = o.parentRec->y();
                if (orientation == VidRouting::Orientations::LeftToRight) {
                    x = px - o.offset.x;
                    y = py + o.offset.y;
                } else {
                    x = px - o.offset.y;
                    y = py - o.offset.x;
                }
            }
            rec.posRec->setPos(x, y, false);
        }
    }
}
