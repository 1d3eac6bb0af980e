// Printing layer headers as they are read.
#include "app/strm/LayerPrinter.h"

void LayerPrinter::objectBegin(const String& hierarchyName, unsigned position) {
    int indent = levels_.empty() ? base_ : levels_.back().indent + 2 * levels_.back().layers + 2;
    levels_.push_back({indent, 0});
    std::fprintf(out_, "%*sobject %s at %u\n", indent, "", printable(hierarchyName.str()).c_str(), position);
}

void LayerPrinter::layerHeader(const LayerHeader& h) {
    if (levels_.empty())
        return;
    Level& level = levels_.back();
    ++level.layers;
    std::fprintf(out_, "%*s%s v%u.%u layer %u chunk %u at %u (format %d)\n", level.indent + 2 * level.layers,
                 "", h.shortName.empty() ? "\"\"" : printable(h.shortName.str()).c_str(), h.major, h.minor,
                 h.layerSize, h.chunkSize, h.start, h.format);
}

void LayerPrinter::objectEnd(int status, unsigned position) {
    if (levels_.empty())
        return;
    if (status != 2 && status != 3)
        std::fprintf(out_, "%*sobject ends with status %d at %u\n", levels_.back().indent, "", status,
                     position);
    levels_.pop_back();
}

int LayerPrinter::currentIndent() const {
    return levels_.empty() ? base_ : levels_.back().indent + 2 * levels_.back().layers + 2;
}

std::string LayerPrinter::printable(const std::string& text) {
    std::string out;
    out.reserve(text.size());
    for (unsigned char c : text) {
        if (c < 0x20 || c == 0x7F) {
            char esc[5];
            std::snprintf(esc, sizeof esc, "\\x%02X", c);
            out += esc;
        } else if (c == '\\') {
            out += "\\\\";
        } else {
            out += static_cast<char>(c);
        }
    }
    return out;
}
