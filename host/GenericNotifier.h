// GenericNotifier: a notifier of events of type E.
#pragma once

#include "host/CallbackInvoker.h"
#include "host/NotifierBase.h"
#include "host/iCallbackBase.h"

// Sends an event to every registration whose type matches, synchronously, in the order of
// registration, with the critical section held. The int a callback returns is ignored. Every
// invoker on this list is a CallbackInvoker<E>: register through registerNotification, or hand
// registerInternal nothing else.
template <class E>
class GenericNotifier : public NotifierBase {
public:
    GenericNotifier() = default;
    GenericNotifier(const GenericNotifier&) = default;
    GenericNotifier& operator=(const GenericNotifier&) = default;
    virtual ~GenericNotifier() = default;

    virtual void issueNotification(const E& event, int type) {
        CriticalSection::Scope hold(cs_);
        Dispatch dispatch{&event, type};
        clients_.apply(&GenericNotifier::dispatchTo, &dispatch);
    }

    // Sends through issueNotification, so that a subclass that overrides it sees the event.
    void call(const E& event, int type) { issueNotification(event, type); }

    Zk::Ptr<Zk::Guard> registerNotification(const Zk::Ptr<iCallbackBase<int, E>>& callback, int type) {
        if (!callback)
            return Zk::Ptr<Zk::Guard>();
        return registerInternal(new CallbackInvoker<E>(callback, type));
    }

private:
    struct Dispatch {
        const E* event;
        int type;
    };

    static void dispatchTo(DLListRec* record, void* argument) {
        const Dispatch& dispatch = *static_cast<const Dispatch*>(argument);
        auto* invoker = static_cast<CallbackInvoker<E>*>(record);
        if (!invoker->typeMatch(dispatch.type))
            return;
        // The callback may end its own registration, which deletes the invoker.
        Zk::Ptr<iCallbackBase<int, E>> callback = invoker->callback();
        if (callback)
            callback->invoke(*dispatch.event);
    }
};
