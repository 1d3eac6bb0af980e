// A seekable byte file held in memory, little-endian.
#include <sys/stat.h>

#include "host/StreamFile.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <limits>

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
    end_ = static_cast<unsigned>(bytes_.size());
    pos_ = 0;
    return true;
}

bool StreamFile::save(const std::string& path, std::string& error) const {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    if (!out || !out.write(bytes_.data(), static_cast<std::streamsize>(end_))) {
        error = "cannot write " + path;
        return false;
    }
    return true;
}

// Past the room at the end: the room grows to twice what it was, inside what was reserved
// when there is such, and a gap between the end and the position is filled with zeros.
void StreamFile::putSlow(const void* data, std::size_t n) {
    const uint64_t needed = uint64_t{std::max(pos_, end_)} + n;
    if (needed > bytes_.size()) {
        uint64_t room = std::max<uint64_t>({needed, uint64_t{bytes_.size()} * 2, 256});
        if (bytes_.capacity() >= needed)
            room = std::min<uint64_t>(room, bytes_.capacity());
        bytes_.resize(static_cast<std::size_t>(room), '\0');
    }
    if (pos_ > end_)
        std::memset(bytes_.data() + end_, 0, pos_ - end_);
    std::memcpy(bytes_.data() + pos_, data, n);
    pos_ += static_cast<unsigned>(n);
    end_ = std::max(end_, pos_);
}

bool StreamFile::takeShort() {
    pos_ = std::max<unsigned>(pos_, size());
    return false;
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
