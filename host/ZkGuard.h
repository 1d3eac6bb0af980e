// Zk::Guard: the token of one registration with a notifier.
#pragma once

#include "host/iObject.h"

class NotifierBase;
class CallbackInvokerBase;

namespace Zk {

// The registration lives as long as a Zk::Ptr to its guard does: when the last reference goes,
// the callback is taken off the notifier's list. A guard whose notifier has been destroyed is
// inert and its release does nothing. A guard must not be released on one thread while its
// notifier is being destroyed on another.
class Guard : public virtual iObject {
public:
    Guard(const Guard&) = delete;
    Guard& operator=(const Guard&) = delete;
    ~Guard() override;

    // True while the registration stands.
    bool active() const { return notifier_ != nullptr; }
    // The notifier registered with, or null once it is gone.
    NotifierBase* notifier() const { return notifier_; }

private:
    friend class ::NotifierBase;

    Guard(NotifierBase* notifier, CallbackInvokerBase* invoker) : notifier_(notifier), invoker_(invoker) {}

    NotifierBase* notifier_;
    CallbackInvokerBase* invoker_;
};

} // namespace Zk
