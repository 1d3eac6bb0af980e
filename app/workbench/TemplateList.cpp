// TemplateList: a list of effect templates that drags them onto whatever takes them.
#include "app/workbench/TemplateList.h"

#include "host/Canvas.h"
#include "host/Colour.h"
#include "host/DragDropManager.h"
#include "host/EffectTemplateDragItem.h"
#include "host/EffectTemplateManager.h"
#include "host/GlibDraw.h"
#include "host/GlibFonts.h"
#include "host/TextDescription.h"
#include "host/UifStd.h"

TemplateList::TemplateList(const GlobCreationInfo& info, EditChanType type) : Glob(info) {
    for (const auto& t : EffectTemplateManager::instance().templates())
        if (t->getType() == type)
            templates_.push_back(t);
}

int TemplateList::rowHeight() const {
    return UifStd::getRowHeight() + 4;
}

int TemplateList::rowOf(const WString& name) const {
    for (size_t i = 0; i < templates_.size(); ++i)
        if (templates_[i]->getName() == name)
            return static_cast<int>(i);
    return -1;
}

XY<int> TemplateList::rowCentre(int row) const {
    return XY<int>(width() / 2, height() - row * rowHeight() - rowHeight() / 2);
}

int TemplateList::rowAt(const XY<int>& pos) const {
    if (pos.x < 0 || pos.x >= width() || pos.y < 0 || pos.y >= height())
        return -1;
    const int row = (height() - 1 - pos.y) / rowHeight();
    return row < static_cast<int>(templates_.size()) ? row : -1;
}

bool TemplateList::handleMouseEvent(const Event& e) {
    if (!mouse_left_event(e))
        return false;
    DragDropManager& dd = DragDropManager::instance();
    if (mouse_down_event(e)) {
        pressed_ = rowAt(e.pos());
        dragging_ = false;
        update();
        return pressed_ >= 0;
    }
    if (pressed_ < 0)
        return false;
    if (mouse_move_event(e)) {
        if (!dragging_ && isMouseMoveSignificant(e)) {
            auto item = Zk::make<EffectTemplateDragItem>(templates_[static_cast<size_t>(pressed_)]);
            dragging_ = dd.startDrag(item, this, glib_getMousePos());
        } else if (dragging_) {
            dd.dragTo(glib_getMousePos());
        }
        return true;
    }
    if (mouse_up_event(e)) {
        if (dragging_)
            dd.drop(glib_getMousePos(), (e.modifiers() & ClickControl) != 0);
        pressed_ = -1;
        dragging_ = false;
        update();
    }
    return true;
}

void TemplateList::drawBackground() {
    CanvasRenderer& r = canvas()->renderer();
    Zk::Box<int> all;
    all.x2 = width();
    all.y2 = height();
    Glib::drawRect(r, getPalette().window(-1), all);
    const FontDesc font = Glib::getDefaultFont();
    for (size_t i = 0; i < templates_.size(); ++i) {
        const int top = height() - static_cast<int>(i) * rowHeight();
        Zk::Box<int> row{0, top - rowHeight(), width(), top};
        if (static_cast<int>(i) == pressed_)
            Glib::drawRect(r, getPalette().window(1), row);
        Glib::TextDescription t;
        t.text = templates_[i]->getName();
        t.font = font;
        t.anchor = XY<int>(UifStd::getWidgetGap(), row.y1 + rowHeight() / 2 - font.size / 3);
        t.colour = fromColour(getPalette().text(0));
        r.renderPrimitive(t);
    }
    Glib::drawFrame(r, getPalette().window(-3), all, 1);
    r.addModifiedArea(all);
}
