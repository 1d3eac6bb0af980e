// Streamable: the root of the host's persistent objects. An object is written as a chain of
// layers, one per class from this root down to the most derived class.
#pragma once

#include "host/LightweightString.h"
#include "host/ZkPtr.h"
#include "host/iObject.h"

class PStream;
class GrowString;

// Holds the size of an object's chunk for the host's stream operators.
class StreamableChunkSizeHolder {
public:
    unsigned chunkSize() const { return chunkSize_; }
    void setChunkSize(unsigned n) { chunkSize_ = n; }

private:
    unsigned chunkSize_ = 0;
};

class StreamableTraitsBase {
public:
    enum eStatus {
        statusOk = 0,
        statusPacked = 2,
        statusUnpacked = 3,
        statusFailed = 6,
        statusWrongLayer = 7,
        statusEndOfFile = 8,
    };
};

class Streamable : public StreamableChunkSizeHolder, public virtual iObject {
public:
    enum BuilderType { buildForUnpack = 1, buildForClone = 2 };

    Streamable() = default;
    explicit Streamable(BuilderType) {}
    Streamable(const Streamable&) = default;
    Streamable& operator=(const Streamable&) = default;
    ~Streamable() override = default;

    virtual void printOn(GrowString& out) const;
    virtual void assign(const Streamable* other);
    virtual String hierarchyName(bool a, bool shortNames) const;
    virtual StreamableTraitsBase::eStatus STRM_hierarchyUnpack(PStream& s);
    virtual StreamableTraitsBase::eStatus STRM_hierarchyPack(PStream& s) const;
    virtual Zk::Ptr<Streamable> clone(BuilderType how) const;
};
