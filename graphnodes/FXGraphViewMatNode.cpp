// Source clips on the graph.
#include "graphnodes/FXGraphViewMatNode.h"

#include "graphview/FXGraphView.h"
#include "host/Edit.h"
#include "host/MaterialUsageNode.h"
#include "host/Resources.h"
#include "host/StripColourManager.h"

namespace {

// Whether a material's cookie names an edit rather than a clip. The host's long text form holds
// the kind letter at index 18; this host's short form leads with it, so the kind is read directly.
bool namesEdit(const Cookie& c) {
    return c.kind() == Cookie::EditKind;
}

} // namespace

FXGraphViewMatNode::FXGraphViewMatNode(FXGraphView* view, EditGraphIterator& it)
    : FXGraphViewThumbNode(view, it) {
    auto* material = dynamic_cast<MaterialUsageNode*>(node_.get());
    if (material)
        colour_ = StripColourManager::getColourFor(material->material());
    stripCookie_ = it.getUTRHandle(-2).stripCookie();
    if (material && namesEdit(material->material())) {
        EditGraphIterator copy = it;
        copy.setTraverseGhosts(true);
        Zk::Ptr<FXGraphNodeBase> n = copy.getNode(-1);
        materialNodeId_ = n ? n->getId() : IdStamp();
    } else {
        materialNodeId_ = node_ ? node_->getId() : pos_.getNodeId();
    }
    const EditPtr& edit = it.getEditH();
    const int chan = edit ? edit->getIdx(it.getChanId(-1)) : -1;
    isVideo_ = chan >= 0 && edit->getChanType(chan) == kVideoChan;
}

WString FXGraphViewMatNode::getName() const {
    if (!editH_)
        return WString();
    const int chan = editH_->getIdx(chanId_);
    WString name = chan >= 0 ? editH_->getChanDisplayName(chan) : WString();
    if (stripCookie_.valid()) {
        EditPtr source;
        source.i_open(Cookie(Cookie::EditKind, stripCookie_.id()), kOpenIfOpen);
        if (source && !source->name().empty())
            name += WString(L" : ") + source->name();
    }
    if (!view_ || editH_.get() != view_->getEditH().get())
        name += WString(L" (") + editH_->name() + L")";
    else if (chan >= 0 && editH_->getChanSubtype(chan) != 8)
        name += WString(L" : ") + paddedResourceStrW(10061, L"(", L")");
    return name;
}
