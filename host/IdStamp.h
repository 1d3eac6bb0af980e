// IdStamp: the identity of a graph node, a channel or a group: three 32-bit words, totally ordered.
// Its text form is the three words in decimal joined by dots, "17.0.3".
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

#include "host/LightweightString.h"

class PStream;

class IdStamp {
public:
    IdStamp() = default;
    IdStamp(uint32_t a, uint32_t b, uint32_t c) : a_(a), b_(b), c_(c) {}
    // Parses the text form; anything else gives the invalid stamp.
    explicit IdStamp(const char* text);

    bool operator==(const IdStamp& o) const { return a_ == o.a_ && b_ == o.b_ && c_ == o.c_; }
    bool operator!=(const IdStamp& o) const { return !(*this == o); }
    bool operator<(const IdStamp& o) const { return compare(o) < 0; }
    int compare(const IdStamp& o) const {
        if (a_ != o.a_)
            return a_ < o.a_ ? -1 : 1;
        if (b_ != o.b_)
            return b_ < o.b_ ? -1 : 1;
        if (c_ != o.c_)
            return c_ < o.c_ ? -1 : 1;
        return 0;
    }
    // The zero stamp is the one invalid stamp.
    bool valid() const { return a_ != 0 || b_ != 0 || c_ != 0; }
    String asString() const;

    // Twelve bytes, little-endian words in order. unpack reads the layout of the given stamp
    // version: 2 (and later) is the twelve-byte form; version 1 held two 16-bit words and a
    // 32-bit word.
    void pack(PStream& s) const;
    void unpack(PStream& s, int stampVersion);

    uint32_t a() const { return a_; }
    uint32_t b() const { return b_; }
    uint32_t c() const { return c_; }

private:
    uint32_t a_ = 0;
    uint32_t b_ = 0;
    uint32_t c_ = 0;
};

struct IdStampLess {
    bool operator()(const IdStamp& l, const IdStamp& r) const { return l.compare(r) < 0; }
};

// A hash whose every bit depends on the whole id, for tables that index by the low bits.
struct IdStampMixHash {
    static uint64_t mix(const IdStamp& id) {
        uint64_t h = (static_cast<uint64_t>(id.a()) << 32 | id.b()) * 0x9E3779B97F4A7C15ull;
        h ^= id.c() + 0x632BE59BD9B4E019ull + (h << 6) + (h >> 2);
        h ^= h >> 31;
        h *= 0xBF58476D1CE4E5B9ull;
        return h ^ (h >> 29);
    }
    size_t operator()(const IdStamp& id) const { return static_cast<size_t>(mix(id)); }
};

struct IdStampHash {
    size_t operator()(const IdStamp& id) const {
        return std::hash<uint64_t>()((uint64_t{id.a()} << 40) ^ (uint64_t{id.b()} << 20) ^ id.c());
    }
};
