// FXGraphViewAliasNode: the view node of an aliased input: a plain box in the scheme's own shade,
// switched on or off, with no labels on its input side.
#pragma once

#include "graphnodes/FXGraphViewNode.h"
#include "host/Palette.h"

class FXGraphViewAliasNode : public FXGraphViewNode {
public:
    FXGraphViewAliasNode(FXGraphView* view, EditGraphIterator& it) : FXGraphViewNode(view, it) {}

    Colour getColour() const override { return Palette().window(7); }
};
