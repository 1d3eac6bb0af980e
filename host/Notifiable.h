// Notifiable: a client of string messages.
#pragma once

#include "host/NotifiableBase.h"
#include "host/NotifyMsg.h"

// The three entries of a client of string messages: a message, the end of what it watches, a
// message delivered late. Subclasses register member functions on a GenericNotifier<NotifyMsg>
// with registerNotification and keep the guards. Each entry returns 0 unless a subclass says more.
class Notifiable : public NotifiableBase {
public:
    ~Notifiable() override = default;

    virtual int notify(const NotifyMsg&) { return 0; }
    virtual int destroy(const NotifyMsg&) { return 0; }
    virtual int bufNotify(const NotifyMsg&) { return 0; }
};
