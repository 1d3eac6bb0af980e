// DLListRec: a record that can stand on one DLList.
#pragma once

class DLList;

// The links of an intrusive, doubly linked list live in the record. A record is on at most one
// list; destroying it takes it off that list first. A copy of a record is on no list.
class DLListRec {
public:
    DLListRec() = default;
    DLListRec(const DLListRec&) {}
    DLListRec& operator=(const DLListRec&) { return *this; }
    virtual ~DLListRec();

    // The test DLList::member uses to find a record by key. Identity unless a subclass says more.
    virtual bool operator==(const DLListRec& other) const { return this == &other; }

    DLListRec* next() const { return next_; }
    DLListRec* prev() const { return prev_; }
    DLList* list() const { return list_; }

private:
    friend class DLList;

    DLListRec* prev_ = nullptr;
    DLListRec* next_ = nullptr;
    DLList* list_ = nullptr;
};
