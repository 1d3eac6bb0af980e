// FXGraphNodeIFDescriptor: how one input of a graph node is labelled on screen: a short label for
// the side of a node, a long one for under it.
#pragma once

#include "host/LightweightString.h"

struct FXGraphNodeIFDescriptor {
    WString shortLabel;
    WString longLabel;

    const WString& text(bool longForm) const { return longForm ? longLabel : shortLabel; }
};
