// GraphRenderer: evaluates the effect graph below an iterator's node into a working image. It
// walks the inputs with copies of the iterator, renders each node reached once per render (a
// node feeding two parents is drawn once), and guards against cycles, which the iterator does
// not: a node met again on its own path gives nothing to its parent.
//
// What each node gives:
//   - a material: its generated picture ("bars", "ramp", "grid", "noise"), or its image file
//     fitted to the frame keeping its shape; "tone" is sound and gives nothing;
//   - an effect: the operation its tag names, on its inputs; an input with nothing is clear
//     black. A switched-off effect, and an effect of a tag with no operation, passes its first
//     input through unchanged (nothing when that input has nothing);
//   - an imported image: its file fitted to the frame;
//   - an alias: the picture of the node it repeats, wherever that stands in the edit.
// Nodes deeper than kMaxDepth links below are cut off as inputs with nothing.
// A node whose own picture cannot be made (an image file that is missing or is no image) fails;
// to its parents it is an input with nothing, so the rest of the graph still renders.
#pragma once

#include <OpenImageIO/imagebuf.h>

#include <map>
#include <memory>
#include <set>

#include "host/EditGraphIterator.h"
#include "refhost/render/RenderModule.h"

class GraphRenderer {
public:
    // Renders at `width` x `height`; `editHeight` is the height of the edit's own picture, against
    // which sizes in parameters are measured.
    GraphRenderer(int width, int height, int editHeight);

    using Picture = std::shared_ptr<const OIIO::ImageBuf>;
    // Nodes more than this many links below the still's node give nothing: the walk recurses.
    static constexpr int kMaxDepth = kMaxStillDepth;

    // The picture of the iterator's node (shared with the pictures of the render, not to be
    // changed); null when it cannot be made.
    Picture render(const EditGraphIterator& it);

    // How many nodes were rendered (each once): for tests.
    size_t nodesRendered() const { return done_.size(); }

private:
    Picture renderNode(const EditGraphIterator& it, int level);
    Picture renderUncached(const EditGraphIterator& it, const FXGraphNodeBase& node, int level);
    Picture imageFile(const String& name);

    int width_;
    int height_;
    double scale_;
    std::map<const FXGraphNodeBase*, Picture> done_;
    std::set<const FXGraphNodeBase*> onPath_;
};
