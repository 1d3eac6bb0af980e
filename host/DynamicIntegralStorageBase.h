// DynamicIntegralStorageBase: the face of the variable-width integers of stream format 1.
#pragma once

class PStream;

class DynamicIntegralStorageBase {
public:
    virtual ~DynamicIntegralStorageBase() = default;
    virtual void write(PStream& s) const = 0;
    virtual void read(PStream& s) = 0;
};
