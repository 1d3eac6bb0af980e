// FXGraphViewThumbNode: a view node that shows a still of the graph below it, rendered by the
// host's render service and kept in its stills cache, so that a frame drawn twice renders once.
#pragma once

#include "graphnodes/FXGraphViewNode.h"

class FXGraphViewThumbNode : public FXGraphViewNode {
public:
    FXGraphViewThumbNode(FXGraphView* view, EditGraphIterator& it);

    bool hasThumbnail() const override { return true; }
    void drawThumbnail(EditGraphIterator& it) override;

protected:
    IdStamp lastRenderedId_;
};
