// Fuzz target: the workbench's list of playhead times.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "app/workbench/TimesList.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    std::vector<double> times;
    const bool ok = parseTimesList(text, times);
    if (ok != !times.empty())
        std::abort();
    size_t commas = 0;
    for (char c : text)
        commas += c == ',';
    if (ok && times.size() != commas + 1)
        std::abort();
    for (double t : times)
        if (!std::isfinite(t))
            std::abort();
    return 0;
}
