// TidyLevelsReference: the walk and levels of TreeTidierReference: every reached node recorded once
// in an ordered map and sorted into lists by the longest path at which it was reached.
#pragma once

#include <list>
#include <map>
#include <unordered_map>
#include <vector>

#include "graphview/TidyOffset.h"
#include "host/EditGraphIterator.h"
#include "host/FXGraphNodeBase.h"
#include "nodeui/Orientation.h"

class NodeUIPosSource;
class NodeUIPosRec;

class TidyLevelsReference {
public:
    // What the walk knows of one node, holding the nodes it names.
    struct NodeRec {
        uint64_t level = 0;
        int64_t reserved = -1;
        Zk::Ptr<FXGraphNodeBase> node;
        NodeUIPosRec* posRec = nullptr;
        Zk::Ptr<FXGraphNodeBase> parent;
        int64_t parentInput = 0;
        uint64_t parentLevel = 0;
    };
    using OffsetMap = std::map<IdStamp, TidyOffset, IdStampLess>;

    // Walks the tree under the iterator's node, then sorts the records into levels. The walk
    // keeps its own stack, so a tree of any depth is safe; a node reached by several paths is
    // descended once per path, which is how its level comes to be its longest path.
    TidyLevelsReference(EditGraphIterator& iterator, NodeUIPosSource* source);

    // Writes every record's position from the offsets, level by level, so that a parent is
    // final before its children. Levels above `fromLevel` are taken as already in place: the
    // repair pass changes only one level's offsets and re-applies from there.
    void applyOffsets(const OffsetMap& offsets, VidRouting::Orientations::Orientation orientation,
                      size_t fromLevel = 0);

    std::map<IdStamp, NodeRec, IdStampLess> records;
    NodeUIPosSource* source = nullptr;
    int64_t baseDepth = 0;
    std::vector<std::list<NodeRec>> levels;
    std::list<IdStamp> firstVisitOrder;

private:
    struct IdHash {
        size_t operator()(const IdStamp& id) const {
            return (static_cast<size_t>(id.a()) * 0x9E3779B97F4A7C15ull) ^
                   (static_cast<size_t>(id.b()) << 32) ^ id.c();
        }
    };

    void walk(EditGraphIterator& iterator);
    // Returns false where the walk of this node ends before its inputs: no node, a closed cycle.
    bool enter(EditGraphIterator& iterator);
    void addNode(EditGraphIterator& iterator);
    void sortIntoLevels();

    // How often each id stands on the walk's path, so that closing a cycle is found without
    // scanning the path.
    std::unordered_map<IdStamp, int, IdHash> onPath_;
    // Each level record's entry in the offset map last applied; the entries of a std::map stay
    // where they are, so the repair pass finds them again without a lookup.
    const OffsetMap* cachedMap_ = nullptr;
    size_t cachedSize_ = 0;
    std::vector<std::vector<const TidyOffset*>> offsetOf_;
};
