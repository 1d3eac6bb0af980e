// ValServerBase: the untyped face of a value server.
#pragma once

#include "host/DLListRec.h"

// Lets code that does not know a server's value type hold it and make it send. A DLListRec, so
// that servers can be kept on host lists.
class ValServerBase : public DLListRec {
public:
    ~ValServerBase() override = default;

    // Send an event of kind 0 (changed) or 1 (about to change) to every client.
    virtual void issueValChanged(int detail) = 0;
    virtual void issueValPreChanged(int detail) = 0;
};
