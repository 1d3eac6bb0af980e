// DLList: the host's intrusive doubly linked list of DLListRec records.
#pragma once

#include "host/DLListRec.h"

class DLListIterator;

// Keeps records in the order they were appended. While ownsRecords() holds (the default) the list
// deletes what is still on it when it is cleared or destroyed; otherwise it only unlinks them.
// Records may be removed while the list is being walked by apply() or a DLListIterator: a walk
// skips what is removed under it and never visits records appended after it began. Not locked:
// callers that share a list between threads lock around it.
class DLList {
public:
    using ApplyFunction = void (*)(DLListRec* record, void* argument);

    DLList() = default;
    // Records belong to one list, so a copy starts empty; it takes the ownership setting.
    DLList(const DLList& other) : owns_(other.owns_) {}
    DLList& operator=(const DLList& other);
    ~DLList();

    unsigned size() const { return count_; }
    bool empty() const { return count_ == 0; }
    DLListRec* first() const { return head_; }
    DLListRec* last() const { return tail_; }

    // Appends at the end, taking the record off any list it was on.
    void append(DLListRec* record);
    // Unlinks a record of this list and hands it back, not deleted; null if it is not on this list.
    DLListRec* remove(DLListRec* record);
    // The first record that compares equal to the key by the record's operator==, or null.
    DLListRec* member(const DLListRec& key) const;
    // Empties the list, deleting the records when the list owns them.
    void clear();

    void ownsRecords(bool owns) { owns_ = owns; }
    bool ownsRecords() const { return owns_; }

    // Calls the function on each record in list order.
    void apply(ApplyFunction function, void* argument);

private:
    friend class DLListIterator;

    DLListRec* head_ = nullptr;
    DLListRec* tail_ = nullptr;
    unsigned count_ = 0;
    bool owns_ = true;
    mutable DLListIterator* walks_ = nullptr; // iterators now walking this list
};
