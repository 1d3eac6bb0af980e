// iCallbackBase: the interface of a reference-counted callback that takes an event.
#pragma once

#include "host/iObject.h"

// What a notifier calls. Callbacks are shared through Zk::Ptr: a registration holds one
// reference, and a dispatch holds another while invoke() runs, so a callback that ends its own
// registration is not destroyed under itself.
template <class R, class E>
class iCallbackBase : public virtual iObject {
public:
    ~iCallbackBase() override = default;
    virtual R invoke(const E& event) = 0;
};
