// TidyLevels: one walk of a tree from its root, with every reached node recorded once and sorted
// into levels by the longest path at which it was reached.
#pragma once

#include <list>
#include <map>
#include <vector>

#include "graphview/TidyNodeRec.h"
#include "graphview/TidyOffset.h"
#include "host/EditGraphIterator.h"
#include "nodeui/Orientation.h"

class NodeUIPosSource;

class TidyLevels {
public:
    using OffsetMap = std::map<IdStamp, TidyOffset, IdStampLess>;

    // Walks the tree under the iterator's node, then sorts the records into levels. The walk
    // keeps its own stack, so a tree of any depth is safe; a node reached by several paths is
    // descended once per path, which is how its level comes to be its longest path.
    TidyLevels(EditGraphIterator& iterator, NodeUIPosSource* source);

    // Writes every record's position from the offsets, level by level, so that a parent is
    // final before its children.
    void applyOffsets(const OffsetMap& offsets, VidRouting::Orientations::Orientation orientation);

    std::map<IdStamp, TidyNodeRec, IdStampLess> records;
    NodeUIPosSource* source = nullptr;
    int64_t baseDepth = 0;
    std::vector<std::list<TidyNodeRec>> levels;
    std::list<IdStamp> firstVisitOrder;

private:
    void walk(EditGraphIterator& iterator);
    // Returns false where the walk of this node ends before its inputs: no node, a closed cycle.
    bool enter(EditGraphIterator& iterator);
    void addNode(EditGraphIterator& iterator);
    void sortIntoLevels();
};
