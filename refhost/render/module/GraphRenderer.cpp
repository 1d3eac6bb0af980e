// Evaluation of an effect graph into a picture.
#include "refhost/render/module/GraphRenderer.h"

#include <OpenImageIO/imagebufalgo.h>

#include <cmath>

#include "host/AliasedInputEffect.h"
#include "host/DigitalVideoFormats.h"
#include "host/Edit.h"
#include "host/ImageImportEffect.h"
#include "host/Log.h"
#include "host/MaterialManager.h"
#include "host/MaterialUsageNode.h"
#include "host/ZkImageCache.h"
#include "refhost/render/module/EffectOperations.h"
#include "refhost/render/module/GeneratedPictures.h"
#include "refhost/render/module/SurfacePixels.h"

GraphRenderer::GraphRenderer(int width, int height, int editHeight)
    : width_(width), height_(height),
      scale_(editHeight > 0 ? static_cast<double>(height) / editHeight : 1.0) {}

GraphRenderer::Picture GraphRenderer::render(const EditGraphIterator& it) {
    if (!it.isValid() || width_ <= 0 || height_ <= 0)
        return nullptr;
    return renderNode(it, 0);
}

GraphRenderer::Picture GraphRenderer::renderNode(const EditGraphIterator& it, int level) {
    const Zk::Ptr<FXGraphNodeBase> node = it.getNode(-1);
    if (!node || level > kMaxDepth || onPath_.count(node.get()))
        return nullptr;
    auto found = done_.find(node.get());
    if (found != done_.end())
        return found->second;
    onPath_.insert(node.get());
    Picture p = renderUncached(it, *node, level);
    onPath_.erase(node.get());
    done_[node.get()] = p;
    return p;
}

GraphRenderer::Picture GraphRenderer::imageFile(const String& name) {
    if (name.empty())
        return nullptr;
    Zk::Ptr<Zk::Image::Surface> s = ZkImage::Cache::instance().loadImage(toWide(name), 0x42475241, 0, 0);
    if (!s || s->empty())
        return nullptr;
    // Fitted into the frame with its own shape, square pixels, centred on clear black.
    Zk::Box<double> srcRect, dstRect;
    DigitalVideoFormats::convertVideo(DigitalVideoFormats::makeSquarePixelFormat(s->width(), s->height()),
                                      DigitalVideoFormats::makeSquarePixelFormat(width_, height_), srcRect,
                                      dstRect);
    const int x0 = static_cast<int>(std::lround(dstRect.x1)), x1 = static_cast<int>(std::lround(dstRect.x2));
    const int y0 = static_cast<int>(std::lround(dstRect.y1)), y1 = static_cast<int>(std::lround(dstRect.y2));
    auto out = std::make_shared<OIIO::ImageBuf>(RenderPixels::blank(width_, height_));
    if (x1 <= x0 || y1 <= y0)
        return out;
    OIIO::ImageBuf fitted(OIIO::ImageSpec(x1 - x0, y1 - y0, 4, OIIO::TypeDesc::FLOAT));
    if (!OIIO::ImageBufAlgo::resize(fitted, RenderPixels::fromSurface(*s)))
        return nullptr;
    // y counted from the bottom in the fit; rows run from the top here.
    OIIO::ImageBufAlgo::paste(*out, x0, height_ - y1, 0, 0, fitted);
    return out;
}

GraphRenderer::Picture GraphRenderer::renderUncached(const EditGraphIterator& it, const FXGraphNodeBase& node,
                                                     int level) {
    if (auto* m = dynamic_cast<const MaterialUsageNode*>(&node)) {
        const std::string source = m->source().str();
        if (source == "image") {
            String file = m->file();
            if (file.empty())
                file = toUtf8(MaterialManager::findFileForImageClip(m->material()));
            return imageFile(file);
        }
        if (source == "tone" || node.chanType() == kAudioChan)
            return std::make_shared<OIIO::ImageBuf>(RenderPixels::blank(width_, height_));
        // The noise of a material is the same on every frame and every render of it.
        const IdStamp& id = m->material().id();
        const int seed = static_cast<int>((id.a() * 73856093u) ^ (id.b() * 19349663u) ^ (id.c() * 83492791u));
        auto out = std::make_shared<OIIO::ImageBuf>();
        if (source == "slate") {
            const EditMaterial* material =
                it.getEditH() ? it.getEditH()->findMaterial(m->material()) : nullptr;
            const std::string name = material ? std::string(toUtf8(material->name).c_str()) : std::string();
            *out = GeneratedPictures::slate(width_, height_, name, seed);
            return out;
        }
        if (!GeneratedPictures::make(source, width_, height_, seed, *out))
            return nullptr;
        return out;
    }
    if (auto* img = dynamic_cast<const ImageImportEffect*>(&node))
        return img->isEnabled() ? imageFile(img->file())
                                : std::make_shared<OIIO::ImageBuf>(RenderPixels::blank(width_, height_));
    if (auto* alias = dynamic_cast<const AliasedInputEffect*>(&node)) {
        EditGraphIterator target(it.getEditH(), 0, it.getTime(), EditGraphIterator::optSearchFromTop);
        if (!target.search(alias->aliasOf(), EditGraphIterator::searchWholeEdit))
            return std::make_shared<OIIO::ImageBuf>(RenderPixels::blank(width_, height_));
        Picture p = renderNode(target, level + 1);
        return p ? p : std::make_shared<OIIO::ImageBuf>(RenderPixels::blank(width_, height_));
    }

    // An effect: its inputs first.
    std::vector<Picture> held;
    std::vector<const OIIO::ImageBuf*> inputs;
    for (unsigned i = 0; i < node.getNumInputs(); ++i) {
        EditGraphIterator child = it;
        Picture p = child.moveToInput(i) ? renderNode(child, level + 1) : nullptr;
        held.push_back(p);
        inputs.push_back(p.get());
    }
    auto passThrough = [&]() -> Picture {
        return !inputs.empty() && inputs[0]
                   ? held[0]
                   : std::make_shared<OIIO::ImageBuf>(RenderPixels::blank(width_, height_));
    };
    auto* fx = dynamic_cast<const EffectInstance_opu4h5a4j*>(&node);
    if (!fx || !fx->isEnabled())
        return passThrough();
    EffectOperations::Frame frame;
    frame.width = width_;
    frame.height = height_;
    frame.scale = scale_;
    if (fx->isTransition()) {
        const auto range = it.getRange(-1, CelEventPair::kEventRange);
        const double length = range.hi - range.lo;
        frame.progress = length > 0 ? (it.getTime() - range.lo) / length : 0.0;
    }
    auto out = std::make_shared<OIIO::ImageBuf>();
    if (!EffectOperations::apply(*fx, inputs, frame, *out))
        return passThrough();
    return out;
}
