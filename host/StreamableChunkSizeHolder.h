// StreamableChunkSizeHolder: a base of Streamable that holds the size of the object's chunk for
// the host's stream operators, so that they can step over derived layers they do not know.
#pragma once

class StreamableChunkSizeHolder {
public:
    unsigned chunkSize() const { return chunkSize_; }
    void setChunkSize(unsigned n) { chunkSize_ = n; }

private:
    unsigned chunkSize_ = 0;
};
