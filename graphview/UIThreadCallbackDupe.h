// UIThreadCallbackDupe: a callback that always runs on the user-interface thread, and only while
// what it calls still exists.
#pragma once

#include "graphview/EventHandlerExistenceCheck.h"
#include "host/EventHandler.h"
#include "host/MethodCallback.h"
#include "host/ZkPtr.h"
#include "host/iCallbackBase.h"

// Fired on the user-interface thread, it delivers at once (unless told always to defer). Fired
// anywhere else, it posts itself a message carrying a copy of the event, and delivers when the
// event loop hands that message back. At delivery the guard is asked first; a guard that answers
// 0 drops the call. The copy of the event travels with the message, so it lives until delivery.
template <class E>
class UIThreadCallbackDupe : public iCallbackBase<int, E>, public EventHandler {
public:
    using Callback = Zk::Ptr<iCallbackBase<int, E>>;

    // What travels through the event queue: the wrapper and the event it was fired with.
    class DeferredCallback : public iObject {
    public:
        DeferredCallback(UIThreadCallbackDupe* wrapper, const E& event) : wrapper_(wrapper), event_(event) {}
        const E& event() const { return event_; }

    private:
        Zk::Ptr<UIThreadCallbackDupe> wrapper_;
        E event_;
    };

    UIThreadCallbackDupe(const Callback& target, const Callback& guard, bool alwaysDefer = false,
                         const Callback& preGuard = Callback())
        : target_(target), preGuard_(preGuard), guard_(guard), alwaysDefer_(alwaysDefer) {}

    // A member function of a handler, guarded by the handler's existence.
    template <class Client>
    static Zk::Ptr<UIThreadCallbackDupe> make(Client* client, int (Client::*method)(const E&),
                                              bool alwaysDefer = false) {
        return Zk::Ptr<UIThreadCallbackDupe>(
            new UIThreadCallbackDupe(Callback(new MethodCallback<Client, E, int>(client, method)),
                                     Callback(new EventHandlerExistenceCheck<E>(client)), alwaysDefer));
    }

    int invoke(const E& event) override {
        if (preGuard_ && preGuard_->invoke(event) == 0)
            return 0;
        if (!alwaysDefer_ && co_pid() == 0)
            return deliver(event);
        // The text is a place holder: delivery goes by the data alone.
        sendMessageWithData("Hello", this, Zk::Ptr<iObject>(new DeferredCallback(this, event)), nullptr);
        return 0;
    }

    int handleDataMessageEvent(const LightweightString<char>&, Glob*, Zk::Ptr<iObject> data) override {
        if (auto* deferred = dynamic_cast<DeferredCallback*>(data.get()))
            deliver(deferred->event());
        return 1;
    }

private:
    int deliver(const E& event) {
        if (guard_) {
            const int ok = guard_->invoke(event);
            if (ok == 0)
                return ok;
        }
        return target_ ? target_->invoke(event) : 0;
    }

    Callback target_;
    Callback preGuard_;
    Callback guard_;
    bool alwaysDefer_;
};
