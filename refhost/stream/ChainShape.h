// ChainShape: the short names of the top chain of layers of one object, read from the headers
// alone, which name its class in the table of classes ("$.T.N.J").
#pragma once

#include <cstdint>
#include <string>

// Follows the headers from layer to layer by their sizes without reading any body, switching
// format at the root layer as the unpacker does. It stops at the end of the root's chunk, at a
// broken header, or at the end of the bytes.
class ChainShape {
public:
    explicit ChainShape(const std::string& bytes);

    // True when the bytes begin with a root layer ("$" or "Streamable").
    bool startsWithRoot() const { return startsWithRoot_; }
    const std::string& shortPath() const { return path_; }
    // True when the walk ended exactly at the end of the root's chunk: no header was cut.
    bool complete() const { return complete_; }
    // Where the root's chunk ends, as its header says; 0 when there is no whole root header.
    uint64_t end() const { return end_; }

private:
    bool startsWithRoot_ = false;
    bool complete_ = false;
    uint64_t end_ = 0;
    std::string path_;
};
