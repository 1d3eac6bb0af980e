// NodeUIPosSource: the narrow contract between the layout and the position records: a record
// per node id, and the direction the graph runs.
#pragma once

#include "host/IdStamp.h"
#include "nodeui/Orientation.h"

class NodeUIPosRec;

class NodeUIPosSource {
public:
    virtual ~NodeUIPosSource() = default;
    // The record of the graph node with that id; null if there is none. Not owned by the caller.
    virtual NodeUIPosRec* getPosRecForNode(const IdStamp& id) = 0;
    virtual VidRouting::Orientations::Orientation getOrientation() const = 0;
};
