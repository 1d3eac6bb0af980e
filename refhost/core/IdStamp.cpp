// Text form of IdStamp and Cookie.
#include "host/IdStamp.h"

#include <cerrno>
#include <cstdlib>

#include "host/Cookie.h"

namespace {
// Reads one decimal word; false unless it is all digits and fits in 32 bits.
bool readWord(const char*& p, uint32_t& out) {
    if (*p < '0' || *p > '9')
        return false;
    uint64_t v = 0;
    while (*p >= '0' && *p <= '9') {
        v = v * 10 + static_cast<uint64_t>(*p - '0');
        if (v > 0xFFFFFFFFull)
            return false;
        ++p;
    }
    out = static_cast<uint32_t>(v);
    return true;
}
} // namespace

IdStamp::IdStamp(const char* text) {
    if (!text)
        return;
    const char* p = text;
    uint32_t a, b, c;
    if (!readWord(p, a) || *p++ != '.' || !readWord(p, b) || *p++ != '.' || !readWord(p, c) || *p != '\0')
        return;
    a_ = a;
    b_ = b;
    c_ = c;
}

String IdStamp::asString() const {
    return stringFormat("%u.%u.%u", a_, b_, c_);
}

Cookie Cookie::fromString(const String& text) {
    if (text.size() < 2)
        return Cookie();
    char k = text[0];
    if (k != EditKind && k != MaterialKind && k != EffectGraphKind)
        return Cookie();
    IdStamp id(text.c_str() + 1);
    if (!id.valid())
        return Cookie();
    return Cookie(static_cast<Kind>(k), id);
}

String Cookie::asString() const {
    if (!valid())
        return String("-");
    return String(std::string(1, static_cast<char>(kind_))) + id_.asString();
}
