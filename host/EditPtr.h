// EditPtr: shared access to an open edit. Assigning an Edit* takes a reference.
#pragma once

#include "host/ZkPtr.h"

class Edit;

class EditPtr {
public:
    EditPtr() = default;
    EditPtr(Edit* e);
    EditPtr(const EditPtr&);
    EditPtr& operator=(const EditPtr&);
    EditPtr& operator=(Edit* e);
    ~EditPtr();

    Edit* get() const { return edit_; }
    Edit* operator->() const { return edit_; }
    Edit& operator*() const { return *edit_; }
    explicit operator bool() const { return edit_ != nullptr; }
    bool operator==(const EditPtr& o) const { return edit_ == o.edit_; }

private:
    Edit* edit_ = nullptr;
};
