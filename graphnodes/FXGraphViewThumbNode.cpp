// Stills of the graph below a node, fitted into the node's thumbnail box.
#include "graphnodes/FXGraphViewThumbNode.h"

#include <cmath>

#include "graphview/FXGraphView.h"
#include "host/CurrentProject.h"
#include "host/DigitalVideoFormats.h"
#include "host/Edit.h"
#include "host/ImageDescription.h"
#include "host/StillsCache.h"
#include "host/VidRenderUtils.h"

namespace {
constexpr uint32_t kARGB = 0x42475241;
} // namespace

FXGraphViewThumbNode::FXGraphViewThumbNode(FXGraphView* view, EditGraphIterator& it)
    : FXGraphViewNode(view, it) {}

void FXGraphViewThumbNode::drawThumbnail(EditGraphIterator& iterator) {
    EditGraphIterator it = iterator;
    const int width = thumbBox_.width();
    if (width <= 0 || !editH_)
        return;
    ShotVideoMetadata md = editH_->getVideoMetadata();
    md.width = width;
    md.height = static_cast<int>(std::ceil(width / aspect()));
    md.dataFormat = kARGB;
    md.formatUID = DigitalVideoFormats::kThumbnailFormatUID;

    const int format = Zk::CurrentProject::getIntermediateImageFormat();
    Render::RenderContextRep context(it, md, format, 0, 1, true);
    Render::StillsCache& cache = Render::StillsCache::instance();
    Zk::Ptr<Zk::Image::Surface> still = cache.getStillImage(context);
    if (!still) {
        it.setTraverseGhosts(true);
        if (it.isValid()) {
            Render::RenderContextRep renderContext(it, md, format, 0, 1, true);
            if (Zk::CurrentProject::getViewLUTEnabled())
                renderContext.setViewLUT(Zk::CurrentProject::getViewLUT());
            still = Render::VidRenderUtils::renderStill(renderContext, true);
            if (still)
                cache.add(context, still, Render::StillsCache::kKeep);
        }
    }
    if (!still || still->empty())
        return;
    lastRenderedId_ = getId();

    DigitalVideoFormatInfo source;
    if (!(still->formatUID() != 0 && DigitalVideoFormats::findByUID(still->formatUID(), source)))
        source = DigitalVideoFormats::makeSquarePixelFormat(still->width(), still->height());
    const DigitalVideoFormatInfo target =
        DigitalVideoFormats::makeSquarePixelFormat(thumbBox_.width(), thumbBox_.height());
    Zk::Box<double> from, to;
    DigitalVideoFormats::convertVideo(source, target, from, to);

    Glib::ImageDescription image;
    image.box.x1 = thumbBox_.x1 + static_cast<int>(std::round(to.x1));
    image.box.y1 = thumbBox_.y1 + static_cast<int>(std::round(to.y1));
    image.box.x2 = thumbBox_.x1 + static_cast<int>(std::round(to.x2));
    image.box.y2 = thumbBox_.y1 + static_cast<int>(std::round(to.y2));
    image.pixels = still->pixels();
    image.width = still->width();
    image.height = still->height();
    view_->submitPrimitive(image);
}
