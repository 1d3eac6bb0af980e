// FXGraphViewImageNode: the view node of an imported still. It shows the image file itself, fitted
// on a checkerboard that shows through where the picture is transparent, and keeps the composed
// picture until the file or the box size changes.
#pragma once

#include "graphnodes/FXGraphViewNode.h"
#include "host/ImageSurface.h"

class FXGraphViewImageNode : public FXGraphViewNode {
public:
    FXGraphViewImageNode(FXGraphView* view, EditGraphIterator& it);

    bool hasThumbnail() const override { return true; }
    void drawThumbnail(EditGraphIterator& it) override;

    const Zk::Ptr<Zk::Image::Surface>& image() const { return image_; }
    const WString& filename() const { return filename_; }

private:
    void compose(int width, int height);

    Zk::Ptr<Zk::Image::Surface> image_;
    WString filename_;
};
