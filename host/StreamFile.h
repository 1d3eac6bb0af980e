// StreamFile: a seekable byte file with a current position, held whole in memory. It is made
// over bytes already in memory, or loaded from a file on disk; what is written can be taken as
// bytes or saved to a file. All integers and doubles are little-endian.
#pragma once

#include <cstdint>
#include <string>

// The position may be set anywhere, also beyond the end: reading there fails and eof() holds;
// writing there fills the gap with zero bytes. A read that cannot be completed leaves its
// argument alone and moves the position to the end, so that the caller's eof() guard stops
// whatever would follow.
class StreamFile {
public:
    // An empty file, for writing.
    StreamFile() = default;
    // A file over a copy of `bytes`, positioned at 0.
    explicit StreamFile(std::string bytes) : bytes_(std::move(bytes)) {}

    // Loads a file from disk; false with a reason when it cannot be read or is larger than a
    // position can address.
    bool load(const std::string& path, std::string& error);
    // Writes the whole content to a file on disk.
    bool save(const std::string& path, std::string& error) const;

    bool eof() const { return pos_ >= bytes_.size(); }
    unsigned position() const { return pos_; }
    void position(unsigned p) { pos_ = p; }
    unsigned size() const { return static_cast<unsigned>(bytes_.size()); }
    // Bytes from the position to the end; 0 beyond the end.
    unsigned remaining() const { return eof() ? 0 : static_cast<unsigned>(bytes_.size() - pos_); }
    const std::string& bytes() const { return bytes_; }

    void setCookedChar(char c);
    void setUnsignedShort(unsigned short v);
    void setUnsignedLong(unsigned v);
    void setDouble(double v);
    void setBytes(const char* data, std::size_t n);

    bool getCookedChar(char& c);
    bool getUnsignedChar(unsigned char& c);
    bool getUnsignedShort(unsigned short& v);
    bool getUnsignedLong(unsigned& v);
    bool getDouble(double& v);
    // Reads n bytes; fails, moving to the end, when fewer remain.
    bool getBytes(std::string& out, unsigned n);

private:
    bool take(void* out, unsigned n);
    void put(const void* data, std::size_t n);

    std::string bytes_;
    unsigned pos_ = 0;
};
