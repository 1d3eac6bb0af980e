// Fuzz target: the saved-layout text reader and the point text form of preferences.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "host/PersistableXY.h"
#include "host/configb.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    String text(reinterpret_cast<const char*>(data), size);
    configb c;
    String error;
    if (configb::fromText(text, c, error)) {
        // What was read writes back to text that reads to the same record.
        configb again;
        String error2;
        if (!configb::fromText(c.toText(), again, error2) || !(again == c))
            std::abort();
    } else if (!c.empty() || error.empty()) {
        std::abort();
    }
    XY<int> p;
    if (PersistableXY::parse(text, p)) {
        XY<int> q;
        if (!PersistableXY::parse(PersistableXY::toString(p), q) || !(q == p))
            std::abort();
    }
    return 0;
}
