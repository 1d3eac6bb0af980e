// TidyOffset: where the tree tidier puts a node: relative to its parent's record (x along the
// depth, y across it, as in LeftToRight), or, without a parent record, absolute.
#pragma once

#include "host/XY.h"

class NodeUIPosRec;

struct TidyOffset {
    NodeUIPosRec* parentRec = nullptr;
    XY<double> offset;
};
