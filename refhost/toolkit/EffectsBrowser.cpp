// The template list: rows of headings and templates, folding, scrolling, choosing and dragging.
#include "host/EffectsBrowser.h"

#include <algorithm>

#include "host/Canvas.h"
#include "host/DragDropManager.h"
#include "host/EffectTemplateDragItem.h"
#include "host/EffectTemplateManager.h"
#include "host/GlibDraw.h"
#include "host/GlibFonts.h"
#include "host/TemplateMatcher.h"
#include "host/TextDescription.h"
#include "host/UifStd.h"

namespace {

EffectsBrowser::DragStarter& dragStarter() {
    static EffectsBrowser::DragStarter s;
    return s;
}

// The icon of a category: a swatch of a colour of its own, with the category's initial.
Colour categoryColour(const WString& name) {
    unsigned h = 2166136261u;
    for (wchar_t c : name.view())
        h = (h ^ static_cast<unsigned>(c)) * 16777619u;
    const double hue = (h % 360) / 360.0;
    auto channel = [&](double offset) {
        double v = hue + offset;
        v -= static_cast<int>(v);
        const double d = std::abs(v * 6.0 - 3.0) - 1.0;
        return 0.35 + 0.45 * std::clamp(d, 0.0, 1.0);
    };
    return Colour(channel(0.0), channel(2.0 / 3.0), channel(1.0 / 3.0));
}

} // namespace

EffectsBrowser::EffectsBrowser(const InitArgs& args)
    : StandardPanel(args), VobClient(Cookie(), args.vob, kNormalPriority, kManaged), viewType_(args.viewType),
      chosen_(args.chosen) {
    setTitleShown(false);
}

void EffectsBrowser::setDragStarter(DragStarter starter) {
    dragStarter() = std::move(starter);
}

void EffectsBrowser::getCategories(std::vector<EffectCategory>& result) {
    EffectTemplateManager::instance().getCategories(result, TemplateMatcher(), true);
}

void EffectsBrowser::refresh() {
    loaded_ = false;
    selected_ = pressed_ = -1;
    update();
}

void EffectsBrowser::ensureRows() {
    if (loaded_)
        return;
    loaded_ = true;
    categories_.clear();
    getCategories(categories_);
    folded_.assign(categories_.size(), false);
    rebuildRows();
}

void EffectsBrowser::rebuildRows() {
    rows_.clear();
    for (size_t c = 0; c < categories_.size(); ++c) {
        rows_.push_back(Row{static_cast<int>(c), -1});
        if (!folded_[c])
            for (size_t t = 0; t < categories_[c].templates.size(); ++t)
                rows_.push_back(Row{static_cast<int>(c), static_cast<int>(t)});
    }
    const int row = UifStd::getRowHeight();
    const int maxScroll = std::max(0, static_cast<int>(rows_.size()) * row - height());
    scroll_ = std::clamp(scroll_, 0, maxScroll);
}

const std::vector<EffectCategory>& EffectsBrowser::categories() {
    ensureRows();
    return categories_;
}

const std::vector<EffectsBrowser::Row>& EffectsBrowser::rows() {
    ensureRows();
    return rows_;
}

bool EffectsBrowser::isFolded(int category) const {
    return category >= 0 && static_cast<size_t>(category) < folded_.size() &&
           folded_[static_cast<size_t>(category)];
}

WString EffectsBrowser::rowText(int row) {
    ensureRows();
    if (row < 0 || static_cast<size_t>(row) >= rows_.size())
        return WString();
    const Row& r = rows_[static_cast<size_t>(row)];
    const EffectCategory& c = categories_[static_cast<size_t>(r.category)];
    return r.templ < 0 ? c.name : c.templates[static_cast<size_t>(r.templ)].name;
}

int EffectsBrowser::rowAt(const XY<int>& pos) {
    ensureRows();
    const int row = UifStd::getRowHeight();
    const int fromTop = height() - pos.y + scroll_;
    if (pos.x < 0 || pos.x >= width() || fromTop < 0)
        return -1;
    const int index = fromTop / row;
    return index < static_cast<int>(rows_.size()) ? index : -1;
}

int EffectsBrowser::rowOf(const WString& name) {
    ensureRows();
    for (size_t i = 0; i < rows_.size(); ++i)
        if (rows_[i].templ >= 0 && rowText(static_cast<int>(i)) == name)
            return static_cast<int>(i);
    return -1;
}

XY<int> EffectsBrowser::rowCentre(int row) const {
    const int h = UifStd::getRowHeight();
    return XY<int>(width() / 2, height() + scroll_ - row * h - h / 2);
}

Zk::Ptr<DragDropItem> EffectsBrowser::makeDragItem(int row) {
    ensureRows();
    if (row < 0 || static_cast<size_t>(row) >= rows_.size() || rows_[static_cast<size_t>(row)].templ < 0)
        return nullptr;
    const Row& r = rows_[static_cast<size_t>(row)];
    return Zk::Ptr<DragDropItem>(new EffectTemplateDragItem(
        categories_[static_cast<size_t>(r.category)].templates[static_cast<size_t>(r.templ)].tmpl));
}

bool EffectsBrowser::handleMouseEvent(const Event& e) {
    if (e.button() != Event::Left)
        return false;
    if (e.action() == Event::Down) {
        pressed_ = rowAt(e.pos());
        dragging_ = false;
        return pressed_ >= 0;
    }
    if (pressed_ < 0)
        return false;
    if (e.action() == Event::Move) {
        if (!dragging_ && isMouseMoveSignificant(e)) {
            Zk::Ptr<DragDropItem> item = makeDragItem(pressed_);
            // Without a starter of its own, the drag goes through the host's drag manager.
            managed_ = !dragStarter();
            if (item && !managed_)
                dragging_ = dragStarter()(item, this);
            else if (item)
                dragging_ = DragDropManager::instance().startDrag(item, this, glib_getMousePos());
        } else if (dragging_ && managed_) {
            DragDropManager::instance().dragTo(glib_getMousePos());
        }
        return true;
    }
    if (e.action() == Event::Up) {
        const int row = pressed_;
        pressed_ = -1;
        if (dragging_ || isMouseMoveSignificant(e)) {
            if (dragging_ && managed_)
                DragDropManager::instance().drop(glib_getMousePos(), (e.modifiers() & ClickControl) != 0);
            dragging_ = false;
            return true;
        }
        const Row r = rows_[static_cast<size_t>(row)];
        if (r.templ < 0) {
            folded_[static_cast<size_t>(r.category)] = !folded_[static_cast<size_t>(r.category)];
            selected_ = -1;
            rebuildRows();
        } else {
            selected_ = row;
            if (!chosen_.empty())
                chosen_.fire(this, toUtf8(rowText(row)), nullptr);
        }
        update();
        return true;
    }
    return false;
}

int EffectsBrowser::handleZoom(int direction) {
    ensureRows();
    const int row = UifStd::getRowHeight();
    const int maxScroll = std::max(0, static_cast<int>(rows_.size()) * row - height());
    const int before = scroll_;
    scroll_ = std::clamp(scroll_ - direction * 3 * row, 0, maxScroll);
    if (scroll_ != before)
        update();
    return 1;
}

void EffectsBrowser::drawBackground() {
    ensureRows();
    CanvasRenderer& r = canvas()->renderer();
    Zk::Box<int> all;
    all.x2 = width();
    all.y2 = height();
    Glib::drawRect(r, getPalette().window(-1), all);
    const int row = UifStd::getRowHeight(), indent = UifStd::getIndentWidth();
    const FontDesc font = Glib::getDefaultFont();
    for (size_t i = 0; i < rows_.size(); ++i) {
        Zk::Box<int> box;
        box.x1 = 0;
        box.x2 = width();
        box.y2 = height() + scroll_ - static_cast<int>(i) * row;
        box.y1 = box.y2 - row;
        if (box.y1 >= height() || box.y2 <= 0)
            continue;
        const Row& rw = rows_[i];
        const EffectCategory& cat = categories_[static_cast<size_t>(rw.category)];
        int textX = indent;
        if (rw.templ < 0) {
            Glib::drawRect(r, getPalette().window(-3), box);
            // A fold mark: a small square, filled while the category is open.
            Zk::Box<int> mark{box.x1 + indent, box.y1 + row / 3, box.x1 + indent + row / 3,
                              box.y1 + 2 * row / 3};
            if (folded_[static_cast<size_t>(rw.category)])
                Glib::drawFrame(r, getPalette().text(0), mark, 1);
            else
                Glib::drawRect(r, getPalette().text(0), mark);
            textX = mark.x2 + indent;
        } else {
            if (static_cast<int>(i) == selected_)
                Glib::drawRect(r, getPalette().window(2), box);
            const int side = row - 4;
            Zk::Box<int> icon{box.x1 + 2 * indent, box.y1 + 2, box.x1 + 2 * indent + side, box.y1 + 2 + side};
            Glib::drawRoundedRect(r, getPalette().window(-4), categoryColour(cat.name), icon, 3, 0, 1);
            Glib::TextDescription initial;
            initial.text = WString(std::wstring(1, cat.name.empty() ? L'?' : cat.name[0]));
            initial.font = font;
            initial.anchor = XY<int>((icon.x1 + icon.x2) / 2, icon.y1 + getFontYOffset(side, font));
            initial.alignment = 2;
            initial.colour = fromColour(Colour(1, 1, 1));
            r.renderPrimitive(initial);
            textX = icon.x2 + indent;
        }
        Glib::TextDescription t;
        t.font = font;
        t.text = Glib::fitTextToWidth(rowText(static_cast<int>(i)), font, width() - textX - indent);
        t.anchor = XY<int>(textX, box.y1 + getFontYOffset(row, font));
        t.colour = fromColour(getPalette().text(0));
        r.renderPrimitive(t);
    }
    r.addModifiedArea(all);
    (void)viewType_;
}
