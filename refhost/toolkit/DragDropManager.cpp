// DragDropManager: drags between widgets, with a small window showing the item at the pointer.
#include "host/DragDropManager.h"

#include <QWidget>
#include <algorithm>

#include "host/DragDropDestination.h"
#include "host/Glob.h"
#include "host/GlobManager.h"
#include "host/TextBox.h"
#include "host/UifStd.h"
#include "host/iEffectTemplateContainer.h"
#include "refhost/toolkit/GlobImpl.h"

namespace {

// The drag widget stands this far right of and below the pointer, so it never hides the spot.
constexpr int kWidgetOffset = 12;

WString labelOf(DragDropItem& item) {
    if (auto* c = dynamic_cast<iEffectTemplateContainer*>(&item))
        if (Zk::Ptr<EffectTemplate> t = c->getEffectTemplate())
            return t->getName();
    return L"\u2026";
}

bool containsScreen(const Glob& g, const XY<int>& screen) {
    const XY<int> p = g.screenXYToGlobXY(screen);
    return p.x >= 0 && p.y >= 0 && p.x < g.width() && p.y < g.height();
}

// The deepest visible widget under the point that takes drops, searching the topmost child first.
Glob* deepestDestination(Glob& g, const XY<int>& screen) {
    if (!g.isVisible() || !containsScreen(g, screen))
        return nullptr;
    const std::vector<Glob*>& kids = g.children();
    for (auto it = kids.rbegin(); it != kids.rend(); ++it)
        if (Glob* d = deepestDestination(**it, screen))
            return d;
    return dynamic_cast<DragDropDestination*>(&g) ? &g : nullptr;
}

DragDropDestination* asDestination(Glob* g) {
    return is_good_glob_ptr(g) ? dynamic_cast<DragDropDestination*>(g) : nullptr;
}

} // namespace

DragDropManager& DragDropManager::instance() {
    static DragDropManager m;
    return m;
}

bool DragDropManager::startDrag(const Zk::Ptr<DragDropItem>& item, Glob* source, const XY<int>& screen) {
    if (!item || item_)
        return false;
    item_ = item;
    source_ = source;
    const WString label = labelOf(*item);
    TextBox::InitArgs args(UIString(label), false, 0, UifStd::getRowHeight());
    if (source)
        args.palette = source->getPalette();
    auto* box = new TextBox(args);
    box->setDimensions(std::max(box->naturalSize().x + 8, 24), UifStd::getRowHeight());
    box->addShadow();
    QWidget* w = box->impl().widget;
    w->setWindowFlags(Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowTransparentForInput);
    w->setAttribute(Qt::WA_ShowWithoutActivating);
    dragWidget_ = box;
    item_->setDragWidget(box);
    Glob::setupRootPos(box->canvas(),
                       XY<int>(screen.x + kWidgetOffset, screen.y - kWidgetOffset - box->height()));
    GlobManager::instance().realize(box);
    dragTo(screen);
    return true;
}

void DragDropManager::dragTo(const XY<int>& screen) {
    if (!item_)
        return;
    if (is_good_glob_ptr(dragWidget_))
        dragWidget_->setPos(screen.x + kWidgetOffset, screen.y - kWidgetOffset - dragWidget_->height());
    Glob* now = destinationAt(screen);
    if (now != over_ || !is_good_glob_ptr(over_))
        leaveDestination();
    over_ = now;
    if (DragDropDestination* d = asDestination(over_)) {
        const bool ok = d->canAccept(item_.get(), Glob::DropInsert);
        // The destination may have ended the drag while it heard; the item is held till here.
        Zk::Ptr<DragDropItem> keep = item_;
        d->indicateAcceptability(keep.get(), ok ? iDragDropDestination::kAcceptable
                                                : iDragDropDestination::kUnacceptable);
    } else if (is_good_glob_ptr(dragWidget_)) {
        dragWidget_->setVisible(true);
    }
}

bool DragDropManager::drop(const XY<int>& screen, bool replace) {
    if (!item_)
        return false;
    dragTo(screen);
    bool taken = false;
    Zk::Ptr<DragDropItem> keep = item_;
    if (DragDropDestination* d = asDestination(over_))
        taken = d->accept(keep.get(), replace ? Glob::DropReplace : Glob::DropInsert);
    finish();
    return taken;
}

void DragDropManager::cancel() {
    finish();
}

Glob* DragDropManager::destination() const {
    return is_good_glob_ptr(over_) ? over_ : nullptr;
}

Glob* DragDropManager::destinationAt(const XY<int>& screen) const {
    const std::vector<Glob*>& roots = GlobManager::instance().roots();
    for (auto it = roots.rbegin(); it != roots.rend(); ++it) {
        if (*it == dragWidget_ || !is_good_glob_ptr(*it))
            continue;
        if (Glob* d = deepestDestination(**it, screen))
            return d;
    }
    return nullptr;
}

void DragDropManager::leaveDestination() {
    if (DragDropDestination* d = asDestination(over_)) {
        Zk::Ptr<DragDropItem> keep = item_;
        d->indicateAcceptability(keep.get(), iDragDropDestination::kNotOver);
    }
    over_ = nullptr;
}

void DragDropManager::finish() {
    leaveDestination();
    if (item_)
        item_->setDragWidget(nullptr);
    if (is_good_glob_ptr(dragWidget_))
        GlobManager::instance().requestDeletion(dragWidget_);
    dragWidget_ = nullptr;
    item_ = nullptr;
    source_ = nullptr;
}
