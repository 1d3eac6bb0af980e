// ValClientBase: the untyped face of a client of several value servers.
#pragma once

#include "host/EnableDisable.h"
#include "values/ValServerBase.h"

// Receives the server that changed as a ValServerBase, so one client can watch servers of any
// kind. The disable count is the client's to test.
class ValClientBase : public EnableDisable {
public:
    virtual ~ValClientBase() = default;

    virtual void valChangedNtfy(ValServerBase* server) = 0;
    virtual void valPreChangedNtfy(ValServerBase*) {}
};
