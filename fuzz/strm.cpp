// Fuzz target: arbitrary bytes as the stream reader meets them: the shape of a chain of layers,
// an edit's object store split into its objects, and each object built through the table of
// classes as the edit loader builds it, then packed again.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "host/Edit.h"
#include "host/Log.h"
#include "host/PStream.h"
#include "host/StreamFile.h"
#include "nodeui/NodeUIPosManager.h"
#include "refhost/stream/ChainShape.h"
#include "refhost/stream/EditObjectStore.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const bool quiet = (setLogSink([](const std::string&) {}), true);
    (void)quiet;
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    ChainShape shape(bytes);
    (void)shape.complete();
    EditPtr edit(new Edit);
    std::string error;
    if (isEditObjectStore(bytes)) {
        unpackEditObjects(*edit, bytes, error);
    } else {
        unpackEditObject(*edit, "NodePosManager", bytes, error);
        unpackEditObject(*edit, "other", bytes, error);
    }
    // Whatever was read packs again.
    (void)packEditObjects(*edit);
    return 0;
}
