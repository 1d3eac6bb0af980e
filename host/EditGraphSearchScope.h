// EditGraphSearchScope: while one lives for an edit, the edit's graphs are taken as unchanging,
// and a search for a node over the whole edit is answered from one walk of the edit instead of a
// walk for each search, with the same first match. A repaint holds one, since drawing changes no
// graph; scopes nest.
#pragma once

#include "host/EditPtr.h"

class EditGraphIterator;
class IdStamp;

class EditGraphSearchScope {
public:
    explicit EditGraphSearchScope(const EditPtr& edit);
    ~EditGraphSearchScope();
    EditGraphSearchScope(const EditGraphSearchScope&) = delete;
    EditGraphSearchScope& operator=(const EditGraphSearchScope&) = delete;

    // For a whole-edit search of the iterator's edit at its time: -1 when no scope holds that
    // edit; else 1 with the iterator placed on the first match, or 0 when there is none.
    static int answer(EditGraphIterator& it, const IdStamp& id);

    // One remembered walk of an edit at one time; the host's own.
    struct Walk;

private:
    EditPtr edit_;
};
