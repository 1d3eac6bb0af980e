// Helpers for the stream tests: hand-built byte strings and a captured log.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/Log.h"

// Builds little-endian bytes the way a file would hold them.
class Bytes {
public:
    Bytes& u8(unsigned v) {
        s_ += static_cast<char>(v);
        return *this;
    }
    Bytes& u16(unsigned v) { return u8(v & 0xFF).u8((v >> 8) & 0xFF); }
    Bytes& u32(uint32_t v) { return u16(v & 0xFFFF).u16(v >> 16); }
    Bytes& f64(double d) {
        uint64_t b;
        static_assert(sizeof b == sizeof d);
        __builtin_memcpy(&b, &d, 8);
        return u32(static_cast<uint32_t>(b)).u32(static_cast<uint32_t>(b >> 32));
    }
    Bytes& str(const std::string& t) {
        u32(static_cast<uint32_t>(t.size()));
        s_ += t;
        return *this;
    }
    Bytes& raw(const std::string& t) {
        s_ += t;
        return *this;
    }
    // A format-2 header.
    Bytes& header(const std::string& name, unsigned major, unsigned minor, uint32_t layer, uint32_t chunk) {
        return str(name).u8(major).u8(minor).u32(layer).u32(chunk);
    }
    const std::string& bytes() const { return s_; }
    std::size_t size() const { return s_.size(); }

private:
    std::string s_;
};

// Collects every log line while it lives.
class LogCapture {
public:
    LogCapture() {
        setLogSink([this](const std::string& line) { lines.push_back(line); });
    }
    ~LogCapture() { setLogSink(nullptr); }
    std::string all() const {
        std::string out;
        for (const auto& l : lines)
            out += l;
        return out;
    }
    std::vector<std::string> lines;
};
