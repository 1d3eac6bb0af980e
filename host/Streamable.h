// Streamable: the root of the host's persistent objects. An object is written as a chain of
// layers, one per class from this root down to the most derived class.
#pragma once

#include "host/LightweightString.h"
#include "host/StreamableChunkSizeHolder.h"
#include "host/StreamableMembers.h"
#include "host/StreamableTraitsBase.h"
#include "host/ZkPtr.h"
#include "host/iObject.h"

class GrowString;
class PStream;

// The root layer, short name "$", is written with major revision 2: its major revision is the
// stream format of the layers that follow it, so that a reader switches to format 2 before it
// meets them. Its body is empty.
class Streamable : public StreamableChunkSizeHolder, public virtual iObject {
public:
    enum BuilderType { buildForUnpack = 1, buildForClone = 2 };

    Streamable() = default;
    explicit Streamable(BuilderType) {}
    Streamable(BuilderType, const Streamable& o) : Streamable(o) {}
    Streamable(const Streamable&) = default;
    Streamable& operator=(const Streamable&) = default;
    ~Streamable() override = default;

    // Writes the object's dotted class path.
    virtual void printOn(GrowString& out) const;

    STRM_DECLARE_ROOT_LAYER(Streamable);

private:
    void pack(PStream& s) const;
    void unpack(PStream& s);
};
