// Events of a channel's time line, and the cuts between them.
#include "host/CelEventPair.h"

#include <algorithm>

#include "host/CutIterator.h"
#include "host/Edit.h"

CelEventPair::CelEventPair(const EditPtr& edit, const IdStamp& chan, double time)
    : CelEventPair(edit, edit ? edit->getIdx(chan) : -1, time) {
    if (valid_ || !edit || edit->getIdx(chan) >= 0)
        return;
    for (int c = 0; c < edit->numChans(); ++c) {
        int i = edit->chan(c).cel->eventIndexAt(time);
        if (i < 0)
            continue;
        const CelEvent& e = edit->chan(c).cel->events()[static_cast<size_t>(i)];
        if (e.kind == CelEvent::Graph && e.node && e.node->getId() == chan) {
            chan_ = c;
            index_ = i;
            valid_ = true;
            return;
        }
    }
}

CelEventPair::CelEventPair(const EditPtr& edit, int chan, double time) : edit_(edit), chan_(chan) {
    if (!edit_ || chan < 0 || chan >= edit_->numChans())
        return;
    index_ = edit_->chan(chan).cel->eventIndexAt(time);
    valid_ = index_ >= 0;
}

CelEventPair CelEventPair::atIndex(const EditPtr& edit, int chan, int index) {
    CelEventPair p;
    p.edit_ = edit;
    p.chan_ = chan;
    if (edit && chan >= 0 && chan < edit->numChans() && index >= 0 &&
        index < static_cast<int>(edit->chan(chan).cel->events().size())) {
        p.index_ = index;
        p.valid_ = true;
    }
    return p;
}

double CelEventPair::editTime() const {
    return valid_ ? edit_->chan(chan_).cel->events()[static_cast<size_t>(index_)].start : 1e99;
}

double CelEventPair::endEditTime() const {
    return valid_ ? edit_->chan(chan_).cel->events()[static_cast<size_t>(index_)].end : 1e99;
}

Cookie CelEventPair::stripCookie() const {
    return valid_ ? edit_->chan(chan_).cel->events()[static_cast<size_t>(index_)].strip : Cookie();
}

Zk::Ptr<FXGraphNodeBase> CelEventPair::getEffectHandle() const {
    if (!valid_)
        return nullptr;
    const CelEvent& e = edit_->chan(chan_).cel->events()[static_cast<size_t>(index_)];
    return e.kind == CelEvent::Graph ? e.node : nullptr;
}

CelEventPair next(const CelEventPair& e) {
    if (!e.valid())
        return e;
    return CelEventPair::atIndex(e.edit(), e.chanIndex(), e.eventIndex() + 1);
}

CelEventPair prev(const CelEventPair& e) {
    if (!e.valid())
        return e;
    return CelEventPair::atIndex(e.edit(), e.chanIndex(), e.eventIndex() - 1);
}

CutIterator::CutIterator(const EditPtr& edit, const Vector<int>& chans, double time, bool reverse) {
    if (!edit)
        return;
    // Gather every event start of the channels; the first listed channel wins a shared time.
    std::vector<CelEventPair> all;
    for (int chan : chans) {
        if (chan < 0 || chan >= edit->numChans())
            continue;
        const auto& events = edit->chan(chan).cel->events();
        for (size_t i = 0; i < events.size(); ++i)
            all.push_back(CelEventPair::atIndex(edit, chan, static_cast<int>(i)));
    }
    std::stable_sort(all.begin(), all.end(), [](const CelEventPair& a, const CelEventPair& b) {
        return a.editTime() < b.editTime();
    });
    for (const auto& e : all)
        if (cuts_.empty() || !valEqualsVal(cuts_.back().editTime(), e.editTime()))
            cuts_.push_back(e);

    if (reverse) {
        pos_ = -1;
        for (size_t i = 0; i < cuts_.size(); ++i)
            if (cuts_[i].editTime() <= time || valEqualsVal(cuts_[i].editTime(), time))
                pos_ = static_cast<int>(i);
    } else {
        pos_ = static_cast<int>(cuts_.size());
        for (size_t i = 0; i < cuts_.size(); ++i)
            if (cuts_[i].editTime() >= time || valEqualsVal(cuts_[i].editTime(), time)) {
                pos_ = static_cast<int>(i);
                break;
            }
    }
}

CutIterator& CutIterator::operator++() {
    if (pos_ < static_cast<int>(cuts_.size()))
        ++pos_;
    return *this;
}

CutIterator& CutIterator::operator--() {
    if (pos_ >= 0)
        --pos_;
    return *this;
}
