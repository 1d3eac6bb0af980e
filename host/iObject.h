// iVirtual and iObject: the root interfaces shared virtually by the host's counted objects.
#pragma once

#include "host/ZkPtr.h"

class iVirtual {
public:
    virtual ~iVirtual() = default;
};

class iObject : public virtual Zk::InternalRefCount, public virtual iVirtual {
public:
    ~iObject() override = default;
};
