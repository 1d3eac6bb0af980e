// ImageFileCache: the reference host's reader of image files into surfaces. A picture is kept by
// the name asked for and read again when the file's time or size changes; a file that cannot be
// read gives null (and is not tried again until it changes), is told once to the log, and never
// opens a dialogue.
#pragma once

#include <cstdint>
#include <list>
#include <string>
#include <vector>

#include "host/ZkImageCache.h"

class ImageFileCache : public ZkImage::Cache {
public:
    // The largest picture read, in pixels: larger files are refused rather than allocated.
    static constexpr int64_t kMaxPixels = int64_t(1) << 23;
    static constexpr int kMaxSide = 16384;
    static constexpr int kMaxChannels = 64;

    static ImageFileCache& instance();

    Zk::Ptr<Zk::Image::Surface> loadImage(const WString& name, uint32_t dataFormat, int width,
                                          int height) override;

    // Where a relative name is looked for: the working folder, then each of these in order.
    // By default the bundled samples folder, which holds the sample edits' images.
    void setSearchFolders(std::vector<std::string> folders) { folders_ = std::move(folders); }
    // The file a name stands for, empty when none exists.
    std::string resolve(const std::string& name) const;

    // Reads a file without keeping it; null for anything that is no readable picture. Stills are
    // PNG, JPEG, TIFF and BMP files, known by their first bytes whatever their names; only their
    // readers are tried, which read no more than the header before the size is checked. Formats
    // whose readers allocate what a header claims before that check are not read.
    static Zk::Ptr<Zk::Image::Surface> readFile(const std::string& path);
    // The image library's name of the file's format, null for none of those.
    static const char* formatOf(const std::string& path);

    void clear() { entries_.clear(); }
    size_t size() const { return entries_.size(); }
    // How many times a file was actually read (not found kept): for tests.
    unsigned reads() const { return reads_; }

private:
    ImageFileCache();

    struct Entry {
        std::string name;
        int width = 0;
        int height = 0;
        int64_t stamp = 0;
        uintmax_t bytes = 0;
        Zk::Ptr<Zk::Image::Surface> picture;
    };
    static constexpr size_t kCapacity = 64;

    std::vector<std::string> folders_;
    std::list<Entry> entries_; // most recently used first
    std::vector<std::string> reported_;
    unsigned reads_ = 0;
};
