// Fuzz target: arbitrary text read as an edit file, and what loads saved and read back. Read as it
// goes and read whole, the text must give the same edit or the same fault.
#include <cstddef>
#include <cstdint>
#include <string>

#include "refhost/edit/EditFile.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::string text(reinterpret_cast<const char*>(data), size);
    Edit edit;
    std::string error;
    const bool ok = EditFile::loadFromText(text, "fuzz", edit, error);
    Edit whole;
    std::string wholeError;
    if (EditFile::loadWholeFromText(text, "fuzz", whole, wholeError) != ok || wholeError != error)
        __builtin_trap();
    if (ok) {
        const std::string saved = EditFile::saveToText(edit);
        if (EditFile::saveToText(whole) != saved)
            __builtin_trap();
        Edit again;
        if (!EditFile::loadFromText(saved, "again", again, error))
            __builtin_trap(); // what was saved must read back
    }
    return 0;
}
