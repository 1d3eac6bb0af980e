// EditPosSource: a position source over the nodes of one edit, for tools that lay out a graph
// without a view. It keeps one record per node that exists in the edit, made on first request.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "host/Edit.h"
#include "host/IdStamp.h"
#include "nodeui/NodeUIPosRec.h"
#include "nodeui/NodeUIPosSource.h"

// Records are found through an open-addressed table of their ids and stand in blocks of 1,024,
// so that a graph of any size costs one lookup per request and an allocation per block, not
// per record; a record never moves once made.
class EditPosSource : public NodeUIPosSource {
public:
    EditPosSource(EditPtr edit, VidRouting::Orientations::Orientation o)
        : edit_(std::move(edit)), orientation_(o), slots_(64) {}
    EditPosSource(const EditPosSource&) = delete;
    EditPosSource& operator=(const EditPosSource&) = delete;
    ~EditPosSource() override {
        for (auto& [id, rec] : recs_)
            rec->~NodeUIPosRec();
    }

    NodeUIPosRec* getPosRecForNode(const IdStamp& id) override {
        Slot& slot = slotFor(id);
        if (slot.rec)
            return slot.rec;
        if (!edit_ || !edit_->findNode(id))
            return nullptr;
        if (recs_.size() % kBlock == 0)
            blocks_.emplace_back(new Storage[kBlock]);
        NodeUIPosRec* rec = new (&blocks_.back()[recs_.size() % kBlock]) NodeUIPosRec();
        recs_.emplace_back(id, rec);
        slot.id = id;
        slot.rec = rec;
        if (recs_.size() * 2 > slots_.size())
            rehash(slots_.size() * 2);
        return rec;
    }
    VidRouting::Orientations::Orientation getOrientation() const override { return orientation_; }
    void setOrientation(VidRouting::Orientations::Orientation o) { orientation_ = o; }

    // Every record made, with its node's id, in the order they were asked for.
    const std::vector<std::pair<IdStamp, NodeUIPosRec*>>& records() const { return recs_; }

private:
    static constexpr size_t kBlock = 1024;
    struct Storage {
        alignas(NodeUIPosRec) std::byte bytes[sizeof(NodeUIPosRec)];
    };
    struct Slot {
        IdStamp id;
        NodeUIPosRec* rec = nullptr; // null: free
    };

    static uint64_t hash(const IdStamp& id) { return IdStampMixHash::mix(id); }
    Slot& slotFor(const IdStamp& id) {
        const size_t mask = slots_.size() - 1;
        for (size_t i = hash(id) & mask;; i = (i + 1) & mask)
            if (!slots_[i].rec || slots_[i].id == id)
                return slots_[i];
    }
    void rehash(size_t size) {
        slots_.assign(size, Slot());
        for (const auto& [id, rec] : recs_) {
            Slot& s = slotFor(id);
            s.id = id;
            s.rec = rec;
        }
    }

    EditPtr edit_;
    VidRouting::Orientations::Orientation orientation_;
    std::vector<Slot> slots_;
    std::vector<std::unique_ptr<Storage[]>> blocks_;
    std::vector<std::pair<IdStamp, NodeUIPosRec*>> recs_;
};
