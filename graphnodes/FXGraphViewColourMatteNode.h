// FXGraphViewColourMatteNode: the view node of a flat colour matte; its thumbnail is the colour.
#pragma once

#include "graphnodes/FXGraphViewNode.h"

class FXGraphViewColourMatteNode : public FXGraphViewNode {
public:
    FXGraphViewColourMatteNode(FXGraphView* view, EditGraphIterator& it) : FXGraphViewNode(view, it) {}

    bool hasThumbnail() const override { return true; }
    void drawThumbnail(EditGraphIterator& it) override;
};
