// EditPosSource: a position source over the nodes of one edit, for tools that lay out a graph
// without a view. It keeps one record per node that exists in the edit, made on first request.
#pragma once

#include <memory>
#include <unordered_map>

#include "host/Edit.h"
#include "nodeui/NodeUIPosRec.h"
#include "nodeui/NodeUIPosSource.h"

class EditPosSource : public NodeUIPosSource {
public:
    EditPosSource(EditPtr edit, VidRouting::Orientations::Orientation o)
        : edit_(std::move(edit)), orientation_(o) {}

    NodeUIPosRec* getPosRecForNode(const IdStamp& id) override {
        auto it = recs_.find(id);
        if (it != recs_.end())
            return it->second.get();
        if (!edit_ || !edit_->findNode(id))
            return nullptr;
        return recs_.emplace(id, std::make_unique<NodeUIPosRec>()).first->second.get();
    }
    VidRouting::Orientations::Orientation getOrientation() const override { return orientation_; }
    void setOrientation(VidRouting::Orientations::Orientation o) { orientation_ = o; }

    const std::unordered_map<IdStamp, std::unique_ptr<NodeUIPosRec>, IdStampHash>& records() const {
        return recs_;
    }

private:
    EditPtr edit_;
    VidRouting::Orientations::Orientation orientation_;
    std::unordered_map<IdStamp, std::unique_ptr<NodeUIPosRec>, IdStampHash> recs_;
};
