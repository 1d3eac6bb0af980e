// A seekable byte file held in memory, little-endian.
#include <sys/stat.h>

#include "host/StreamFile.h"

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <limits>

namespace {

template <class T>
T fromLittleEndian(const unsigned char* p) {
    uint64_t v = 0;
    for (std::size_t i = 0; i < sizeof(T); ++i)
        v |= uint64_t{p[i]} << (8 * i);
    return static_cast<T>(v);
}

template <class T>
void toLittleEndian(T value, unsigned char* p) {
    uint64_t v = static_cast<uint64_t>(value);
    for (std::size_t i = 0; i < sizeof(T); ++i)
        p[i] = static_cast<unsigned char>(v >> (8 * i));
}

} // namespace

bool StreamFile::load(const std::string& path, std::string& error) {
    // A device or a pipe has no size to trust and may give bytes forever.
    struct stat st {};
    if (::stat(path.c_str(), &st) == 0 && !S_ISREG(st.st_mode)) {
        error = path + " is not a regular file";
        return false;
    }
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        error = "cannot open " + path;
        return false;
    }
    in.seekg(0, std::ios::end);
    std::streamoff n = in.tellg();
    if (n < 0 || static_cast<uint64_t>(n) >= std::numeric_limits<unsigned>::max()) {
        error = path + " is too large";
        return false;
    }
    in.seekg(0, std::ios::beg);
    std::string bytes(static_cast<std::size_t>(n), '\0');
    if (!in.read(bytes.data(), n)) {
        error = "cannot read " + path;
        return false;
    }
    bytes_ = std::move(bytes);
    pos_ = 0;
    return true;
}

bool StreamFile::save(const std::string& path, std::string& error) const {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    if (!out || !out.write(bytes_.data(), static_cast<std::streamsize>(bytes_.size()))) {
        error = "cannot write " + path;
        return false;
    }
    return true;
}

void StreamFile::put(const void* data, std::size_t n) {
    if (pos_ > bytes_.size())
        bytes_.resize(pos_, '\0');
    const std::size_t overlap = std::min(n, bytes_.size() - pos_);
    std::memcpy(bytes_.data() + pos_, data, overlap);
    bytes_.append(static_cast<const char*>(data) + overlap, n - overlap);
    pos_ += static_cast<unsigned>(n);
}

bool StreamFile::take(void* out, unsigned n) {
    if (remaining() < n) {
        pos_ = std::max<unsigned>(pos_, size());
        return false;
    }
    std::memcpy(out, bytes_.data() + pos_, n);
    pos_ += n;
    return true;
}

void StreamFile::setCookedChar(char c) {
    put(&c, 1);
}

void StreamFile::setUnsignedShort(unsigned short v) {
    unsigned char b[2];
    toLittleEndian(v, b);
    put(b, 2);
}

void StreamFile::setUnsignedLong(unsigned v) {
    unsigned char b[4];
    toLittleEndian(static_cast<uint32_t>(v), b);
    put(b, 4);
}

void StreamFile::setDouble(double v) {
    uint64_t bits;
    std::memcpy(&bits, &v, 8);
    unsigned char b[8];
    toLittleEndian(bits, b);
    put(b, 8);
}

void StreamFile::setBytes(const char* data, std::size_t n) {
    put(data, n);
}

bool StreamFile::getCookedChar(char& c) {
    return take(&c, 1);
}

bool StreamFile::getUnsignedChar(unsigned char& c) {
    return take(&c, 1);
}

bool StreamFile::getUnsignedShort(unsigned short& v) {
    unsigned char b[2];
    if (!take(b, 2))
        return false;
    v = fromLittleEndian<unsigned short>(b);
    return true;
}

bool StreamFile::getUnsignedLong(unsigned& v) {
    unsigned char b[4];
    if (!take(b, 4))
        return false;
    v = fromLittleEndian<uint32_t>(b);
    return true;
}

bool StreamFile::getDouble(double& v) {
    unsigned char b[8];
    if (!take(b, 8))
        return false;
    uint64_t bits = fromLittleEndian<uint64_t>(b);
    std::memcpy(&v, &bits, 8);
    return true;
}

bool StreamFile::getBytes(std::string& out, unsigned n) {
    if (remaining() < n) {
        pos_ = std::max<unsigned>(pos_, size());
        return false;
    }
    out.assign(bytes_.data() + pos_, n);
    pos_ += n;
    return true;
}
