// PStreamObserver: a listener that a reader of stream files may hang on a PStream to see each
// object and layer header as the unpacker meets them. Unpacking behaves the same with or
// without one.
#pragma once

#include "host/LightweightString.h"

class PStreamObserver {
public:
    struct LayerHeader {
        String shortName;
        unsigned major = 0;
        unsigned minor = 0;
        unsigned layerSize = 0;
        unsigned chunkSize = 0;
        unsigned start = 0;     // the header's first byte
        unsigned bodyStart = 0; // the byte after the chunk size
        int format = 0;         // the stream format the sizes were read in
    };

    virtual ~PStreamObserver() = default;
    // An object of the class named by its dotted hierarchy path begins at `position`.
    virtual void objectBegin(const String& hierarchyName, unsigned position) = 0;
    virtual void layerHeader(const LayerHeader& header) = 0;
    // The object ends with the status of its last layer.
    virtual void objectEnd(int status, unsigned position) = 0;
};
