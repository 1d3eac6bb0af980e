// CutIterator: steps over the cuts of a set of channels in time order. A cut is the start of
// an event of any of the channels (the edit's start included); cuts at one time count once, and
// the current event is that of the first listed channel with a cut there.
#pragma once

#include <vector>

#include "host/CelEventPair.h"
#include "host/Vector.h"

class CutIterator {
public:
    // Stands on the first cut at or after `time`, or with `reverse` at or before it.
    CutIterator(const EditPtr& edit, const Vector<int>& chans, double time, bool reverse);

    bool valid() const { return pos_ >= 0 && pos_ < static_cast<int>(cuts_.size()); }
    const CelEventPair& event() const { return cuts_[static_cast<size_t>(pos_)]; }
    double editTime() const { return event().editTime(); }
    CutIterator& operator++();
    CutIterator& operator--();

private:
    std::vector<CelEventPair> cuts_;
    int pos_ = -1;
};
