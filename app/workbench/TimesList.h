// TimesList: the list of playhead times the workbench takes on its command line.
#pragma once

#include <cmath>
#include <cstdlib>
#include <string>
#include <vector>

// "T1,T2,...": finite numbers of seconds separated by single commas, at least one, nothing
// else (no spaces, no units, no empty item). On failure `out` is left empty.
inline bool parseTimesList(const std::string& text, std::vector<double>& out) {
    out.clear();
    size_t from = 0;
    while (from <= text.size()) {
        const size_t comma = std::min(text.find(',', from), text.size());
        const std::string one = text.substr(from, comma - from);
        char* end = nullptr;
        const double t = std::strtod(one.c_str(), &end);
        if (one.empty() || std::isspace(static_cast<unsigned char>(one[0])) || *end != '\0' ||
            !std::isfinite(t)) {
            out.clear();
            return false;
        }
        out.push_back(t);
        from = comma + 1;
    }
    return !out.empty();
}
