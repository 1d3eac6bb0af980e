// Fuzz target: arbitrary bytes read as a scripted workbench session. A script that reads holds
// only steps whose fields are in range.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "app/workbench/Script.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    Script script;
    std::string error;
    if (!readScript(text, script, error)) {
        if (error.empty() || error.find('\n') != std::string::npos || !script.steps.empty())
            __builtin_trap();
        return 0;
    }
    for (const ScriptStep& s : script.steps) {
        if (std::abs(s.at.x) > 100000 || std::abs(s.at.y) > 100000 || !std::isfinite(s.seconds))
            __builtin_trap();
        if ((s.action == ScriptStep::KeyDown || s.action == ScriptStep::KeyUp) && !isScriptKeyName(s.text))
            __builtin_trap();
    }
    return 0;
}
