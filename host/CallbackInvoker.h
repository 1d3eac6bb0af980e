// CallbackInvoker: a registration that holds a callback for events of type E.
#pragma once

#include "host/CallbackInvokerBase.h"
#include "host/ZkPtr.h"
#include "host/iCallbackBase.h"

// What the list of a GenericNotifier<E> holds: one shared callback and the type it answers to.
template <class E>
class CallbackInvoker : public CallbackInvokerBase {
public:
    CallbackInvoker(const Zk::Ptr<iCallbackBase<int, E>>& callback, int type)
        : CallbackInvokerBase(type), callback_(callback) {}
    ~CallbackInvoker() override = default;

    const Zk::Ptr<iCallbackBase<int, E>>& callback() const { return callback_; }

private:
    Zk::Ptr<iCallbackBase<int, E>> callback_;
};
