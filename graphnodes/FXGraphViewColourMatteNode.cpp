// Flat colour mattes on the graph.
#include "graphnodes/FXGraphViewColourMatteNode.h"

#include "graphview/FXGraphView.h"
#include "host/EffectInstance_opu4h5a4j.h"
#include "host/RectDescription.h"

void FXGraphViewColourMatteNode::drawThumbnail(EditGraphIterator&) {
    auto* effect = dynamic_cast<EffectInstance_opu4h5a4j*>(node_.get());
    // The matte's colour is its first parameter, held as its red, green and blue values. This
    // edit model keeps parameters constant over an effect's span, so the colour is the same at
    // every time of the cel.
    if (!effect || effect->params().empty())
        return;
    // Opaque: this host's colour flag asks for translucency, and a matte's colour is solid.
    const Colour c(effect->param("red"), effect->param("green"), effect->param("blue"), false);
    Glib::RectDescription d;
    d.box = thumbBox_;
    d.colour = fromColour(c);
    view_->submitPrimitive(d);
}
