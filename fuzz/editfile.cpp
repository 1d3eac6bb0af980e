// Fuzz target: arbitrary text read as an edit file, and what loads saved and read back.
#include <cstddef>
#include <cstdint>
#include <string>

#include "refhost/edit/EditFile.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::string text(reinterpret_cast<const char*>(data), size);
    Edit edit;
    std::string error;
    if (EditFile::loadFromText(text, "fuzz", edit, error)) {
        Edit again;
        if (!EditFile::loadFromText(EditFile::saveToText(edit), "again", again, error))
            __builtin_trap(); // what was saved must read back
    }
    return 0;
}
