// LayerPrinter: prints each object and layer header as the unpacker meets them, indented as
// chunks nest: a layer inside the chunk of the one before it, an object inside a layer's body.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "host/PStreamObserver.h"

class LayerPrinter : public PStreamObserver {
public:
    LayerPrinter(std::FILE* out, int baseIndent) : out_(out), base_(baseIndent) {}

    void objectBegin(const String& hierarchyName, unsigned position) override;
    void layerHeader(const LayerHeader& header) override;
    void objectEnd(int status, unsigned position) override;
    // The indentation of whatever is printed now, for lines from elsewhere (the log).
    int currentIndent() const;
    // Text read from a file, safe for a terminal: control bytes and DEL as \xNN, backslash doubled.
    static std::string printable(const std::string& text);

private:
    struct Level {
        int indent;
        int layers;
    };

    std::FILE* out_;
    int base_;
    std::vector<Level> levels_;
};
