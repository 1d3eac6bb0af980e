// Fuzz target: arbitrary text read as a JSON document; what reads is written, and the written text
// must read back and write again to the same text. The same bytes are encoded as Base64 and must
// decode back; decoded as Base64, they must not upset the decoder.
#include <cstddef>
#include <cstdint>
#include <string>

#include "refhost/core/Base64.h"
#include "refhost/json/Json.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    json::Value doc;
    json::ParseError error;
    if (json::parse(text, doc, error)) {
        const std::string once = json::write(doc);
        json::Value again;
        if (!json::parse(once, again, error) || json::write(again) != once)
            __builtin_trap();
    } else if (error.line < 1 || error.column < 1 || error.message.empty()) {
        __builtin_trap(); // every fault has a place and a reason
    }
    std::string bytes;
    if (!base64Decode(base64Encode(text), bytes) || bytes != text)
        __builtin_trap();
    base64Decode(text, bytes);
    return 0;
}
