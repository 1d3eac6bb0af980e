// The plain view node: construction, links, geometry, drawing and hit tests.
#include "graphnodes/FXGraphViewNode.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "graphview/FXGraphView.h"
#include "host/AliasedInputEffect.h"
#include "host/Edit.h"
#include "host/EffectInstance_opu4h5a4j.h"
#include "host/EllipseDescription.h"
#include "host/Palette.h"
#include "host/PictureShape.h"
#include "host/RectDescription.h"
#include "host/Resources.h"
#include "host/StripColourManager.h"
#include "host/UifStd.h"

using VidRouting::Orientations::BottomToTop;
using VidRouting::Orientations::LeftToRight;

namespace {

// Text of a switched-on node's title, and of one switched off.
const Colour kTitleText(0.06, 0.06, 0.06);
const Colour kDisabledTitleText(0.2, 0.2, 0.2);
const Colour kDisabledGrey(0.4, 0.4, 0.4);
const Colour kFreeHighlightedInput(0.7, 0.7, 0.4);

Zk::Box<int> inset(Zk::Box<int> b, int by) {
    b.x1 += by;
    b.y1 += by;
    b.x2 -= by;
    b.y2 -= by;
    return b;
}

bool meets(const Zk::Box<int>& a, const Zk::Box<int>& b) {
    return a.x1 < b.x2 && b.x1 < a.x2 && a.y1 < b.y2 && b.y1 < a.y2;
}

} // namespace

FXGraphViewNode::FXGraphViewNode(FXGraphView* view, EditGraphIterator& it) : view_(view) {
    editH_ = it.getCurrentPosEdit();
    const IdStamp id = it.getNodeId(-1);
    if (editH_) {
        Zk::Ptr<Taggable> obj = editH_->tagBag().openObject(id).instance();
        node_ = Zk::dynamicCast<FXGraphNodeBase>(obj);
    }
    if (node_)
        colour_ = StripColourManager::getTypeColour(node_->tagTypeId());
    chanId_ = it.getChanId(-2);
    slotKey_ = (it.getParentInputNum() + 1) * (it.depth() + 1);
    FXGraphNodeClient::registerWith(node_.get());
    pos_.setNodeId(id);
    NodeUIRecClient::registerWith(&pos_);
    decideLabelFlags(it);
}

FXGraphViewNode::~FXGraphViewNode() {
    NodeUIRecClient::registerWith(nullptr);
    FXGraphNodeClient::registerWith(nullptr);
}

double FXGraphViewNode::aspect() {
    return Zk::getAspectRatio(Zk::Image::Aspect16x9);
}

void FXGraphViewNode::decideLabelFlags(const EditGraphIterator& it) {
    showInputLabels_ = showOutputLabels_ = true;
    Zk::Ptr<FXGraphNodeBase> here = it.getNode(-1);
    if (dynamic_cast<AliasedInputEffect*>(here.get())) {
        showInputLabels_ = false;
        return;
    }
    // Anything below a switched-off effect takes no new connections, and neither does the
    // effect's own input side.
    EditGraphIterator up = it;
    do {
        Zk::Ptr<FXGraphNodeBase> n = up.getNode(-1);
        auto* fx = dynamic_cast<EffectInstance_opu4h5a4j*>(n.get());
        if (fx && !fx->isEnabled()) {
            showInputLabels_ = false;
            if (n.get() != here.get())
                showOutputLabels_ = false;
        }
    } while (up.moveBack());
}

void FXGraphViewNode::recUpdateNotify() {
    if (view_)
        view_->nodePosRecUpdate(this);
}

IdStamp FXGraphViewNode::getId() const {
    return node_ ? node_->getId() : IdStamp();
}

bool FXGraphViewNode::isEnabled() const {
    auto* fx = dynamic_cast<const EffectInstance_opu4h5a4j*>(node_.get());
    return !fx || fx->isEnabled();
}

int FXGraphViewNode::numInputs() const {
    return node_ ? static_cast<int>(node_->getNumInputs()) : 0;
}

Colour FXGraphViewNode::getColour() const {
    return isEnabled() ? colour_ : kDisabledGrey;
}

bool FXGraphViewNode::matches(const EditGraphIterator& it) const {
    Zk::Ptr<FXGraphNodeBase> n = it.getNode(-1);
    return n && n->getId() == getId();
}

WString FXGraphViewNode::getName() const {
    if (!node_)
        return paddedResourceStrW(10007, WString(), WString());
    WString name;
    if (chanId_.valid() && editH_) {
        const int idx = editH_->getIdx(chanId_);
        if (idx >= 0)
            name = editH_->getChanDisplayName(idx) + L" : ";
    }
    if (!node_->getName().empty())
        name += node_->getName();
    return name;
}

Zk::Box<int> FXGraphViewNode::getBox(bool withConnectors) const {
    Zk::Box<int> b = box_;
    if (withConnectors && view_) {
        const int dx = static_cast<int16_t>(view_->physicalScale() * kConnectorRadius);
        const int dy = static_cast<int16_t>(view_->physicalScale() * kConnectorHitSize);
        b.x1 -= dx;
        b.x2 += dx;
        b.y1 -= dy;
        b.y2 += dy;
    }
    return b;
}

int FXGraphViewNode::getEditIdx() const {
    return editH_ ? editH_->getIdx(chanId_) : -1;
}

FXGraphViewNode* FXGraphViewNode::getInputNode(int input) const {
    auto it = inputs_.find(input);
    return it == inputs_.end() ? nullptr : it->second.node;
}

FXGraphViewNode* FXGraphViewNode::getOutputNode(int output) const {
    auto it = outputs_.find(output);
    return it == outputs_.end() ? nullptr : it->second.node;
}

int FXGraphViewNode::getInputFor(const FXGraphViewNode* node, int connector) const {
    for (const auto& [number, c] : inputs_)
        if (c.node == node && c.connector == connector)
            return number;
    return -1;
}

int FXGraphViewNode::getOutputFor(const FXGraphViewNode* node, int connector) const {
    for (const auto& [number, c] : outputs_)
        if (c.node == node && c.connector == connector)
            return number;
    return -1;
}

bool FXGraphViewNode::addInput(int input, FXGraphViewNode* source) {
    if (!source)
        return false;
    for (const auto& [number, c] : source->outputs_) {
        if (c.node == this && c.connector == input) {
            inputs_[input] = Connection{number, source};
            return true;
        }
    }
    const int n = static_cast<int>(source->outputs_.size());
    source->outputs_[n] = Connection{input, this};
    inputs_[input] = Connection{n, source};
    return true;
}

void FXGraphViewNode::clearInputLink(int input) {
    inputs_[input].node = nullptr;
}

void FXGraphViewNode::eraseOutput(int output) {
    outputs_.erase(output);
}

void FXGraphViewNode::findNodeAgain() {
    if (node_ || !view_ || !view_->getEditH())
        return;
    Zk::Ptr<Taggable> obj = view_->getEditH()->tagBag().openObject(pos_.getNodeId()).instance();
    node_ = Zk::dynamicCast<FXGraphNodeBase>(obj);
    if (node_)
        FXGraphNodeClient::registerWith(node_.get());
}

void FXGraphViewNode::refreshFrom(EditGraphIterator& it) {
    findNodeAgain();
    decideLabelFlags(it);
}

// --- geometry ---------------------------------------------------------------------------------------

Zk::Box<int> FXGraphViewNode::pixelBox() const {
    const XY<double> lb = view_->graphToViewSpace(getLeft(), getBottom());
    const XY<double> rt = view_->graphToViewSpace(getRight(), getTop());
    Zk::Box<int> b;
    b.x1 = static_cast<int>(std::round(lb.x)) - 1;
    b.y1 = static_cast<int>(std::round(lb.y));
    b.x2 = static_cast<int>(std::round(rt.x));
    b.y2 = static_cast<int>(std::round(rt.y));
    return b;
}

void FXGraphViewNode::calcBox() {
    box_ = pixelBox();
}

void FXGraphViewNode::calcThumbBox() {
    const double scale = view_->physicalScale();
    Zk::Box<int> t;
    t.y2 = box_.y2 - static_cast<int16_t>(scale * kTitleHeight + 0.5);
    t.y1 = box_.y1;
    const int h = t.y2 - t.y1;
    int w = static_cast<int>(std::round(h * aspect()));
    if (w <= box_.width()) {
        t.x1 = box_.x1 + (box_.width() - w) / 2;
        t.x2 = t.x1 + w;
    } else {
        t.x1 = box_.x1;
        t.x2 = box_.x2;
        const int fitted = static_cast<int>(std::round(box_.width() / aspect()));
        t.y1 = box_.y1 + 1;
        t.y2 = t.y1 + fitted;
    }
    thumbBox_ = t;
}

XY<int> FXGraphViewNode::getInputPos(int input) const {
    XY<int> p(-1, -1);
    const int n = numInputs();
    if (view_->getOrientation() == BottomToTop) {
        p.y = box_.y1;
        p.x = static_cast<int>(box_.x1 + static_cast<double>(box_.width()) / (n + 1) * (input + 1));
    } else {
        p.x = box_.x1;
        const int t = box_.y2 - static_cast<int>(view_->physicalScale() * kTitleHeight);
        p.y = static_cast<int>(t - static_cast<double>(t - box_.y1) / (n + 1) * (input + 1));
    }
    return p;
}

XY<int> FXGraphViewNode::getOutputPos(unsigned char output) const {
    XY<int> p(-1, -1);
    const unsigned char m = static_cast<unsigned char>(outputs_.size() + 1);
    if (output >= m)
        return p;
    if (view_->getOrientation() == BottomToTop) {
        p.y = box_.y2;
        p.x = static_cast<int>(box_.x1 + static_cast<double>(box_.width()) / (m + 1) * (output + 1));
    } else {
        p.x = box_.x2;
        p.y = static_cast<int>(box_.y2 - static_cast<double>(box_.height()) / (m + 1) * (output + 1));
    }
    return p;
}

int FXGraphViewNode::connectorRadius() const {
    const int byScale = static_cast<int>(view_->physicalScale() * kConnectorRadius + 0.5);
    return std::min(UifStd::getWidgetGap(), byScale);
}

// --- drawing ----------------------------------------------------------------------------------------

void FXGraphViewNode::fillRect(const Colour& c, const Zk::Box<int>& box) {
    Glib::RectDescription d;
    d.box = box;
    d.colour = fromColour(c);
    view_->submitPrimitive(d);
}

void FXGraphViewNode::frameRect(const Colour& c, const Zk::Box<int>& box) {
    Glib::RectDescription d;
    d.box = box;
    d.colour = fromColour(c);
    d.filled = false;
    d.lineWidth = 1;
    view_->submitPrimitive(d);
}

void FXGraphViewNode::draw() {
    findNodeAgain();
    calcBox();
    const Zk::Box<int> clip = view_->currentClip();
    if (!meets(box_, clip)) {
        const Zk::Box<int> window = view_->getWindowPos();
        if (!meets(box_, window))
            onScreen_ = false;
        return;
    }
    onScreen_ = true;

    const Colour colour = getColour();
    frameRect(Palette(colour).window(-3), box_);
    Zk::Box<int> r = box_;
    if (!hasThumbnail()) {
        r = inset(r, 1);
        frameRect(Palette(colour).window(1), r);
    }
    fillRect(colour, inset(r, 1));

    drawInputs(false, true);
    const int outs = static_cast<int>(outputs_.size());
    for (int o = 0; o < outs; ++o)
        drawConnector(getOutputPos(static_cast<unsigned char>(o)), getOutputNode(o), 2);
    drawConnector(getOutputPos(static_cast<unsigned char>(outs)), nullptr, 2);

    drawTitleBar();
    calcThumbBox();
    if (!hasThumbnail()) {
        if (showInputLabels_)
            drawInputs(true, false);
        return;
    }
    if (thumbBox_.height() > 10 && meets(thumbBox_, clip)) {
        frameRect(scale(colour, 0.3), inset(thumbBox_, -1));
        redrawThumbnail();
    }
}

void FXGraphViewNode::drawTitleBar() {
    const double h = view_->physicalScale() * kTitleHeight;
    if (!(h > 3.0))
        return;
    Zk::Box<int> bar = inset(box_, 1);
    bar.y1 = bar.y2 - static_cast<int>(std::round(h));
    const Colour colour = hasThumbnail() ? getColour() : scale(getColour(), 1.1);
    fillRect(colour, bar);
    if (!hasThumbnail()) {
        Zk::Box<int> line = bar;
        line.y2 = line.y1 + 1;
        fillRect(scale(getColour(), 0.4), line);
    }
    const int in = static_cast<int>(h * 0.25);
    bar.x1 += in;
    bar.x2 -= in;
    view_->drawText(getName(), bar, isEnabled() ? kTitleText : kDisabledTitleText, TextAlignment(0), nullptr);
}

void FXGraphViewNode::drawConnector(XY<int> pos, const FXGraphViewNode* farEnd, int mode) {
    const int r = connectorRadius();
    if (r < 3)
        return;
    const bool bottomToTop = view_->getOrientation() == BottomToTop;
    if (bottomToTop)
        pos.y = mode == 1 ? box_.y1 + 1 : box_.y2;
    else
        pos.x = mode == 1 ? box_.x1 + 1 : box_.x2;

    Colour colour;
    if (mode == 2)
        colour = bottomToTop && !hasThumbnail() ? scale(getColour(), 1.1) : getColour();
    else if (farEnd)
        colour = farEnd->getColour();
    else
        colour = highlighted_ ? kFreeHighlightedInput : view_->getBackgroundCol();

    Glib::EllipseDescription e = FXGraphView::dotAt(pos, r, colour);
    view_->submitPrimitive(e);

    // A connected input shows its whole circle; an output or a free input only the outer half.
    e.colour = fromColour(Palette(colour).window(-3));
    e.style = 1;
    if (mode == 2 || !farEnd) {
        e.startAngle = bottomToTop ? 180.0 : -90.0;
        e.endAngle = bottomToTop ? 360.0 : 90.0;
    }
    view_->submitPrimitive(e);
}

void FXGraphViewNode::drawInputs(bool labels, bool connectors) {
    const int r = connectorRadius();
    const double h = view_->physicalScale() * kTitleHeight;
    const int n = numInputs();
    const bool leftToRight = view_->getOrientation() == LeftToRight;
    for (int i = 0; i < n; ++i) {
        const XY<int> pos = getInputPos(i);
        if (labels && node_) {
            const FXGraphNodeIFDescriptor d = node_->getInputDescriptor(static_cast<unsigned>(i));
            const WString& text = d.text(!leftToRight);
            if (!text.empty()) {
                const Colour c = isEnabled() ? scale(getColour(), 0.2) : Colour();
                Zk::Box<int> b;
                if (leftToRight) {
                    b.x1 = pos.x + r + 5;
                    b.x2 = box_.x2 - 2;
                    b.y1 = static_cast<int>(pos.y - h / 2);
                    b.y2 = static_cast<int>(pos.y + h / 2);
                    view_->drawText(text, b, c, TextAlignment(0), "helv");
                } else {
                    const int w = box_.width();
                    b.x1 = pos.x - w;
                    b.x2 = pos.x + w;
                    b.y1 = pos.y + r + 5;
                    b.y2 = static_cast<int>(pos.y + h + r + 5);
                    view_->drawText(text, b, c, TextAlignment(2), "helv");
                }
            }
        }
        if (connectors)
            drawConnector(pos, getInputNode(i), 1);
    }
}

void FXGraphViewNode::redrawThumbnail() {
    EditGraphIterator it = view_->getIteratorFor(getId(), 3);
    if (!it.isValid())
        it = view_->getIteratorFor(chanId_, 9);
    if (it.isValid())
        drawThumbnail(it);
    thumbTime_ = it.getTime();
}

// --- hit tests --------------------------------------------------------------------------------------

bool FXGraphViewNode::connectorHitBox(const XY<int>& pos, bool input, Zk::Box<int>& out,
                                      XY<int>& centre) const {
    const int size = static_cast<int>(view_->physicalScale() * kConnectorHitSize);
    if (static_cast<int16_t>(size) < 3)
        return false;
    Zk::Box<int> b;
    b.x1 = pos.x - size / 2;
    b.x2 = b.x1 + size;
    b.y1 = pos.y - size / 2;
    b.y2 = b.y1 + size;
    if (view_->getOrientation() == BottomToTop) {
        if (input)
            b.y2 = box_.y1 - 1;
        else
            b.y1 = box_.y2 + 1;
    } else {
        if (input)
            b.x2 = box_.x1 - 1;
        else
            b.x1 = box_.x2 + 1;
    }
    centre = XY<int>((b.x1 + b.x2) / 2, (b.y1 + b.y2) / 2);
    const int gap = UifStd::getWidgetGap();
    out = inset(b, -gap);
    return true;
}

int FXGraphViewNode::findConnector(int x, int y, int& connector) const {
    auto nearest = [&](int count, bool input, int& which) {
        int best = 1000;
        which = -1;
        for (int i = 0; i < count; ++i) {
            const XY<int> pos = input ? getInputPos(i) : getOutputPos(static_cast<unsigned char>(i));
            Zk::Box<int> hit;
            XY<int> centre;
            if (!connectorHitBox(pos, input, hit, centre) || !hit.contains(x, y))
                continue;
            const double dx = x - centre.x, dy = y - centre.y;
            const int d = static_cast<int>(std::sqrt(dx * dx + dy * dy));
            if (d < best) {
                best = d;
                which = i;
            }
        }
        return which >= 0;
    };
    int which = -1;
    if (showInputLabels_) {
        int n = numInputs();
        if (n > 3)
            n = std::min(n, static_cast<int>(inputs_.size()) + 1);
        if (nearest(n, true, which)) {
            connector = which;
            return HitInput;
        }
    }
    if (showOutputLabels_ && nearest(static_cast<int>(outputs_.size()) + 1, false, which)) {
        connector = which;
        return HitOutput;
    }
    const XY<double> lb = view_->graphToViewSpace(getLeft(), getBottom());
    const XY<double> rt = view_->graphToViewSpace(getRight(), getTop());
    Zk::Box<double> body;
    body.x1 = lb.x;
    body.y1 = lb.y;
    body.x2 = rt.x;
    body.y2 = rt.y;
    if (body.contains(x, y))
        return HitBody;
    return HitNothing;
}
