// Fuzz target: arbitrary bytes read as a position manager, as an edit file's object would be,
// and the result packed again.
#include <cstddef>
#include <cstdint>
#include <string>

#include "host/Log.h"
#include "host/PStream.h"
#include "host/StreamFile.h"
#include "nodeui/NodeUIPosManager.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const bool quiet = (setLogSink([](const std::string&) {}), true);
    (void)quiet;
    StreamFile f(std::string(reinterpret_cast<const char*>(data), size));
    PStream s(&f);
    Zk::Ptr<Streamable> obj = NodeUIPosManager::STRM_L_NodeUIPosManager_builder(s);
    if (obj) {
        StreamFile out;
        PStream w(&out);
        w << *obj;
    }
    return 0;
}
