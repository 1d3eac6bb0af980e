// FXGraphViewMatNode: the view node of a source clip. It takes the clip's strip colour, names
// itself after its channel and source, and shows a still only for video.
#pragma once

#include "graphnodes/FXGraphViewThumbNode.h"
#include "host/Cookie.h"

class FXGraphViewMatNode : public FXGraphViewThumbNode {
public:
    FXGraphViewMatNode(FXGraphView* view, EditGraphIterator& it);

    IdStamp getId() const override { return materialNodeId_; }
    bool hasThumbnail() const override { return isVideo_; }
    WString getName() const override;

    const Cookie& stripCookie() const { return stripCookie_; }
    bool isVideo() const { return isVideo_; }

private:
    Cookie stripCookie_;
    IdStamp materialNodeId_;
    bool isVideo_ = false;
};
