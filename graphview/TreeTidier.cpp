// The tree tidier: offsets by level, one repair pass per level, positions computed in plain
// doubles and written to the records once at the end.
//
// Only the last position of each record is written. The records' own clients hear nothing of a
// tidy either way: setPos without notification holds their updates back, and the view's nodes
// listen to their records, not to the records' servers. Nothing else watches or manages a
// position record's servers, so the positions a run used to pass through on the way were never
// seen. Each position is derived from its parent's by the same arithmetic in the same order as
// when every step went through the records, so the values are the same to the bit; where the
// order of writes could show (a cycle hangs a node from a parent that is not above it, or a zero
// of either sign meets the other, which a record given an equal value ignores), the whole tree is
// placed again after each repair, as it always was. A parent's record is the one the source gave
// at the parent's first visit: a source gives one record per node.
#include "graphview/TreeTidier.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <optional>
#include <vector>

#include "graphview/TidyLevels.h"
#include "graphview/TidyOffset.h"
#include "host/EffectInstance_opu4h5a4j.h"
#include "nodeui/NodeUIPosRec.h"
#include "nodeui/NodeUIPosSource.h"

namespace {

using VidRouting::Orientations::LeftToRight;
using Orientation = VidRouting::Orientations::Orientation;

// The positions of one run by record index, as the records would hold them, and the placing of
// levels from their offsets.
class Placement {
public:
    Placement(const TidyLevels& tidy, Orientation orientation)
        : tidy_(&tidy), orientation_(orientation), x_(tidy.size()), y_(tidy.size()), offsets_(tidy.size()) {
        // Every record starts where its record stands: a node that is never placed keeps that
        // position, and a parent not yet placed is read there.
        for (uint32_t i = 0; i < tidy.size(); ++i) {
            if (NodeUIPosRec* r = tidy.rec(i).posRec) {
                x_[i] = r->x();
                y_[i] = r->y();
                noteZero(x_[i], y_[i]);
            }
        }
    }

    double x(uint32_t i) const { return x_[i]; }
    double y(uint32_t i) const { return y_[i]; }
    TidyOffset& offset(uint32_t i) { return offsets_[i]; }
    // Whether a negative zero was met. A record keeps its value when given an equal one, so with
    // zeros of both signs about, the sign a record ends with depends on every value it was given.
    bool negativeZero() const { return negativeZero_; }

    void placeLevel(size_t L) {
        for (uint32_t i : tidy_->level(L)) {
            if (!tidy_->rec(i).posRec)
                continue;
            const TidyOffset& o = offsets_[i];
            double x = o.offset.x;
            double y = o.offset.y;
            if (o.parentRec) {
                const uint32_t p = tidy_->parentIndex(i);
                const double px = x_[p];
                const double py = y_[p];
                if (orientation_ == LeftToRight) {
                    x = px - o.offset.x;
                    y = py + o.offset.y;
                } else {
                    x = px - o.offset.y;
                    y = py - o.offset.x;
                }
            }
            noteZero(x, y);
            // As NodeUIPosRec::setPos: equal values leave the record as it is.
            if (x == x_[i] && y == y_[i])
                continue;
            x_[i] = x;
            y_[i] = y;
        }
    }

    void placeFrom(size_t L) {
        for (; L < tidy_->numLevels(); ++L)
            placeLevel(L);
    }

private:
    void noteZero(double x, double y) {
        negativeZero_ |= (x == 0.0 && std::signbit(x)) || (y == 0.0 && std::signbit(y));
    }

    const TidyLevels* tidy_;
    Orientation orientation_;
    std::vector<double> x_;
    std::vector<double> y_;
    std::vector<TidyOffset> offsets_;
    bool negativeZero_ = false;
};

struct Spacing {
    double depth;
    double sibling;
};

// Offsets, placing and the repair pass. `wholeTree` re-places every level after each repair, in
// the order in which the records were always written, for the trees and values where that order
// shows. Without it, levels are placed one at a time, a repair re-placing only the level it
// spread and the one it tested; that holds only while every parent with a record stands in a
// level above its child, and the layout gives nothing as soon as one doesn't: a walk that closed
// a cycle can hang a node from a parent at its own level or below, or from one in no level.
std::optional<Placement> layout(const TidyLevels& tidy, Orientation orientation, XY<double> origin,
                                Spacing spacing, bool wholeTree) {
    Placement place(tidy, orientation);
    bool parentNotAbove = false;

    // Offsets: each input slot centred on its parent, input 0 on top. `tracks - 1` is unsigned
    // and 64 bits wide on purpose: a parent without valid tracks throws its children far off.
    // The parent's record is the one the source gave at the parent's first visit. A level's
    // offsets depend on nothing placed, so they are worked out as each level comes.
    auto offsetLevel = [&](size_t L) {
        for (uint32_t i : tidy.level(L)) {
            const TidyNodeRec& rec = tidy.rec(i);
            TidyOffset& o = place.offset(i);
            if (!rec.parent) {
                o.offset = origin;
                continue;
            }
            const uint32_t p = tidy.parentIndex(i);
            o.parentRec = tidy.rec(p).posRec;
            if (o.parentRec && (!tidy.inLevels(p) || tidy.rec(p).level >= L))
                parentNotAbove = true;
            uint64_t tracks = tidy.tracks(p);
            if (rec.parent != tidy.rec(p).node || tracks == TidyLevels::kUncounted)
                tracks = TidyLevels::distinctTracks(rec.parent);
            o.offset.x = spacing.depth;
            o.offset.y = static_cast<double>(tracks - 1) * spacing.sibling * 0.5 -
                         static_cast<double>(rec.parentInput) * spacing.sibling;
        }
    };

    // The repair pass: at most the first collision of each level from 2 down is mended, by
    // spreading the level above about the colliding node's parent.
    if (wholeTree) {
        for (size_t L = 0; L < tidy.numLevels(); ++L)
            offsetLevel(L);
        place.placeFrom(0);
    }
    for (size_t L = 0; L < tidy.numLevels(); ++L) {
        if (!wholeTree) {
            offsetLevel(L);
            if (parentNotAbove)
                return std::nullopt;
            place.placeLevel(L);
        }
        if (L < 2)
            continue;
        const std::span<const uint32_t> list = tidy.level(L);
        for (size_t k = 1; k < list.size(); ++k) {
            const uint32_t a = list[k - 1];
            const uint32_t b = list[k];
            if (!tidy.rec(a).posRec || !tidy.rec(b).posRec)
                continue;
            double gap;
            double need;
            if (orientation == LeftToRight) {
                gap = std::fabs(place.y(a) - place.y(b));
                need = spacing.sibling;
            } else {
                gap = std::fabs(place.x(a) - place.x(b));
                need = spacing.depth;
            }
            if (!(gap < need - 0.0001))
                continue;
            if (tidy.rec(a).parent == tidy.rec(b).parent)
                break; // shifting parents cannot part two inputs of one parent
            const double half = spacing.sibling * 0.5;
            const FXGraphNodeBase* parent = tidy.rec(a).parent;
            const IdStamp parentId = parent ? parent->getId() : IdStamp();
            const std::span<const uint32_t> above = tidy.level(L - 1);
            size_t r = 0;
            for (; r < above.size(); ++r) {
                place.offset(above[r]).offset.y += half;
                if (tidy.id(above[r]) == parentId)
                    break;
            }
            // Past the parent, or from the first record again when the parent is not at this
            // level, so that the spread then cancels out.
            r = r == above.size() ? 0 : r + 1;
            for (; r < above.size(); ++r)
                place.offset(above[r]).offset.y -= half;
            if (wholeTree) {
                place.placeFrom(L - 1);
            } else {
                place.placeLevel(L - 1);
                place.placeLevel(L);
            }
            break;
        }
    }
    return place;
}

bool sameBits(double a, double b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

} // namespace

TreeTidier::TreeTidier(NodeUIPosSource* src, double depth, double sibling)
    : depthSpacing(depth), siblingSpacing(sibling), source(src) {}

Zk::Box<double, Zk::BottomUpTraits> TreeTidier::getExtents() const {
    Zk::Box<double, Zk::BottomUpTraits> b;
    b.x1 = minX;
    b.y1 = minY;
    b.x2 = maxX;
    b.y2 = maxY;
    return b;
}

bool TreeTidier::run(EditGraphIterator& iterator, double x, double y) {
    minX = maxX = x;
    minY = maxY = y;
    Zk::Ptr<FXGraphNodeBase> root = iterator.getNode(-1);
    if (!root || !source || !source->getPosRecForNode(root->getId()))
        return false;
    originX = x;
    originY = y;

    const TidyLevels tidy(iterator, source);
    const Orientation orientation = source->getOrientation();
    const Spacing spacing{depthSpacing, siblingSpacing};
    std::optional<Placement> placed = layout(tidy, orientation, XY<double>(x, y), spacing, false);
    if (!placed || placed->negativeZero())
        placed = layout(tidy, orientation, XY<double>(x, y), spacing, true);
    const Placement& place = *placed;

    // Each record of a level is written once, in order of first visit, which is the order in
    // which the source gave them. A record given a value equal to its own keeps its own, so where
    // the two differ only in the sign of a zero the record is first moved off it.
    for (uint32_t i = 0; i < tidy.size(); ++i) {
        NodeUIPosRec* r = tidy.rec(i).posRec;
        if (!r || !tidy.inLevels(i))
            continue;
        const double px = place.x(i);
        const double py = place.y(i);
        if (place.negativeZero() && px == r->x() && py == r->y() &&
            !(sameBits(px, r->x()) && sameBits(py, r->y())))
            r->setPos(std::nan(""), std::nan(""), false);
        r->setPos(px, py, false);
    }

    // The extents hold node centres. They are taken in the order of the ids, where the first of
    // two equal coordinates wins: that only tells when the two are zeros of opposite signs.
    auto widen = [&](uint32_t i) {
        if (!tidy.rec(i).posRec)
            return;
        const double px = place.x(i);
        const double py = place.y(i);
        if (px < minX)
            minX = px;
        else if (px > maxX)
            maxX = px;
        if (py < minY)
            minY = py;
        else if (py > maxY)
            maxY = py;
    };
    if (!place.negativeZero() && !std::signbit(x) && !std::signbit(y)) {
        for (uint32_t i = 0; i < tidy.size(); ++i)
            widen(i);
    } else {
        std::vector<uint32_t> byId(tidy.size());
        for (uint32_t i = 0; i < tidy.size(); ++i)
            byId[i] = i;
        std::sort(byId.begin(), byId.end(), [&](uint32_t l, uint32_t r) { return tidy.id(l) < tidy.id(r); });
        for (uint32_t i : byId)
            widen(i);
    }
    return true;
}
