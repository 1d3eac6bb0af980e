// MethodCallback: a callback that calls a member function of one object.
#pragma once

#include "host/iCallbackBase.h"

// Calls (object->*method)(event). The object is not owned: whoever registers the callback keeps
// the object alive for as long as the registration stands.
template <class Client, class E, class R>
class MethodCallback : public iCallbackBase<R, E> {
public:
    using Method = R (Client::*)(const E&);

    MethodCallback(Client* object, Method method) : object_(object), method_(method) {}

    R invoke(const E& event) override { return (object_->*method_)(event); }

    Client* object() const { return object_; }

private:
    Client* object_;
    Method method_;
};
