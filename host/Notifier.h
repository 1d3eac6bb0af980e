// Notifier: the notifier of string messages.
#pragma once

#include "host/GenericNotifier.h"
#include "host/NotifyMsg.h"

extern template class GenericNotifier<NotifyMsg>;

// A GenericNotifier<NotifyMsg>; its clients are usually Notifiable objects that registered member
// functions for the message types they care about.
class Notifier : public GenericNotifier<NotifyMsg> {
public:
    Notifier() = default;
    Notifier(const Notifier&) = default;
    Notifier& operator=(const Notifier&) = default;
    ~Notifier() override;
};
