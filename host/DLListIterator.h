// DLListIterator: a walk over a DLList that survives removals made during it.
#pragma once

#include "host/DLList.h"

// Visits the records that were on the list when the iterator was made, in order, skipping any
// that are removed before their turn. The iterator registers itself with its list, so it lives on
// the stack of the walking code and is neither copied nor kept.
class DLListIterator {
public:
    explicit DLListIterator(const DLList& list);
    DLListIterator(const DLListIterator&) = delete;
    DLListIterator& operator=(const DLListIterator&) = delete;
    ~DLListIterator();

    // The next record, or null when the walk is over.
    DLListRec* next();

private:
    friend class DLList;

    // Called by the list before it unlinks a record.
    void recordLeaving(DLListRec* record);

    const DLList* list_;
    DLListRec* next_;
    DLListRec* end_; // the last record to visit
    DLListIterator* chain_ = nullptr;
};
