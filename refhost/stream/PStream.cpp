// The stream operators on PStream: packed strings, variable-width integers and whole objects.
#include "host/PStream.h"

#include "host/DynamicIntegralStorageBase.h"
#include "host/StreamFile.h"
#include "host/Streamable.h"

PStream& PStream::operator<<(const LightweightString<char>& s) {
    file->setUnsignedLong(static_cast<unsigned>(s.size()));
    file->setBytes(s.c_str(), s.size());
    return *this;
}

PStream& operator>>(PStream& s, LightweightString<char>& out) {
    unsigned n = 0;
    if (!s.file->getUnsignedLong(n))
        return s;
    // The length is checked against what the file holds before anything is allocated.
    std::string text;
    if (s.file->getBytes(text, n))
        out = String(std::move(text));
    return s;
}

PStream& operator>>(PStream& s, DynamicIntegralStorageBase& d) {
    d.read(s);
    return s;
}

PStream& operator<<(PStream& s, const Streamable& obj) {
    obj.STRM_hierarchyPack(s);
    return s;
}

PStream& operator>>(PStream& s, Streamable& obj) {
    obj.STRM_hierarchyUnpack(s);
    return s;
}
