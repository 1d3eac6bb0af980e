// The host's intrusive list, its records and its removal-safe iterator.
#include "host/DLList.h"

#include "host/DLListIterator.h"

DLListRec::~DLListRec() {
    if (list_)
        list_->remove(this);
}

DLList& DLList::operator=(const DLList& other) {
    if (this != &other) {
        clear();
        owns_ = other.owns_;
    }
    return *this;
}

DLList::~DLList() {
    clear();
    for (DLListIterator* it = walks_; it; it = it->chain_) {
        it->list_ = nullptr;
        it->next_ = nullptr;
    }
}

void DLList::append(DLListRec* record) {
    if (!record)
        return;
    if (record->list_)
        record->list_->remove(record);
    record->list_ = this;
    record->prev_ = tail_;
    record->next_ = nullptr;
    if (tail_)
        tail_->next_ = record;
    else
        head_ = record;
    tail_ = record;
    ++count_;
}

DLListRec* DLList::remove(DLListRec* record) {
    if (!record || record->list_ != this)
        return nullptr;
    for (DLListIterator* it = walks_; it; it = it->chain_)
        it->recordLeaving(record);
    if (record->prev_)
        record->prev_->next_ = record->next_;
    else
        head_ = record->next_;
    if (record->next_)
        record->next_->prev_ = record->prev_;
    else
        tail_ = record->prev_;
    record->prev_ = record->next_ = nullptr;
    record->list_ = nullptr;
    --count_;
    return record;
}

DLListRec* DLList::member(const DLListRec& key) const {
    for (DLListRec* r = head_; r; r = r->next_)
        if (*r == key)
            return r;
    return nullptr;
}

void DLList::clear() {
    while (DLListRec* r = head_) {
        remove(r);
        if (owns_)
            delete r;
    }
}

void DLList::apply(ApplyFunction function, void* argument) {
    DLListIterator it(*this);
    while (DLListRec* r = it.next())
        function(r, argument);
}

DLListIterator::DLListIterator(const DLList& list)
    : list_(&list), next_(list.head_), end_(list.tail_), chain_(list.walks_) {
    list.walks_ = this;
}

DLListIterator::~DLListIterator() {
    if (!list_)
        return;
    for (DLListIterator** p = &list_->walks_; *p; p = &(*p)->chain_) {
        if (*p == this) {
            *p = chain_;
            break;
        }
    }
}

DLListRec* DLListIterator::next() {
    DLListRec* r = next_;
    if (r)
        next_ = (r == end_) ? nullptr : r->next();
    return r;
}

void DLListIterator::recordLeaving(DLListRec* record) {
    if (!next_)
        return;
    if (record == next_)
        next_ = (record == end_) ? nullptr : record->next();
    if (record == end_)
        end_ = record->prev();
}
