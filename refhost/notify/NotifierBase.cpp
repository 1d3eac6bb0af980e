// Registration and release on a notifier, and the guards that stand for registrations.
#include "host/NotifierBase.h"

#include "host/DLListIterator.h"

NotifierBase::NotifierBase() {
    clients_.ownsRecords(true);
}

NotifierBase::~NotifierBase() {
    CriticalSection::Scope hold(cs_);
    DLListIterator it(clients_);
    while (DLListRec* r = it.next()) {
        auto* invoker = static_cast<CallbackInvokerBase*>(r);
        if (invoker->guard_) {
            invoker->guard_->notifier_ = nullptr;
            invoker->guard_->invoker_ = nullptr;
            invoker->guard_ = nullptr;
        }
    }
    clients_.clear();
}

Zk::Ptr<Zk::Guard> NotifierBase::registerInternal(CallbackInvokerBase* invoker) {
    if (!invoker)
        return Zk::Ptr<Zk::Guard>();
    Zk::Ptr<Zk::Guard> guard(new Zk::Guard(this, invoker));
    CriticalSection::Scope hold(cs_);
    invoker->guard_ = guard.get();
    clients_.append(invoker);
    return guard;
}

void NotifierBase::deregisterInternal(CallbackInvokerBase* invoker) {
    CriticalSection::Scope hold(cs_);
    invoker->guard_ = nullptr;
    clients_.remove(invoker);
    delete invoker;
}

Zk::Guard::~Guard() {
    if (notifier_ && invoker_)
        notifier_->deregisterInternal(invoker_);
}
