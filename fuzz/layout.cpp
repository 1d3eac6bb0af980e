// Fuzz target: the screen layout reader: all or nothing, and what it reads writes back the same.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "host/ScreenLayout.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const bool registered = [] {
        for (const char* type : {"FXGraphTool", "Workbench", "TileViewer"})
            ScreenLayout::registerMaker(type, [](GlobCreationInfo*) { return static_cast<Glob*>(nullptr); });
        return true;
    }();
    (void)registered;
    String text(reinterpret_cast<const char*>(data), size);
    std::vector<configb> windows;
    String error;
    if (ScreenLayout::fromText(text, windows, error)) {
        std::vector<configb> again;
        String error2;
        if (!ScreenLayout::fromText(ScreenLayout::toText(windows), again, error2) ||
            again.size() != windows.size())
            std::abort();
        for (size_t i = 0; i < again.size(); ++i)
            if (!(again[i] == windows[i]))
                std::abort();
    } else if (!windows.empty() || error.empty() || error.view().find('\n') != std::string_view::npos) {
        std::abort();
    }
    return 0;
}
