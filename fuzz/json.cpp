// Fuzz target: arbitrary text read as a JSON document; what reads is written, and the written text
// must read back and write again to the same text. Read member by member, with one member's items
// streamed, the text must give the same values or the same fault. The same bytes are encoded as
// Base64 and must decode back; decoded as Base64, they must not upset the decoder.
#include <cstddef>
#include <cstdint>
#include <string>

#include "refhost/core/Base64.h"
#include "refhost/json/Json.h"
#include "refhost/json/MemberSink.h"

namespace {

// Rebuilds the top-level object from what it is told.
struct Rebuild : json::MemberSink {
    json::Value::Members members;
    json::Value::Items pending;
    bool streamsItems(const std::string& key) override { return key == "a"; }
    bool item(const std::string&, json::Value v) override {
        pending.push_back(std::move(v));
        return true;
    }
    bool member(std::string key, json::Value v) override {
        if (v.isArray() && v.items().empty() && !pending.empty())
            v.setItems(std::move(pending));
        pending.clear();
        members.emplace_back(std::move(key), std::move(v));
        return true;
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    json::Value doc;
    json::ParseError error;
    const bool ok = json::parse(text, doc, error);
    if (ok) {
        const std::string once = json::write(doc);
        json::Value again;
        if (!json::parse(once, again, error) || json::write(again) != once)
            __builtin_trap();
    } else if (error.line < 1 || error.column < 1 || error.message.empty()) {
        __builtin_trap(); // every fault has a place and a reason
    }
    Rebuild sink;
    json::ParseError memberError;
    const bool membersOk = json::parseMembers(text, sink, memberError);
    if (ok && doc.isObject()) {
        json::Value rebuilt = json::Value::object();
        rebuilt.setMembers(std::move(sink.members));
        if (!membersOk || json::write(rebuilt) != json::write(doc))
            __builtin_trap();
    } else if (!ok &&
               (membersOk || (memberError.message != error.message &&
                              memberError.message != "expected an object at the top of the document"))) {
        __builtin_trap();
    }
    std::string bytes;
    if (!base64Decode(base64Encode(text), bytes) || bytes != text)
        __builtin_trap();
    base64Decode(text, bytes);
    return 0;
}
