// AudioRoutingView: rows, texts and drawing of the chain; the click, the swap and the menu.
#include "routing/AudioRoutingView.h"

#include <algorithm>

#include "host/AudioPlugIns.h"
#include "host/Edit.h"
#include "host/EditGraphIterator.h"
#include "host/EditInfo.h"
#include "host/EffectMenuItems.h"
#include "host/GlibDraw.h"
#include "host/GlibFonts.h"
#include "host/IconCache.h"
#include "host/PlugInUIAdaptorFactory.h"
#include "host/Resources.h"
#include "host/StripColourManager.h"
#include "host/UifStd.h"
#include "host/Vob.h"
#include "host/VobManager.h"

namespace {

constexpr unsigned kAudio = CompoundEffectMonitor::kAudioComponent;
constexpr unsigned kNoAudioEffectsText = 10884;
// Graph change details that alter what the table shows: general (0), names and parameters (4),
// connections (5) and properties such as the enable flag (11).
constexpr unsigned kRelevantKinds = 2097;

bool hasCrossfadeTag(const Zk::Ptr<EffectInstance_opu4h5a4j>& fx) {
    return fx && fx->tagTypeId().view() == AudioRoutingView::kCrossfadeTag;
}

} // namespace

AudioRoutingView::AudioRoutingView(const InitArgs& args) : StandardPanel(args), monitor_(args.monitor) {
    // A page of the routing panel: no title row, the table fills it.
    setTitleShown(false);
    Zk::Box<int> ua = getUserArea();
    TableWidget::InitArgs t(ua.width(), ua.height(), this, 2, UifStd::getRowHeight());
    t.palette = getPalette();
    tableWidget_ =
        static_cast<TableWidget*>(addChild(new TableWidget(t), UserTopLeft(0, 0), WidgetSurround()));
    tableWidget_->setLineHeight(2 * UifStd::getRowHeight());
    tableWidget_->setHighlightFlags(0);
    tableWidget_->setEmptyLabel(UIString(kNoAudioEffectsText));
    if (monitor_) {
        trackId_ = monitor_->getTrackID();
        updateSource();
        monitor_->registerForChangeNotifications(this, true);
    }
}

AudioRoutingView::~AudioRoutingView() {
    if (monitor_)
        monitor_->registerForChangeNotifications(this, false);
}

int AudioRoutingView::numEffectRows() const {
    if (!monitor_)
        return 0;
    return isCrossfade_ ? 1 : static_cast<int>(monitor_->getNumComponents(kAudio));
}

int AudioRoutingView::getNumRows() {
    if (isCrossfade_)
        return 2;
    int n = numEffectRows();
    return n != 0 ? n + 1 : 0;
}

LightweightString<wchar_t> AudioRoutingView::getFieldText(const XY<int>& cell) {
    if (cell.y >= 0 && cell.y < numEffectRows()) {
        auto fx = monitor_->getEffect(static_cast<unsigned short>(cell.y));
        if (!fx)
            return WString();
        // An effect the user never named is shown by its kind.
        return fx->getName().empty() ? toWide(fx->tagTypeId()) : fx->getName();
    }
    return sourceText_;
}

std::vector<TableColumnDescription> AudioRoutingView::getColumns() {
    TableColumnDescription c;
    c.title = UIString(WString(), UIString::NoResource);
    c.fieldId = String();
    c.widthKind = 1;
    c.width = 0;
    c.flags = XY<int>(2, 1);
    return {c};
}

void AudioRoutingView::getFieldColours(const XY<int>& cell, Palette& palette) {
    if (cell.y >= 0 && cell.y < numEffectRows()) {
        auto fx = monitor_->getEffect(static_cast<unsigned short>(cell.y));
        if (fx && !fx->isEnabled())
            palette.setText(palette.text(1));
        return;
    }
    palette.setText(palette.text(2));
}

bool AudioRoutingView::isMovable(int row) const {
    if (row < 0 || row >= numEffectRows())
        return false;
    return !hasCrossfadeTag(monitor_->getEffect(static_cast<unsigned short>(row)));
}

MouseCursorID AudioRoutingView::getCellCursor(const XY<int>& cell) {
    if (!isCrossfade_ && monitor_ && monitor_->getNumComponents(kAudio) >= 2 && isMovable(cell.y))
        return CursorDragRow;
    return CursorArrow;
}

IdStamp AudioRoutingView::inputIdOf(int row) const {
    int n = numEffectRows();
    if (row >= 0 && row < n) {
        auto fx = monitor_->getEffect(static_cast<unsigned short>(row));
        return fx ? fx->getId() : IdStamp();
    }
    if (row == n && n > 0) {
        auto lowest = monitor_->getEffect(static_cast<unsigned short>(n - 1));
        return lowest ? lowest->getInputTrackId(0) : IdStamp();
    }
    return IdStamp();
}

double AudioRoutingView::currentTime() const {
    return monitor_ && monitor_->getVob() ? monitor_->getVob()->getCurrentTime(1) : 0.0;
}

void AudioRoutingView::redrawTable() {
    if (tableWidget_)
        tableWidget_->update();
    update();
}

bool AudioRoutingView::handleMouseEvent(const XY<int>& cell, const Event& e) {
    if (!mouse_left_event(e) || !mouse_up_event(e) || isMouseMoveSignificant(e))
        return false;
    if (cell.y < 0 || cell.y >= numEffectRows())
        return false;
    auto fx = monitor_->getEffect(static_cast<unsigned short>(cell.y));
    EditPtr edit = monitor_->getSourceEdit();
    if (!fx || !edit)
        return false;
    {
        // One undo step; the change is published when the step closes.
        EasyBackup step(edit);
        fx->startBatchChange(EffectModification(IdStamp(999, 999, 999), IdStamp(0, 0, 0), 1, 4));
        fx->setEnabled(!fx->isEnabled());
        fx->endBatchChange();
        edit->addModification(EditModifications(EditModification(11)), true);
    }
    return true;
}

bool AudioRoutingView::requestSwapRows(int a, int b) {
    const int lo = std::min(a, b), hi = std::max(a, b);
    if (!isMovable(lo) || !isMovable(hi) || lo == hi)
        return false;
    EditPtr edit = monitor_->getSourceEdit();
    if (!edit)
        return false;
    const IdStamp idLo = inputIdOf(lo), idHi = inputIdOf(hi), idBelow = inputIdOf(hi + 1);
    auto effectAt = [this](int row) { return monitor_->getEffect(static_cast<unsigned short>(row)); };
    auto fxLo = effectAt(lo), fxHi = effectAt(hi), fxAbove = lo > 0 ? effectAt(lo - 1) : nullptr;
    const double t = currentTime();
    {
        EasyBackup step(edit);
        if (lo != 0) {
            fxAbove->setInputTrackId(0, idHi, false);
        } else {
            // The top of the chain is what the track plays: every side of a stereo group plays
            // the one chain.
            for (const IdStamp& chan : edit->getGroupContainingChan(trackId_))
                CelEventPair(edit, chan, t).inH().setEffectGraph(idHi);
        }
        fxHi->setInputTrackId(0, idLo, false);
        fxLo->setInputTrackId(0, idBelow, true);
        edit->addModification(EditModifications(EditModification(5)), true);
    }
    return true;
}

void AudioRoutingView::resize(double w, double h) {
    StandardPanel::resize(w, h);
    if (tableWidget_) {
        Zk::Box<int> ua = getUserArea();
        tableWidget_->setDimensions(ua.width(), ua.height());
    }
}

void AudioRoutingView::reviewMenu(const Event* e) {
    clearMenu();
    if (!e || !tableWidget_ || !monitor_)
        return;
    // The event is in this panel's frame; the table asks in its own.
    const XY<int> at = tableWidget_->getPosition(), self = getPosition();
    const XY<int> d(at.x - self.x, at.y - self.y);
    Event local(e->action(), e->button(), XY<int>(e->pos().x - d.x, e->pos().y - d.y),
                XY<int>(e->pressPos().x - d.x, e->pressPos().y - d.y), e->modifiers());
    XY<int> cell = tableWidget_->getCellForMouseEvent(local);
    if (cell.y < 0 || cell.y > numEffectRows())
        return;
    EditGraphIterator it(monitor_->getSourceEdit(), trackId_, currentTime(), 0);
    if (!it.isValid() || !it.search(inputIdOf(cell.y), EditGraphIterator::searchBelowRoot))
        return;
    setMenuTitle(UIString(getFieldText(cell)));
    setMenuItems(EffectMenuItems::getItemsForComponent(monitor_->getVob(), it, 799));
}

void AudioRoutingView::handleCompoundEffectChanges(const ChangeDescription& desc) {
    const bool transit = monitor_ && monitor_->getVob() && monitor_->getVob()->isRecording();
    if (desc.modification.matches(18) && desc.kind < 12 && ((kRelevantKinds >> desc.kind) & 1)) {
        updateSource();
        redrawTable();
    } else if (!desc.removed.empty() || !desc.swapped.empty() || !desc.added.empty() || desc.changed) {
        updateSource();
        redrawTable();
    } else if ((desc.flags & 2) && !transit) {
        // While the Vob records, the playhead moves on every frame; the table is left alone.
        if (updateSource())
            redrawTable();
    }
    std::vector<Component> plugIns = desc.added;
    for (const auto& [first, second] : desc.swapped)
        plugIns.push_back(first);
    for (const auto& c : plugIns)
        if (c && isAudioPlugin(c->tagTypeId()))
            if (Zk::Ptr<iPlugInUIAdaptor> a =
                    PlugInUIAdaptorFactory::instance().createAdaptorFor(c, String()))
                a->setup();
}

void AudioRoutingView::setTrack(const IdStamp& track) {
    trackId_ = track;
    updateSource();
    redrawTable();
}

WString AudioRoutingView::nameOf(const CelEventPair& pair) const {
    WString name;
    if (pair.valid() && !pair.isBlack() && !pair.isEffect())
        name = EditInfo(convertCookie(pair.stripCookie(), 69, 255), nullptr).getAttribW("name");
    if (name.empty() && monitor_ && monitor_->getSourceEdit())
        name = monitor_->getSourceEdit()->getChanDisplayName(trackId_, 3);
    return name;
}

bool AudioRoutingView::updateSource() {
    if (!monitor_)
        return false;
    bool changed = false;
    bool crossfade = monitor_->getNumComponents(kAudio) > 0 && hasCrossfadeTag(monitor_->getEffect(0));
    if (crossfade != isCrossfade_) {
        isCrossfade_ = crossfade;
        changed = true;
    }
    CelEventPair pair(monitor_->getSourceEdit(), trackId_, currentTime());
    WString text;
    if (!isCrossfade_) {
        text = nameOf(pair);
    } else {
        text = nameOf(prev(pair)) + WString(L" / ");
        CelEventPair after = next(pair);
        WString second = nameOf(after);
        if (!second.empty())
            text += second;
    }
    if (!(text == sourceText_)) {
        sourceText_ = text;
        changed = true;
    }
    return changed;
}

bool AudioRoutingView::drawField(const CellContext& ctx) {
    if (!ctx.renderer)
        return false;
    CanvasRenderer& r = *ctx.renderer;
    const int x0 = ctx.box.x1, x1 = ctx.box.x2, y0 = ctx.box.y1, y1 = ctx.box.y2;
    const int w = ctx.box.width();
    const int gap = UifStd::getWidgetGap(), row = UifStd::getRowHeight(), indent = UifStd::getIndentWidth();
    const int rows = getNumRows(), n = numEffectRows();
    Icon icon = IconCache::createRecolouredIcon(getIconPath("arrow-up.png"), ctx.palette.text(2));
    const int ih = icon.valid() ? icon.height : 0;
    const int iw = icon.valid() ? icon.width : 0;

    const int yb = y0 + (icon.valid() ? ih : gap);
    if (ctx.cell.y < rows) {
        FontDesc font = Glib::getDefaultFont();
        Glib::TextDescription t;
        t.text = Glib::fitTextToWidth(getFieldText(ctx.cell), font, 2 * w / 3);
        t.anchor = XY<int>(x0 + w / 2, yb + getFontYOffset(y1 - yb, font));
        t.font = font;
        t.colour = fromColour(ctx.palette.text(0));
        t.alignment = 2;
        r.renderPrimitive(t);
    }

    Glib::drawRect(r, ctx.palette.window(0), Zk::Box<int>{x0, y0, x1, y0 + 2 * gap});

    const bool lastRow = ctx.cell.y == rows - 1;
    if (!lastRow) {
        const int mid = yb + (y1 - yb) / 2;
        Zk::Box<int> swatch{x0, mid - gap, x0 + 2 * gap, mid + gap};
        Colour fill = ctx.palette.window(0);
        if (ctx.cell.y < n)
            if (auto fx = monitor_->getEffect(static_cast<unsigned short>(ctx.cell.y)))
                fill = StripColourManager::getTypeColour(fx->tagTypeId());
        Glib::drawRect(r, fill, swatch);
        Glib::drawFrame(r, Colour(), swatch, indent);
        if (icon.valid()) {
            Zk::Box<int> oldClip = r.getClipRect();
            r.setClipRect(ctx.box);
            Glib::ImageDescription img;
            img.box = Zk::Box<int>{(w - iw) / 2, y0, (w - iw) / 2 + iw, y0 + ih};
            img.pixels = icon.pixels;
            img.width = iw;
            img.height = ih;
            r.renderPrimitive(img);
            r.setClipRect(oldClip);
        }
    }

    const int dy = y0 + ih / 2;
    const int breakStart = (w - row) / 2, breakEnd = (w - row) / 2 + row;
    Glib::drawRect(r, ctx.palette.window(3),
                   Zk::Box<int>{x0, dy, lastRow ? breakEnd : breakStart, dy + indent});
    Glib::drawRect(r, ctx.palette.window(3), Zk::Box<int>{breakEnd, dy, x1, dy + indent});
    r.addModifiedArea(ctx.box);
    return true;
}
