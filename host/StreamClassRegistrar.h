// StreamClassRegistrar: enters a streamable class in the host's table of classes for as long
// as the registrar lives, so that an object can be built from a stream by its class name.
#pragma once

#include <vector>

#include "host/LightweightString.h"
#include "host/ZkPtr.h"

class PStream;
class Streamable;

// Classes are found by their dotted hierarchy path, long ("Streamable.Taggable.X") or short
// ("$.T.X"). A later registration of the same path hides an earlier one until it goes.
class StreamClassRegistrar {
public:
    using Builder = Zk::Ptr<Streamable> (*)(PStream&);

    StreamClassRegistrar(const String& longName, const String& shortName, Builder builder);
    ~StreamClassRegistrar();
    StreamClassRegistrar(const StreamClassRegistrar&) = delete;
    StreamClassRegistrar& operator=(const StreamClassRegistrar&) = delete;

    const String& longName() const { return long_; }
    const String& shortName() const { return short_; }
    Builder builder() const { return builder_; }

    // The registrar of a class by either path; null when none is registered.
    static const StreamClassRegistrar* find(const String& name);
    // Every registrar now live, in order of registration.
    static std::vector<const StreamClassRegistrar*> all();

private:
    String long_;
    String short_;
    Builder builder_;
};
