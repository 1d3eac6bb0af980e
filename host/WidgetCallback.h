// WidgetCallback: what a widget does when the user works it: send a text message, or call back.
#pragma once

#include <functional>

#include "host/LightweightString.h"
#include "host/iObject.h"

class EventHandler;
class Glob;
template <class R, class E>
class iCallbackBase;

// The message form is delivered to target (null: the sending widget's parent) through
// handleDataMessageEvent. The callback form calls an iCallbackBase<R, E> with an E built from
// the message text and the data, E being the notification message type of the caller.
class WidgetCallback {
public:
    WidgetCallback() = default;
    WidgetCallback(const LightweightString<char>& msg, EventHandler* target = nullptr)
        : message_(msg), target_(target) {}
    WidgetCallback(const char* msg) : message_(msg) {}
    template <class R, class E>
    WidgetCallback(const Zk::Ptr<iCallbackBase<R, E>>& cb) {
        if (cb)
            call_ = [cb](const LightweightString<char>& msg, Zk::Ptr<iObject> data) {
                return static_cast<int>(cb->invoke(E(msg, data)));
            };
    }

    bool empty() const { return message_.empty() && !call_; }
    const LightweightString<char>& message() const { return message_; }
    void setMessage(const LightweightString<char>& m) { message_ = m; }
    EventHandler* target() const { return target_; }

    // Runs the callback with msg, or sends the message (msg ignored) from sender. The result is
    // the handler's or callback's.
    int fire(Glob* sender, const LightweightString<char>& msg, Zk::Ptr<iObject> data) const;

private:
    LightweightString<char> message_;
    EventHandler* target_ = nullptr;
    std::function<int(const LightweightString<char>&, Zk::Ptr<iObject>)> call_;
};
