// Fuzz target: arbitrary bytes read as a timeline interchange file; what opens must save as an
// edit file that reads back.
#include <cstddef>
#include <cstdint>
#include <string>

#include "refhost/edit/EditFile.h"
#include "refhost/edit/OtioReader.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::string text(reinterpret_cast<const char*>(data), size);
    Edit edit;
    std::string error;
    // Relative media paths start from a folder that does not exist.
    if (OtioReader::loadFromText(text, "/nonexistent-fuzz-folder/fuzz.otio", edit, error)) {
        Edit again;
        if (!EditFile::loadFromText(EditFile::saveToText(edit), "again", again, error))
            __builtin_trap();
    }
    return 0;
}
