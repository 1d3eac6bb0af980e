// Reading the shape of a chain of layers from its headers.
#include "refhost/stream/ChainShape.h"

#include <algorithm>
#include <cstdint>

#include "host/DynamicIntegralStorage.h"
#include "host/PStream.h"
#include "host/StreamFile.h"

namespace {

// Reads one header in `format`; false when it is broken or cut.
bool readHeader(PStream& s, int& format, String& name, unsigned& layerSize, unsigned& chunkSize) {
    StreamFile& f = *s.file;
    unsigned major = 0;
    if (f.eof())
        return false;
    s >> name;
    if (format == 1) {
        DynamicIntegralStorage<unsigned char, unsigned short> ma, mi;
        s >> ma >> mi;
        major = ma.value;
    } else if (format == 2) {
        unsigned char ma = 0, mi = 0;
        f.getUnsignedChar(ma);
        f.getUnsignedChar(mi);
        major = ma;
    } else {
        return false;
    }
    if (name == "$" || name == "Streamable")
        format = static_cast<int>(major);
    if (format == 1) {
        DynamicIntegralStorage<unsigned short, unsigned int> ls(0xFFFFFFFF), cs(0xFFFFFFFF);
        s >> ls >> cs;
        layerSize = ls.value;
        chunkSize = cs.value;
    } else if (format == 2) {
        if (!f.getUnsignedLong(layerSize) || !f.getUnsignedLong(chunkSize))
            return false;
    } else {
        return false;
    }
    return !name.empty() && f.position() <= f.size();
}

} // namespace

ChainShape::ChainShape(const std::string& bytes) {
    StreamFile f(bytes);
    PStream s(&f);
    int format = 2;
    String name;
    unsigned layerSize = 0, chunkSize = 0;
    bool whole = readHeader(s, format, name, layerSize, chunkSize);
    if (name != "$" && name != "Streamable")
        return;
    startsWithRoot_ = true;
    path_ = name.str();
    if (!whole)
        return;
    const uint64_t rootEnd = uint64_t{f.position()} + chunkSize;
    end_ = rootEnd;
    uint64_t next = uint64_t{f.position()} + layerSize;
    // Each header takes bytes, so the walk ends with the root's chunk.
    while (next < rootEnd && next < f.size()) {
        f.position(static_cast<unsigned>(next));
        if (!readHeader(s, format, name, layerSize, chunkSize))
            return;
        path_ += '.';
        path_ += name.str();
        next = uint64_t{f.position()} + layerSize;
    }
    complete_ = next == rootEnd && rootEnd <= f.size();
}
