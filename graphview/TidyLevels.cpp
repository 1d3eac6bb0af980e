// The walk and the sorting into levels of the tree tidier.
#include "graphview/TidyLevels.h"

#include "nodeui/NodeUIPosRec.h"
#include "nodeui/NodeUIPosSource.h"

TidyLevels::TidyLevels(EditGraphIterator& iterator, NodeUIPosSource* src) : source(src) {
    baseDepth = static_cast<int64_t>(iterator.depth()) + 1;
    walk(iterator);
    sortIntoLevels();
}

bool TidyLevels::enter(EditGraphIterator& iterator) {
    if (!iterator.isValid())
        return false;
    IdStamp id = iterator.getNodeId(-1);
    if (!id.valid())
        return false;
    for (int i = iterator.depth() - 1; i >= 0; --i)
        if (iterator.getNodeId(i) == id)
            return false; // the path has closed a cycle
    addNode(iterator);
    return static_cast<bool>(iterator.getNode(-1));
}

void TidyLevels::walk(EditGraphIterator& iterator) {
    // Depth first over inputs in rising order, on an explicit stack: each frame is a node whose
    // input count was read once on entry.
    struct Frame {
        unsigned inputs;
        unsigned next;
    };
    if (!enter(iterator))
        return;
    std::vector<Frame> stack{{iterator.getNode(-1)->getNumInputs(), 0}};
    while (!stack.empty()) {
        Frame& f = stack.back();
        if (f.next >= f.inputs) {
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

void TidyLevels::addNode(EditGraphIterator& iterator) {
    const int depth = iterator.depth();
    const uint64_t level = static_cast<uint64_t>(static_cast<int64_t>(depth) + 1 - baseDepth);
    const IdStamp id = iterator.getNodeId(-1);
    auto it = records.find(id);
    if (it != records.end()) {
        TidyNodeRec& rec = it->second;
        if (level > rec.level)
            rec.level = level;
        // A node moved to a deeper parent keeps the input slot of its first parent.
        if (rec.parentLevel < level - 1) {
            rec.parent = iterator.getNode(depth - 1);
            rec.parentLevel = level - 1;
        }
        return;
    }
    TidyNodeRec rec;
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

void TidyLevels::sortIntoLevels() {
    // One pass over the visit order into buckets; the levels end at the first empty one, exactly
    // as a level-by-level scan that stops when a level stays empty.
    std::vector<std::list<TidyNodeRec>> buckets;
    for (const IdStamp& id : firstVisitOrder) {
        const TidyNodeRec& rec = records.at(id);
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

void TidyLevels::applyOffsets(const OffsetMap& offsets, VidRouting::Orientations::Orientation orientation) {
    for (const auto& level : levels) {
        for (const TidyNodeRec& rec : level) {
            auto it = offsets.find(rec.node->getId());
            if (it == offsets.end() || !rec.posRec)
                continue;
            const TidyOffset& o = it->second;
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
