// TagMarkerTable: the pairing of originals and copies while a tree of Taggable objects is
// cloned, so that links inside the tree can be pointed at the copies.
#pragma once

#include <map>

#include "host/ZkPtr.h"

class Taggable;

class TagMarkerTable {
public:
    void add(const Taggable* original, Zk::Ptr<Taggable> copy) { copies_[original] = std::move(copy); }
    // The copy made of `original`, null when it has none.
    Zk::Ptr<Taggable> copyOf(const Taggable* original) const {
        auto it = copies_.find(original);
        return it == copies_.end() ? nullptr : it->second;
    }

private:
    std::map<const Taggable*, Zk::Ptr<Taggable>> copies_;
};
