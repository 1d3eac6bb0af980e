// NotifierBase: the locked list of registrations under every notifier.
#pragma once

#include "host/CallbackInvokerBase.h"
#include "host/CriticalSection.h"
#include "host/DLList.h"
#include "host/ZkGuard.h"
#include "host/ZkPtr.h"

// Owns the invokers of its clients and guards them with a critical section that is also held
// across each dispatch. Registration and release take the same section, so they are safe from
// any thread and from inside a callback. Copying a notifier copies no registration. Destroying
// it ends every registration and leaves the outstanding guards inert. A notifier must not be
// destroyed by one of its own callbacks.
class NotifierBase {
public:
    NotifierBase(const NotifierBase&) : NotifierBase() {}
    NotifierBase& operator=(const NotifierBase&) { return *this; }

    // Takes ownership of the invoker, appends it to the list and returns its guard. A null
    // invoker gives a null guard.
    Zk::Ptr<Zk::Guard> registerInternal(CallbackInvokerBase* invoker);

    // The number of registrations, read without the lock.
    unsigned numClients() const { return clients_.size(); }

protected:
    NotifierBase();
    ~NotifierBase();

    CriticalSection cs_;
    DLList clients_; // of CallbackInvokerBase, owned

private:
    friend class Zk::Guard;

    // Called by the last release of a guard.
    void deregisterInternal(CallbackInvokerBase* invoker);
};
