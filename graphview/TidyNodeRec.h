// TidyNodeRec: what the tree tidier knows of one node while it lays out a tree. The nodes it names
// are held by the graph and by the walk's iterator for the whole of a run.
#pragma once

#include <cstdint>

class FXGraphNodeBase;
class NodeUIPosRec;

struct TidyNodeRec {
    uint64_t level = 0;    // the greatest depth below the root at which the node was reached
    int64_t reserved = -1; // always -1, read by nothing
    FXGraphNodeBase* node = nullptr;
    NodeUIPosRec* posRec = nullptr;    // the node's record, asked for at its first visit
    FXGraphNodeBase* parent = nullptr; // the parent the node hangs from in the layout; null for the root
    int64_t parentInput = 0;           // the input number on the first parent seen
    uint64_t parentLevel = 0;          // the level of the recorded parent
};
