// FXGraphView: effect templates dragged over the canvas and dropped on it. While a drag is over
// the view a small preview window stands in for the new node under the pointer; the drop puts
// the template into the graph by what lies under the pointer and places the new node there.
#include <algorithm>
#include <atomic>
#include <optional>

#include "graphnodes/FXGraphViewNode.h"
#include "graphview/FXGraphView.h"
#include "host/AliasedInputEffect.h"
#include "host/Canvas.h"
#include "host/CelEventPair.h"
#include "host/Drawable.h"
#include "host/EffectInstance_opu4h5a4j.h"
#include "host/EffectTemplateManager.h"
#include "host/GlibFonts.h"
#include "host/GlobManager.h"
#include "host/Palette.h"
#include "host/StateSaver.h"
#include "host/StripColourManager.h"
#include "host/TextBox.h"
#include "host/UpdateDeferrer.h"
#include "host/UserMessages.h"
#include "host/Vob.h"
#include "host/VobManager.h"
#include "host/iEffectTemplateContainer.h"

namespace {

constexpr double kNoTime = 1e99;
constexpr double kTimeTolerance = 1e-6;
constexpr int kStereoscopicMessage = 10881;
// Where the host puts a new window by itself rather than at a given point.
constexpr int kHostPlacedWindow = 17;

// The preview of a dragged template: a small translucent window in the colour of the
// template's effect type, with its name.
class FloatingNode : public StandardPanel {
public:
    struct InitArgs : StandardPanel::InitArgs {
        InitArgs(const XY<int>& size, Zk::Ptr<EffectTemplate> t)
            : StandardPanel::InitArgs(size.x, size.y, Border(0, 0, 15)), tmpl(std::move(t)) {}
        Zk::Ptr<EffectTemplate> tmpl;
    };

    explicit FloatingNode(const InitArgs& args) : StandardPanel(args), template_(args.tmpl), id_(nextId()) {
        setBorder(Border(0, 2, 15));
        setTitleShown(false);
        canvas()->renderer().setTranslucency(0.7);
        Vector<Zk::Ptr<FXGraphNodeBase>> parts =
            template_ ? template_->getComponents(0) : Vector<Zk::Ptr<FXGraphNodeBase>>();
        if (!parts.empty())
            setPalette(Palette(StripColourManager::getTypeColour(parts[0]->tagTypeId())));
        TextBox::InitArgs text(UIString(template_ ? template_->getName() : WString()), false,
                               std::max(getUserArea().width(), 1), getDefaultFontSize());
        text.palette = getPalette();
        addChild(new TextBox(text), UserTopLeft(0, 0));
        addShadow();
    }
    const char* idstring() const override { return "FloatingNode"; }
    const IdStamp& id() const { return id_; }

private:
    static IdStamp nextId() {
        static std::atomic<uint32_t> n{0};
        return IdStamp(0xF10A, 0, ++n);
    }
    Zk::Ptr<EffectTemplate> template_;
    IdStamp id_;
};

Zk::Ptr<EffectTemplate> templateOf(DragDropItem* item) {
    auto* c = dynamic_cast<iEffectTemplateContainer*>(item);
    return c ? c->getEffectTemplate() : nullptr;
}

void showDragWidget(DragDropItem* item, bool visible) {
    if (Glob* w = item ? item->getDragWidget() : nullptr; is_good_glob_ptr(w))
        w->setVisible(visible);
}

} // namespace

bool FXGraphView::FloatingNodeHandle::alive() const {
    if (!is_good_glob_ptr(glob))
        return false;
    auto* f = dynamic_cast<FloatingNode*>(glob);
    return f && f->id() == id;
}

void FXGraphView::FloatingNodeHandle::clear() {
    if (alive())
        delete glob;
    glob = nullptr;
    id = IdStamp(0, 0, 0);
}

bool FXGraphView::canAccept(DragDropItem* item, Glob::eDropReason reason) const {
    auto* c = dynamic_cast<iEffectTemplateContainer*>(item);
    if (!c)
        return false;
    Zk::Ptr<EffectTemplate> t = c->getEffectTemplate();
    if (!t || static_cast<int>(t->getType()) != chanType_)
        return false;
    return canAccept(item->type(), reason);
}

// Asking has one deliberate side effect: while a mark is set and the playhead stands at the end
// of the region a new effect would take, the question tells every client of that region.
bool FXGraphView::canAccept(DragDropItemType type, Glob::eDropReason) const {
    if (type != kDragEffectTemplate || !vob() || vob() != Vob::getRecordMachine())
        return false;
    if (readOnly_ || vob()->isReadOnly())
        return false;
    if (vob()->getMarkTime(65535) == kNoTime)
        return true;
    const NumRange<double> region = FXEditor::getRegionForNewEffect(vob()->getEditModule(), true, 1);
    if (valEqualsVal(vob()->getCurrentTime(1), region.hi))
        vob()->setChangeDescription(EditModifications(), VobModification(6, region.lo, region.hi));
    return true;
}

// Leaves the preview alone: only indicateAcceptability makes and clears it.
bool FXGraphView::accept(DragDropItem* item, Glob::eDropReason reason) {
    if (!item || !canAccept(item, reason) || !dynamic_cast<iEffectTemplateContainer*>(item))
        return false;
    const XY<int> pos = screenXYToGlobXY(glib_getMousePos());
    return useTemplateAt(templateOf(item), pos, reason == Glob::DropReplace);
}

void FXGraphView::indicateAcceptability(DragDropItem* item, eAcceptance acceptance) {
    if (!item || item->type() != kDragEffectTemplate)
        return;
    if (acceptance != kAcceptable) {
        floatingNode_.clear();
        showDragWidget(item, true);
        return;
    }
    const XY<int> s = getNodeSize();
    const XY<int> mouse = glib_getMousePos();
    const XY<int> p(mouse.x - s.x / 2, mouse.y - s.y / 2);
    if (floatingNode_.alive()) {
        // A root window's canvas is the window itself: moving it moves the window.
        floatingNode_.glob->setPos(p.x, p.y);
        return;
    }
    FloatingNode* f = nullptr;
    {
        Glib::StateSaver saver(1);
        Drawable::disableRedraws();
        const FloatingNode::InitArgs args(s, templateOf(item));
        const WidgetPosition where = Glob::BottomLeft(p);
        XY<int> at;
        if (static_cast<int>(where.kind()) == kHostPlacedWindow) {
            at = glib_getPosForWindow(s.x, s.y);
        } else {
            at = GlobManager::instance().getPosForGlob(args, where);
            at = GlobManager::instance().getSafePosForGlob(nullptr, s, at);
        }
        f = new FloatingNode(args);
        Glob::setupRootPos(f->canvas(), at);
        Drawable::enableRedraws();
    }
    GlobManager::instance().realize(f);
    floatingNode_.glob = f;
    floatingNode_.id = f->id();
    showDragWidget(item, false);
}

bool FXGraphView::useTemplateAt(Zk::Ptr<EffectTemplate> tmpl, const XY<int>& pos, bool replace) {
    if (!tmpl || !edit_ ||
        (!edit_->hasStereoscopicVideo() && EffectTemplateManager::instance().isStereoscopicEffect(tmpl))) {
        makeMessage(UIString(kStereoscopicMessage));
        return false;
    }
    if (!vob())
        return false;
    double gx = 0, gy = 0;
    viewToGraphSpace(pos.x, pos.y, gx, gy);
    if (!(canvasMinX_ < gx && gx < canvasMaxX_ && canvasMinY_ < gy && gy < canvasMaxY_))
        return false;
    FXGraphViewNode* under = findNodeAt(pos.x, pos.y);
    if (under && dynamic_cast<AliasedInputEffect*>(under->node().get()))
        return false;

    Glib::UpdateDeferrer defer(canvas(), 1);
    FXEditor editor(edit_);
    FXEditor::RC result;
    result.iterator = EditGraphIterator(1);
    const unsigned inputs = tmpl->getNumInputs(1);
    {
        // The drop is one undo step; its changes are published when the step closes.
        std::optional<EasyBackup> step;
        auto* fx = under ? dynamic_cast<EffectInstance_opu4h5a4j*>(under->node().get()) : nullptr;
        if (!under || inputs == 0) {
            step.emplace(edit_);
            result = editor.autoApplyEffectsTemplate(tmpl, vob()->getEditModule(), 48, 0, nullptr);
        } else if (!fx) {
            if (!replace) {
                step.emplace(edit_);
                result = applyTemplateTo(tmpl, under);
            }
        } else if (fx->inputsOpenToWiring()) {
            step.emplace(edit_);
            const IdStamp old = fx->getId();
            result = applyTemplateTo(tmpl, under);
            if (replace && result.ok) {
                EditGraphIterator it = getIteratorFor(old, 9);
                if (it.isValid()) {
                    FXEditor::destroyNode(it, false);
                    result.mods.add(EditModification(kModNodesRemoved, 0));
                }
            }
        } else if (inputs == 2) {
            step.emplace(edit_);
            CelEventPair pair(edit_, under->chanId(), vob()->getCurrentTime(1));
            result = editor.replaceTransitionEffect(pair, tmpl);
        }
    }
    Zk::Ptr<FXGraphNodeBase> made = result.iterator.getNode(-1);
    auto* effect = dynamic_cast<EffectInstance_opu4h5a4j*>(made.get());
    if (!effect)
        return false;

    // Keep the playhead on the new effect: one at its very end wouldn't show it.
    const NumRange<double, Ordered> span = result.iterator.getRange(-1, CelEventPair::eRangeType(1));
    const double lo = std::min(span.lo, span.hi), hi = std::max(span.lo, span.hi);
    const double t = vob()->getCurrentTime(1);
    VobModification vm(0);
    if (valEqualsVal(t, span.hi) || t < lo - kTimeTolerance || t > hi + kTimeTolerance) {
        vob()->storeCurrentTime(span.lo);
        vm = VobModification(6, span.lo, span.hi);
    }

    if (manualPosMode_.getVal()) {
        createViewNodeRecs();
        if (NodeUIPosRec* rec = getPosRecForNode(effect->getId()))
            rec->setPos(gx, gy, false);
        const IdStamp root =
            result.iterator.isCompoundEffectHead() ? result.iterator.getChanId(-1) : effect->getId();
        autoTidyNodeRecs(std::vector<IdStamp>{root}, XY<double>(gx, gy));
    }
    vob()->setChangeDescription(result.mods, vm);
    return true;
}

FXEditor::RC FXGraphView::applyTemplateTo(Zk::Ptr<EffectTemplate> tmpl, FXGraphViewNode* node) {
    FXEditor editor(vob() ? vob()->getEditModule() : EditModule());
    if (!node)
        return FXEditor::RC();
    FXEditor::RC rc = editor.applyEffectsTemplateToNode(tmpl, node->node());
    if (rc.mods.includes(8, 0) && vob() && vob()->getMarkTime(65535) != kNoTime)
        vob()->setMarkTime(rc.iterator.getChanId(-1), vob()->getMarkTime(65535), 1);
    return rc;
}
