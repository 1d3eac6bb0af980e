// ValObserverClient: the owner of value observers, told which of them fired.
#pragma once

#include "host/iObject.h"

class ValObserverBase;

// A class with several values to watch holds one observer per value and receives here the
// observer that fired; it compares it with its members and reads the value again.
class ValObserverClient : public virtual iVirtual {
public:
    ~ValObserverClient() override = default;

    virtual void notifyValChanged(const ValObserverBase& observer) = 0;
    virtual void notifyValPreChanged(const ValObserverBase&) {}
};
