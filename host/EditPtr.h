// EditPtr: shared access to an open edit. Assigning an Edit* takes a reference.
#pragma once

#include "host/ZkPtr.h"

class Edit;
class Cookie;

// How i_open treats an edit that is not open: 0 looks only among the open edits.
enum eEditOpenBehaviour { kOpenIfOpen = 0 };

class EditPtr {
public:
    EditPtr() = default;
    EditPtr(Edit* e);
    EditPtr(const EditPtr&);
    EditPtr& operator=(const EditPtr&);
    EditPtr& operator=(Edit* e);
    ~EditPtr();

    // Points at the open edit with this cookie, or at nothing when none is open.
    void i_open(const Cookie& cookie, eEditOpenBehaviour behaviour);

    Edit* get() const { return edit_; }
    Edit* operator->() const { return edit_; }
    Edit& operator*() const { return *edit_; }
    explicit operator bool() const { return edit_ != nullptr; }
    bool operator==(const EditPtr& o) const { return edit_ == o.edit_; }

private:
    Edit* edit_ = nullptr;
};
