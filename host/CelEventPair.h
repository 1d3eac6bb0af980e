// CelEventPair: a handle on one event of a channel's time line.
#pragma once

#include "host/Cookie.h"
#include "host/EditPtr.h"
#include "host/FXGraphNodeBase.h"
#include "host/IdStamp.h"
#include "host/ce_handle.h"

class CelEventPair {
public:
    enum eRangeType { kEventRange = 1 };

    CelEventPair() = default;
    // The event of `chan` that holds `time`; an event of the channel starting exactly at `time`
    // wins over the one ending there. An id that names no channel is taken as the id of an
    // effect graph's root: the pair is then the event at `time` whose graph that node heads.
    CelEventPair(const EditPtr& edit, const IdStamp& chan, double time);
    CelEventPair(const EditPtr& edit, int chan, double time);
    // The event with that index on that channel.
    static CelEventPair atIndex(const EditPtr& edit, int chan, int index);

    bool valid() const { return valid_; }
    double editTime() const;
    double endEditTime() const;
    Cookie stripCookie() const;
    Zk::Ptr<FXGraphNodeBase> getEffectHandle() const;
    bool isBlack() const;
    // Whether the event holds an effect graph rather than plain material.
    bool isEffect() const;
    // The handle that changes what the event plays.
    ce_handle inH() const;
    int chanIndex() const { return chan_; }
    int eventIndex() const { return index_; }
    const EditPtr& edit() const { return edit_; }

    bool operator==(const CelEventPair& o) const {
        return valid_ == o.valid_ && edit_ == o.edit_ && chan_ == o.chan_ && index_ == o.index_;
    }

private:
    EditPtr edit_;
    int chan_ = -1;
    int index_ = -1;
    bool valid_ = false;
};

// The next and the previous event of the same channel; invalid past either end.
CelEventPair next(const CelEventPair& e);
CelEventPair prev(const CelEventPair& e);
