// The first tree tidier: offsets by level, then one repair pass per level.
#include "graphview/TreeTidierReference.h"

#include <cmath>
#include <set>

#include "graphview/TidyLevelsReference.h"
#include "host/EffectInstance_opu4h5a4j.h"
#include "nodeui/NodeUIPosRec.h"
#include "nodeui/NodeUIPosSource.h"

namespace {

// The number of distinct valid channels feeding the track inputs of a node; 0 unless it is an
// effect.
uint64_t distinctTracks(FXGraphNodeBase* node) {
    auto* effect = dynamic_cast<EffectInstance_opu4h5a4j*>(node);
    if (!effect)
        return 0;
    std::set<IdStamp, IdStampLess> ids;
    const uint16_t n = effect->getNumTrackInputs();
    for (uint16_t i = 0; i < n; ++i) {
        IdStamp id = effect->getInputTrackId(i);
        if (id.valid())
            ids.insert(id);
    }
    return ids.size();
}

} // namespace

TreeTidierReference::TreeTidierReference(NodeUIPosSource* src, double depth, double sibling)
    : depthSpacing(depth), siblingSpacing(sibling), source(src) {}

Zk::Box<double, Zk::BottomUpTraits> TreeTidierReference::getExtents() const {
    Zk::Box<double, Zk::BottomUpTraits> b;
    b.x1 = minX;
    b.y1 = minY;
    b.x2 = maxX;
    b.y2 = maxY;
    return b;
}

bool TreeTidierReference::run(EditGraphIterator& iterator, double x, double y) {
    minX = maxX = x;
    minY = maxY = y;
    Zk::Ptr<FXGraphNodeBase> root = iterator.getNode(-1);
    if (!root || !source || !source->getPosRecForNode(root->getId()))
        return false;
    originX = x;
    originY = y;

    TidyLevelsReference tidy(iterator, source);

    // Offsets: each input slot centred on its parent, input 0 on top. `tracks - 1` is unsigned
    // and 64 bits wide on purpose: a parent without valid tracks throws its children far off.
    TidyLevelsReference::OffsetMap offsets;
    for (const auto& level : tidy.levels) {
        for (const TidyLevelsReference::NodeRec& rec : level) {
            TidyOffset o;
            if (!rec.parent) {
                o.offset = XY<double>(x, y);
            } else {
                o.parentRec = source->getPosRecForNode(rec.parent->getId());
                const uint64_t tracks = distinctTracks(rec.parent.get());
                o.offset.x = depthSpacing;
                o.offset.y = static_cast<double>(tracks - 1) * siblingSpacing * 0.5 -
                             static_cast<double>(rec.parentInput) * siblingSpacing;
            }
            offsets[rec.node->getId()] = o;
        }
    }
    tidy.applyOffsets(offsets, source->getOrientation());

    // The repair pass: at most the first collision of each level from 2 down is mended, by
    // spreading the level above about the colliding node's parent.
    for (size_t L = 2; L < tidy.levels.size(); ++L) {
        auto& list = tidy.levels[L];
        if (list.size() < 2)
            continue;
        auto a = list.begin();
        for (auto b = std::next(a); b != list.end(); a = b++) {
            if (!a->posRec || !b->posRec)
                continue;
            double gap;
            double need;
            if (source->getOrientation() == VidRouting::Orientations::LeftToRight) {
                gap = std::fabs(a->posRec->y() - b->posRec->y());
                need = siblingSpacing;
            } else {
                gap = std::fabs(a->posRec->x() - b->posRec->x());
                need = depthSpacing;
            }
            if (!(gap < need - 0.0001))
                continue;
            if (a->parent.get() == b->parent.get())
                break; // shifting parents cannot part two inputs of one parent
            const double half = siblingSpacing * 0.5;
            const IdStamp parentId = a->parent ? a->parent->getId() : IdStamp();
            auto& above = tidy.levels[L - 1];
            auto r = above.begin();
            for (; r != above.end(); ++r) {
                offsets[r->node->getId()].offset.y += half;
                if (r->node->getId() == parentId)
                    break;
            }
            // Past the parent, or from the first record again when the parent is not at this
            // level, so that the spread then cancels out.
            r = r == above.end() ? above.begin() : std::next(r);
            for (; r != above.end(); ++r)
                offsets[r->node->getId()].offset.y -= half;
            tidy.applyOffsets(offsets, source->getOrientation(), L - 1);
            break;
        }
    }

    for (const auto& [id, rec] : tidy.records) {
        if (!rec.posRec)
            continue;
        const double px = rec.posRec->x();
        const double py = rec.posRec->y();
        if (px < minX)
            minX = px;
        else if (px > maxX)
            maxX = px;
        if (py < minY)
            minY = py;
        else if (py > maxY)
            maxY = py;
    }
    return true;
}
