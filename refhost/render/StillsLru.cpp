// The stills cache of the reference host.
#include "refhost/render/StillsLru.h"

namespace Render {
StillsCache& StillsCache::instance() {
    return StillsLru::instance();
}
} // namespace Render

StillsLru& StillsLru::instance() {
    static StillsLru cache;
    return cache;
}

std::string StillsLru::keyOf(const Render::RenderContextRep& context) {
    // The view transform may be set on a context after it was made.
    return context.key() + "\x1f" + context.viewLUT().str();
}

Zk::Ptr<Zk::Image::Surface> StillsLru::getStillImage(const Render::RenderContextRep& context) {
    auto found = index_.find(keyOf(context));
    if (found == index_.end()) {
        ++misses_;
        return nullptr;
    }
    ++hits_;
    entries_.splice(entries_.begin(), entries_, found->second);
    return found->second->still;
}

void StillsLru::add(const Render::RenderContextRep& context, const Zk::Ptr<Zk::Image::Surface>& still,
                    eSave) {
    // Stills are kept in memory only: there is no disk store in this host.
    if (!still)
        return;
    std::string key = keyOf(context);
    auto found = index_.find(key);
    if (found != index_.end())
        erase(found->second);
    Entry e;
    e.key = key;
    e.edit = context.iterator().getEditH().get();
    e.time = context.iterator().getTime();
    e.bytes = static_cast<size_t>(still->width()) * static_cast<size_t>(still->height()) * 4u;
    e.still = still;
    bytes_ += e.bytes;
    entries_.push_front(std::move(e));
    index_[key] = entries_.begin();
    trim();
}

void StillsLru::erase(std::list<Entry>::iterator it) {
    bytes_ -= it->bytes;
    index_.erase(it->key);
    entries_.erase(it);
}

void StillsLru::trim() {
    // The newest still stays even when it alone is over the byte budget.
    while (entries_.size() > 1 && (entries_.size() > maxStills_ || bytes_ > maxBytes_))
        erase(std::prev(entries_.end()));
    if (maxStills_ == 0)
        clear();
}

void StillsLru::clear() {
    entries_.clear();
    index_.clear();
    bytes_ = 0;
}

void StillsLru::dropEditTimes(const Edit* edit, double from, double to) {
    for (auto it = entries_.begin(); it != entries_.end();) {
        auto next = std::next(it);
        if (it->edit == edit && it->time >= from - 1e-6 && it->time < to)
            erase(it);
        it = next;
    }
}

void StillsLru::setLimits(size_t maxStills, size_t maxBytes) {
    maxStills_ = maxStills;
    maxBytes_ = maxBytes;
    trim();
}
