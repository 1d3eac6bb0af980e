// Imported stills on the graph.
#include "graphnodes/FXGraphViewImageNode.h"

#include <algorithm>
#include <cmath>

#include "graphview/FXGraphView.h"
#include "host/ImageConverter.h"
#include "host/ImageDescription.h"
#include "host/ImageImportEffect.h"
#include "host/MaterialManager.h"
#include "host/ZkImageCache.h"

namespace {

constexpr uint32_t kARGB = 0x42475241;

uint32_t argb(const Colour& c) {
    auto byte = [](double v) { return static_cast<uint32_t>(std::clamp(v, 0.0, 1.0) * 255.0 + 0.5); };
    return 0xff000000u | byte(c.red()) << 16 | byte(c.green()) << 8 | byte(c.blue());
}

// Source over destination for one pixel.
uint32_t over(uint32_t src, uint32_t dst) {
    const uint32_t a = src >> 24;
    if (a == 255)
        return src;
    if (a == 0)
        return dst;
    auto mix = [&](int shift) {
        const uint32_t s = (src >> shift) & 0xff, d = (dst >> shift) & 0xff;
        return ((s * a + d * (255 - a) + 127) / 255) << shift;
    };
    return 0xff000000u | mix(16) | mix(8) | mix(0);
}

} // namespace

FXGraphViewImageNode::FXGraphViewImageNode(FXGraphView* view, EditGraphIterator& it)
    : FXGraphViewNode(view, it) {}

void FXGraphViewImageNode::drawThumbnail(EditGraphIterator&) {
    auto* effect = dynamic_cast<ImageImportEffect*>(node_.get());
    const int w = thumbBox_.width(), h = thumbBox_.height();
    const WString file = effect ? toWide(effect->file()) : WString();
    const bool fresh = image_ && filename_ == file && image_->width() == w && image_->height() == h;
    if (!fresh && w > 0 && h > 0) {
        filename_ = file;
        compose(w, h);
    }
    if (!image_)
        return;
    Glib::ImageDescription d;
    d.box = thumbBox_;
    d.pixels = image_->pixels();
    d.width = image_->width();
    d.height = image_->height();
    view_->submitPrimitive(d);
}

void FXGraphViewImageNode::compose(int w, int h) {
    WString name = filename_;
    if (name.view().find(L'.') == std::wstring_view::npos)
        name = MaterialManager::findFileForImageClip(Cookie::fromString(toUtf8(name)));

    Zk::Ptr<Zk::Image::Surface> board(new Zk::Image::Surface(w, h));
    const int tile = w / 15;
    if (tile > 0) {
        const uint32_t first = argb(scale(getColour(), 0.9)), second = argb(scale(getColour(), 0.8));
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x)
                board->setPixel(x, y, ((x / tile + y / tile) % 2 == 0) ? first : second);
    }

    Zk::Ptr<Zk::Image::Surface> picture = name.empty()
                                              ? Zk::Ptr<Zk::Image::Surface>()
                                              : ZkImage::Cache::instance().loadImage(name, kARGB, 0, 0);
    if (picture && !picture->empty()) {
        int pw = picture->width(), ph = picture->height();
        if (pw > w || ph > h) {
            const double imageAspect = static_cast<double>(pw) / ph;
            const double boxAspect = static_cast<double>(w) / h;
            if (imageAspect > boxAspect) {
                pw = w;
                ph = static_cast<int>(std::round(w / imageAspect));
            } else {
                ph = h;
                pw = static_cast<int>(std::round(h * imageAspect));
            }
        }
        if (pw != picture->width() || ph != picture->height())
            picture = ImageConverter::resize(*picture, std::max(pw, 1), std::max(ph, 1));
        if (picture) {
            const int ox = (w - picture->width()) / 2, oy = (h - picture->height()) / 2;
            for (int y = 0; y < picture->height(); ++y) {
                const int ty = oy + y;
                if (ty < 0 || ty >= h)
                    continue;
                for (int x = 0; x < picture->width(); ++x) {
                    const int tx = ox + x;
                    if (tx >= 0 && tx < w)
                        board->setPixel(tx, ty, over(picture->pixel(x, y), board->pixel(tx, ty)));
                }
            }
        }
    }
    image_ = board;
}
