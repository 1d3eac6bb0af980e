// EditModule: a part of an edit that an operation works on: the edit, a region of time and the
// channel in focus. eAccuracy says how exactly a time is wanted (1: to the frame).
#pragma once

#include "host/EditPtr.h"
#include "host/IdStamp.h"

class EditModule {
public:
    enum eAccuracy { kExact = 0, kFrame = 1 };

    EditModule() = default;
    EditModule(const EditPtr& e, double start, double end, const IdStamp& chan = IdStamp())
        : edit_(e), start_(start), end_(end), chan_(chan) {}

    const EditPtr& edit() const { return edit_; }
    double regionStart() const { return start_; }
    double regionEnd() const { return end_; }
    const IdStamp& chan() const { return chan_; }

private:
    EditPtr edit_;
    double start_ = 0.0;
    double end_ = 0.0;
    IdStamp chan_;
};
