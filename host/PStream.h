// PStream: the stream handed to every pack and unpack operation: the error text, the file and
// the current stream format.
#pragma once

#include "host/GrowString.h"
#include "host/LightweightString.h"

class StreamFile;
class Streamable;
class DynamicIntegralStorageBase;
class PStreamObserver;

// A non-empty error text means the stream is in error. The format starts at 2, the one that
// is written; a root layer read from the file may switch it.
class PStream {
public:
    explicit PStream(StreamFile* f) : file(f) {}

    bool inError() const { return !errors.empty(); }

    // Strings are a 4-byte length and then that many bytes, with no terminator: the length
    // depends on the text alone, so a header rewritten in place takes the same bytes.
    PStream& operator<<(const LightweightString<char>& s);

    GrowString errors;
    StreamFile* file = nullptr;
    int formatVersion = 2;
    // Not owned; told of every object and layer header read.
    PStreamObserver* observer = nullptr;
};

// Reads a string; a length that claims more than the file holds reads nothing and leaves the
// stream at its end.
PStream& operator>>(PStream& s, LightweightString<char>& out);
PStream& operator>>(PStream& s, DynamicIntegralStorageBase& d);
// A whole object, by its STRM_hierarchyPack.
PStream& operator<<(PStream& s, const Streamable& obj);
// Into an existing object, by its STRM_hierarchyUnpack.
PStream& operator>>(PStream& s, Streamable& obj);
