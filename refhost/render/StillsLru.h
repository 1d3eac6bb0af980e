// StillsLru: the reference host's stills cache: the most recently used stills by render context,
// bounded by count and by bytes; the least recently used go first. Null stills are not kept.
#pragma once

#include <list>
#include <string>
#include <unordered_map>

#include "host/StillsCache.h"

class Edit;

class StillsLru : public Render::StillsCache {
public:
    // Enough for every node thumbnail of a screenful of graph (a 100x56 still is 22 KB); the byte
    // bound is what keeps full frames in check.
    static constexpr size_t kDefaultMaxStills = 8192;
    static constexpr size_t kDefaultMaxBytes = size_t(256) << 20;

    static StillsLru& instance();

    Zk::Ptr<Zk::Image::Surface> getStillImage(const Render::RenderContextRep& context) override;
    void add(const Render::RenderContextRep& context, const Zk::Ptr<Zk::Image::Surface>& still,
             eSave save) override;
    void clear() override;
    size_t size() const override { return entries_.size(); }

    // Drops the stills of an edit whose time lies in [from, to).
    void dropEditTimes(const Edit* edit, double from, double to);

    void setLimits(size_t maxStills, size_t maxBytes);
    size_t bytes() const { return bytes_; }
    unsigned hits() const { return hits_; }
    unsigned misses() const { return misses_; }
    void resetCounters() { hits_ = misses_ = 0; }

private:
    StillsLru() = default;
    struct Entry {
        std::string key;
        const Edit* edit = nullptr;
        double time = 0.0;
        size_t bytes = 0;
        Zk::Ptr<Zk::Image::Surface> still;
    };
    static std::string keyOf(const Render::RenderContextRep& context);
    void erase(std::list<Entry>::iterator it);
    void trim();

    std::list<Entry> entries_; // most recently used first
    std::unordered_map<std::string, std::list<Entry>::iterator> index_;
    size_t bytes_ = 0;
    size_t maxStills_ = kDefaultMaxStills;
    size_t maxBytes_ = kDefaultMaxBytes;
    unsigned hits_ = 0;
    unsigned misses_ = 0;
};
