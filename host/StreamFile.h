// StreamFile: a seekable byte file with a current position, held whole in memory. It is made
// over bytes already in memory, or loaded from a file on disk; what is written can be taken as
// bytes or saved to a file. All integers and doubles are little-endian.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <string>

// The position may be set anywhere, also beyond the end: reading there fails and eof() holds;
// writing there fills the gap with zero bytes. A read that cannot be completed leaves its
// argument alone and moves the position to the end, so that the caller's eof() guard stops
// whatever would follow. Writing keeps spare room beyond the end, so that a small write is a
// copy; bytes() gives exactly what was written.
class StreamFile {
public:
    // An empty file, for writing.
    StreamFile() = default;
    // A file over a copy of `bytes`, positioned at 0.
    explicit StreamFile(std::string bytes)
        : bytes_(std::move(bytes)), end_(static_cast<unsigned>(bytes_.size())) {}

    // Loads a file from disk; false with a reason when it cannot be read or is larger than a
    // position can address.
    bool load(const std::string& path, std::string& error);
    // Writes the whole content to a file on disk.
    bool save(const std::string& path, std::string& error) const;

    bool eof() const { return pos_ >= end_; }
    unsigned position() const { return pos_; }
    void position(unsigned p) { pos_ = p; }
    unsigned size() const { return end_; }
    // Bytes from the position to the end; 0 beyond the end.
    unsigned remaining() const { return eof() ? 0 : end_ - pos_; }
    const std::string& bytes() const {
        if (bytes_.size() != end_)
            bytes_.resize(end_);
        return bytes_;
    }
    // Room for n bytes in all without growing again; what the file holds is unchanged.
    void reserve(unsigned n) {
        if (n > bytes_.capacity())
            bytes_.reserve(n);
    }

    void setCookedChar(char c) { put(&c, 1); }
    void setUnsignedShort(unsigned short v) { putLittleEndian<uint16_t>(v); }
    void setUnsignedLong(unsigned v) { putLittleEndian<uint32_t>(v); }
    void setDouble(double v) { putLittleEndian<uint64_t>(std::bit_cast<uint64_t>(v)); }
    void setBytes(const char* data, std::size_t n) { put(data, n); }

    bool getCookedChar(char& c) { return take(&c, 1); }
    bool getUnsignedChar(unsigned char& c) { return take(&c, 1); }
    bool getUnsignedShort(unsigned short& v) { return takeLittleEndian<uint16_t>(v); }
    bool getUnsignedLong(unsigned& v) { return takeLittleEndian<uint32_t>(v); }
    bool getDouble(double& v) {
        uint64_t bits = 0;
        if (!takeLittleEndian<uint64_t>(bits))
            return false;
        v = std::bit_cast<double>(bits);
        return true;
    }
    // Reads n bytes; fails, moving to the end, when fewer remain.
    bool getBytes(std::string& out, unsigned n);

private:
    // The common cases, reading inside the file and writing at its end or over bytes it holds,
    // are done here; the rest (a gap to fill, a short read) out of line.
    bool take(void* out, unsigned n) {
        if (remaining() >= n) {
            std::memcpy(out, bytes_.data() + pos_, n);
            pos_ += n;
            return true;
        }
        return takeShort();
    }
    void put(const void* data, std::size_t n) {
        if (pos_ == end_ && bytes_.size() - end_ >= n) {
            copySmall(bytes_.data() + pos_, data, n);
            pos_ += static_cast<unsigned>(n);
            end_ = pos_;
        } else if (pos_ < end_ && end_ - pos_ >= n) {
            copySmall(bytes_.data() + pos_, data, n);
            pos_ += static_cast<unsigned>(n);
        } else {
            putSlow(data, n);
        }
    }
    // Short copies of a size known only at run time, such as a layer header, without a call.
    static void copySmall(char* to, const void* from, std::size_t n) {
        const char* f = static_cast<const char*>(from);
        if (n >= 8 && n <= 16) {
            uint64_t head, tail;
            std::memcpy(&head, f, 8);
            std::memcpy(&tail, f + n - 8, 8);
            std::memcpy(to, &head, 8);
            std::memcpy(to + n - 8, &tail, 8);
        } else {
            std::memcpy(to, f, n);
        }
    }
    template <class T>
    bool takeLittleEndian(T& v) {
        if (remaining() < sizeof(T))
            return takeShort();
        const char* at = bytes_.data() + pos_;
        if constexpr (std::endian::native == std::endian::little) {
            std::memcpy(&v, at, sizeof(T));
        } else {
            uint64_t x = 0;
            for (std::size_t i = 0; i < sizeof(T); ++i)
                x |= uint64_t{static_cast<unsigned char>(at[i])} << (8 * i);
            v = static_cast<T>(x);
        }
        pos_ += sizeof(T);
        return true;
    }
    template <class T>
    void putLittleEndian(T v) {
        unsigned char b[sizeof(T)];
        if constexpr (std::endian::native == std::endian::little) {
            std::memcpy(b, &v, sizeof(T));
        } else {
            for (std::size_t i = 0; i < sizeof(T); ++i)
                b[i] = static_cast<unsigned char>(static_cast<uint64_t>(v) >> (8 * i));
        }
        put(b, sizeof(T));
    }
    // A read that cannot be completed: to the end, false.
    bool takeShort();
    void putSlow(const void* data, std::size_t n);

    // The file is the first end_ bytes; the rest is room to write into, all zeros.
    mutable std::string bytes_;
    unsigned end_ = 0;
    unsigned pos_ = 0;
};
