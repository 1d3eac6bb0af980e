// NotifyMsg: a string message, the event of every Notifier.
#pragma once

#include "host/LightweightString.h"
#include "host/ZkPtr.h"
#include "host/iObject.h"

// Carries its content as text, with an optional object beside it. Receivers that need a pointer
// get it formatted into the text and scan it back.
class NotifyMsg {
public:
    NotifyMsg() = default;
    NotifyMsg(const LightweightString<char>& text, const Zk::Ptr<iObject>& object = Zk::Ptr<iObject>())
        : text_(text), object_(object) {}

    operator const char*() const { return text_.c_str(); }
    const LightweightString<char>& text() const { return text_; }
    const Zk::Ptr<iObject>& object() const { return object_; }

private:
    LightweightString<char> text_;
    Zk::Ptr<iObject> object_;
};
