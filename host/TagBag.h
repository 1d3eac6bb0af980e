// TagBag: an edit's index of Taggable objects by id; the graph nodes are found through it.
#pragma once

#include <map>

#include "host/IdStamp.h"
#include "host/Taggable.h"

class TagBase {
public:
    TagBase() = default;
    explicit TagBase(Zk::Ptr<Taggable> obj) : obj_(std::move(obj)) {}
    // The object, null when no such object exists.
    Zk::Ptr<Taggable> instance() const { return obj_; }

private:
    Zk::Ptr<Taggable> obj_;
};

class TagBag {
public:
    TagBase openObject(const IdStamp& id) const {
        auto it = objects_.find(id);
        return it == objects_.end() ? TagBase() : TagBase(it->second);
    }
    void add(const IdStamp& id, Zk::Ptr<Taggable> obj) { objects_[id] = std::move(obj); }
    void remove(const IdStamp& id) { objects_.erase(id); }
    std::size_t size() const { return objects_.size(); }

private:
    std::map<IdStamp, Zk::Ptr<Taggable>, IdStampLess> objects_;
};
