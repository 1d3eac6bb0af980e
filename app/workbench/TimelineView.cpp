// TimelineView: tracks, ruler, playhead, transport and status line of the workbench.
#include "app/workbench/TimelineView.h"

#include <QApplication>
#include <QFileDialog>
#include <QKeyEvent>
#include <QWidget>
#include <algorithm>
#include <cmath>
#include <cstdio>

#include "host/Canvas.h"
#include "host/DropDownMenuButton.h"
#include "host/Edit.h"
#include "host/EffectInstance_opu4h5a4j.h"
#include "host/GlibDraw.h"
#include "host/GlibFonts.h"
#include "host/MaterialUsageNode.h"
#include "host/PushButton.h"
#include "host/StripColourManager.h"
#include "host/UifStd.h"
#include "host/Vob.h"
#include "refhost/edit/AnyEditFile.h"
#include "refhost/edit/EditFile.h"
#include "refhost/notify/FunctionCallback.h"
#include "refhost/toolkit/GlobImpl.h"

namespace {

constexpr int kNameWidth = 44;
constexpr int kRightMargin = 8;
constexpr int kRulerHeight = 18;
constexpr int kTrackHeight = 20;
constexpr int kCutGrab = 4;
const wchar_t* const kSpeedNames[] = {L"0.25x", L"0.5x", L"1x", L"2x", L"-1x"};

Glib::TextDescription text(const WString& s, int x, int y, const Colour& c, int alignment = 0, int size = 0) {
    Glib::TextDescription t;
    t.text = s;
    t.anchor = XY<int>(x, y);
    t.font = Glib::loadFont(getDefaultFontName(0), size > 0 ? size : getDefaultFontSize() - 1, 0);
    t.colour = fromColour(c);
    t.alignment = alignment;
    return t;
}

void fill(CanvasRenderer& r, const Colour& c, int x1, int y1, int x2, int y2) {
    Glib::drawRect(r, c, Zk::Box<int>{x1, y1, x2, y2});
}

// The ruler's step between labelled ticks: at least 48 pixels apart.
double tickStep(double secondsPerPixel) {
    static const double steps[] = {0.04, 0.1, 0.2, 0.5, 1, 2, 5, 10, 15, 30, 60, 120, 300, 600};
    for (double s : steps)
        if (s / secondsPerPixel >= 48)
            return s;
    return 1200;
}

// Keys go to the time line from anywhere in its window.
class KeyFilter : public QObject {
public:
    explicit KeyFilter(TimelineView& view) : view_(view) {}
    bool eventFilter(QObject* o, QEvent* e) override {
        if (e->type() != QEvent::KeyPress)
            return false;
        auto* w = qobject_cast<QWidget*>(o);
        QWidget* own = view_.impl().widget;
        if (!w || !own || w->window() != own->window())
            return false;
        auto* k = static_cast<QKeyEvent*>(e);
        return view_.handleKey(k->key(), static_cast<unsigned>(k->modifiers()));
    }

private:
    TimelineView& view_;
};

} // namespace

TimelineView::TimelineView(const GlobCreationInfo& info, Vob* vob)
    : Glob(info), VobClient(vob ? vob->cookie() : Cookie(), vob, kNormalPriority, kUnmanaged), editor_(vob),
      clock_(vob) {
    auto button = [this](const wchar_t* label, int w, std::function<void()> f) {
        auto* b = new PushButton(Button::InitArgs(UIString(label),
                                                  WidgetCallback(refhost::makeCallback([f](const NotifyMsg&) {
                                                      f();
                                                      return 1;
                                                  })),
                                                  w, PushButton::calcHeight()));
        addChild(b, BottomLeft(0, 0));
        return b;
    };
    open_ = button(L"Open", 56, [this] { askOpen(); });
    save_ = button(L"Save", 56, [this] { askSave(); });
    undo_ = button(L"Undo", 56, [this] { undo(); });
    redo_ = button(L"Redo", 56, [this] { redo(); });
    back_ = button(L"<", 30, [this] { stepFrames(-1); });
    playButton_ = button(L"Play", 56, [this] { isPlaying() ? stop() : play(); });
    forward_ = button(L">", 30, [this] { stepFrames(1); });
    std::vector<UIString> speeds;
    for (const wchar_t* s : kSpeedNames)
        speeds.push_back(UIString(s));
    speedChoice_ = new DropDownMenuButton(
        DropDownMenuButton::InitArgs(speeds, WidgetCallback(refhost::makeCallback([this](const NotifyMsg&) {
                                         setSpeed(kSpeeds[speedChoice_->getSelectedItem().index]);
                                         return 1;
                                     })),
                                     70, PushButton::calcHeight()));
    addChild(speedChoice_, BottomLeft(0, 0));
    speedChoice_->setSelectedItem(MenuItemIndex(2));
    placeButtons();
    clock_.setTickListener([this] {
        if (!clock_.isPlaying())
            playButton_->setLabel(UIString(L"Play"));
        update();
    });
    status_ = toWide(stringFormat("t=%.3fs  no notice yet", vob ? vob->getCurrentTime(1) : 0.0));
    keys_ = std::make_unique<KeyFilter>(*this);
    if (QCoreApplication::instance())
        QCoreApplication::instance()->installEventFilter(keys_.get());
    if (impl().widget)
        impl().widget->setFocusPolicy(Qt::ClickFocus);
}

TimelineView::~TimelineView() {
    if (watched_ && EventHandler::valid(watched_, watchedId_))
        watched_->setRefreshListener(nullptr);
    clock_.setTickListener(nullptr);
    clock_.stop();
}

int TimelineView::preferredHeight(const Edit& edit) {
    const int gap = UifStd::getWidgetGap();
    return UifStd::getRowHeight() + 3 * gap + PushButton::calcHeight() + kRulerHeight +
           std::max(1, edit.numChans()) * kTrackHeight + 4;
}

void TimelineView::placeButtons() {
    const int gap = UifStd::getWidgetGap();
    const int y = UifStd::getRowHeight() + gap;
    int x = gap;
    for (Glob* b : std::initializer_list<Glob*>{open_, save_, undo_, redo_, back_, playButton_, forward_,
                                                speedChoice_}) {
        b->setPos(x, y);
        x += b->width() + (b == redo_ ? 4 * gap : gap);
    }
}

void TimelineView::sizeChanged() {
    update();
}

void TimelineView::watch(FXGraphView* view) {
    if (watched_ && EventHandler::valid(watched_, watchedId_))
        watched_->setRefreshListener(nullptr);
    watched_ = view;
    watchedId_ = view ? view->handlerId() : IdStamp();
    if (!view)
        return;
    const IdStamp me = handlerId();
    view->setRefreshListener([this, me](FXGraphView::Refresh r) {
        if (EventHandler::valid(this, me))
            refreshStatus(r);
    });
}

void TimelineView::refreshStatus(FXGraphView::Refresh r) {
    const double t = vob() ? vob()->getCurrentTime(1) : 0.0;
    auto count = [this](FXGraphView::Refresh k) { return watched_ ? watched_->refreshCount(k) : 0u; };
    status_ = toWide(stringFormat("t=%.3fs  %s  (rebuilds %u, stills %u, repaints %u, names %u, nothing %u)",
                                  t, FXGraphView::refreshName(r), count(FXGraphView::Refresh::Rebuild),
                                  count(FXGraphView::Refresh::Stills), count(FXGraphView::Refresh::Repaint),
                                  count(FXGraphView::Refresh::Names), count(FXGraphView::Refresh::Nothing)));
    update();
}

double TimelineView::frameRate() const {
    EditPtr e = getEdit();
    const double rate = e ? e->getVideoMetadata().frameRate : 25.0;
    return rate > 0 ? rate : 25.0;
}

void TimelineView::setTime(double t) {
    EditPtr e = getEdit();
    if (!e || !vob())
        return;
    const double start = e->getStartTime(), end = e->getEndTime();
    const double rate = frameRate();
    t = start + std::round((t - start) * rate) / rate;
    t = std::clamp(t, start, std::max(start, end));
    if (!valEqualsVal(t, vob()->getCurrentTime(1)))
        vob()->setCurrentTime(t);
}

void TimelineView::stepFrames(int frames) {
    if (!vob())
        return;
    if (isPlaying())
        stop();
    setTime(vob()->getCurrentTime(1) + frames / frameRate());
}

void TimelineView::play() {
    clock_.play(speed_);
    if (clock_.isPlaying())
        playButton_->setLabel(UIString(L"Stop"));
}

void TimelineView::stop() {
    clock_.stop();
    playButton_->setLabel(UIString(L"Play"));
}

void TimelineView::setSpeed(int speed) {
    for (size_t i = 0; i < std::size(kSpeeds); ++i)
        if (kSpeeds[i] == speed) {
            speed_ = speed;
            speedChoice_->setSelectedItem(MenuItemIndex(static_cast<unsigned short>(i)));
            if (isPlaying())
                clock_.play(speed_);
            return;
        }
}

bool TimelineView::handleKey(int key, unsigned modifiers) {
    const bool shift = modifiers & Qt::ShiftModifier;
    const bool control = modifiers & Qt::ControlModifier;
    switch (key) {
    case Qt::Key_Left:
    case Qt::Key_Right: {
        const int dir = key == Qt::Key_Left ? -1 : 1;
        stepFrames(dir * (shift ? static_cast<int>(std::lround(frameRate())) : 1));
        return true;
    }
    case Qt::Key_Home:
    case Qt::Key_End:
        if (EditPtr e = getEdit())
            setTime(key == Qt::Key_Home ? e->getStartTime() : e->getEndTime());
        return true;
    case Qt::Key_Space:
        isPlaying() ? stop() : play();
        return true;
    case Qt::Key_Z:
        if (!control)
            return false;
        shift ? redo() : undo();
        return true;
    default:
        return false;
    }
}

bool TimelineView::saveTo(const std::string& path, std::string& error) {
    EditPtr e = getEdit();
    if (!e) {
        error = "no edit to save";
        return false;
    }
    if (!EditFile::save(*e, path, error))
        return false;
    e->setDirty(false);
    status_ = toWide(String("saved to " + path));
    update();
    return true;
}

bool TimelineView::openFile(const std::string& path, std::string& error) {
    EditPtr e = getEdit();
    if (!e || !vob()) {
        error = "no edit to open into";
        return false;
    }
    EditPtr loaded = AnyEditFile::open(path, error);
    if (!loaded)
        return false;
    if (isPlaying())
        stop();
    vob()->makeBackup();
    e->copyStateFrom(*loaded);
    e->setVideoMetadata(loaded->getVideoMetadata());
    e->setDirty(false);
    vob()->storeCurrentTime(e->getStartTime());
    path_ = path;
    e->addModification(EditModifications(EditModification(kModReloaded, 0)), true, 0x20);
    if (opened_)
        opened_();
    return true;
}

void TimelineView::askOpen() {
    const QString file = QFileDialog::getOpenFileName(
        nullptr, QStringLiteral("Open an edit"), QString(),
        QStringLiteral("Edits and timelines (*.edit.json *.otio *.OTIO);;All files (*)"));
    if (file.isEmpty())
        return;
    std::string error;
    if (!openFile(file.toStdString(), error)) {
        status_ = toWide(String("can't open: " + error));
        update();
    }
}

void TimelineView::askSave() {
    std::string path = path_;
    const std::string suffix = ".edit.json";
    if (path.size() < suffix.size() ||
        path.compare(path.size() - suffix.size(), suffix.size(), suffix) != 0) {
        const QString file = QFileDialog::getSaveFileName(nullptr, QStringLiteral("Save the edit"), QString(),
                                                          QStringLiteral("Edits (*.edit.json)"));
        if (file.isEmpty())
            return;
        path = file.toStdString();
    }
    std::string error;
    if (saveTo(path, error))
        path_ = path;
    else {
        status_ = toWide(String("can't save: " + error));
        update();
    }
}

// --- geometry -------------------------------------------------------------------------------

Zk::Box<int> TimelineView::statusBox() const {
    return Zk::Box<int>{0, 0, width(), UifStd::getRowHeight()};
}

Zk::Box<int> TimelineView::rulerBox() const {
    return Zk::Box<int>{kNameWidth, height() - kRulerHeight, width() - kRightMargin, height()};
}

Zk::Box<int> TimelineView::trackBox(int chan) const {
    EditPtr e = getEdit();
    const int n = e ? std::max(1, e->numChans()) : 1;
    const int gap = UifStd::getWidgetGap();
    const int bottom = UifStd::getRowHeight() + 2 * gap + PushButton::calcHeight() + gap;
    const int top = height() - kRulerHeight - 2;
    const int rowH = std::max(6, std::min(kTrackHeight, (top - bottom) / n));
    const int y2 = top - chan * rowH;
    return Zk::Box<int>{kNameWidth, y2 - rowH + 2, width() - kRightMargin, y2};
}

int TimelineView::timeToX(double t) const {
    EditPtr e = getEdit();
    const double start = e ? e->getStartTime() : 0.0;
    const double end = e && e->getEndTime() > start ? e->getEndTime() : start + 1.0;
    const int span = std::max(1, width() - kRightMargin - kNameWidth);
    return kNameWidth + static_cast<int>(std::lround((t - start) / (end - start) * span));
}

double TimelineView::xToTime(int x) const {
    EditPtr e = getEdit();
    const double start = e ? e->getStartTime() : 0.0;
    const double end = e && e->getEndTime() > start ? e->getEndTime() : start + 1.0;
    const int span = std::max(1, width() - kRightMargin - kNameWidth);
    return start + (x - kNameWidth) * (end - start) / span;
}

int TimelineView::chanAt(int y) const {
    EditPtr e = getEdit();
    if (!e)
        return -1;
    for (int c = 0; c < e->numChans(); ++c) {
        const Zk::Box<int> b = trackBox(c);
        if (y >= b.y1 && y < b.y2)
            return c;
    }
    return -1;
}

bool TimelineView::cutNear(int chan, int x, double& cutTime) const {
    EditPtr e = getEdit();
    if (!e || chan < 0 || chan >= e->numChans())
        return false;
    int best = kCutGrab + 1;
    for (const CelEvent& ev : e->chan(chan).cel->events()) {
        if (valEqualsVal(ev.start, e->getStartTime()))
            continue;
        const int d = std::abs(timeToX(ev.start) - x);
        if (d < best) {
            best = d;
            cutTime = ev.start;
        }
    }
    return best <= kCutGrab;
}

// --- the pointer ----------------------------------------------------------------------------

bool TimelineView::handleMouseEvent(const Event& ev) {
    const XY<int> p = ev.pos();
    if (mouse_down_event(ev) && mouse_left_event(ev)) {
        const int chan = chanAt(p.y);
        double cut = 0.0;
        if (chan >= 0 && cutNear(chan, p.x, cut) && editor_.cutLimits(chan, cut, cutDrag_.limits)) {
            if (isPlaying())
                stop();
            cutDrag_.chan = chan;
            cutDrag_.from = cutDrag_.to = cut;
            update();
            return true;
        }
        const Zk::Box<int> ruler = rulerBox();
        const bool onTimes = p.x >= kNameWidth && p.x <= ruler.x2 && (chan >= 0 || p.y >= ruler.y1);
        if (!onTimes)
            return false;
        if (isPlaying())
            stop();
        scrubbing_ = true;
        setTime(xToTime(p.x));
        return true;
    }
    if (mouse_move_event(ev) && (cutDrag_.chan >= 0 || scrubbing_)) {
        if (cutDrag_.chan >= 0) {
            const double rate = frameRate();
            EditPtr e = getEdit();
            const double start = e ? e->getStartTime() : 0.0;
            double t = start + std::round((xToTime(p.x) - start) * rate) / rate;
            // Stay a frame inside the events on either side.
            t = std::clamp(t, cutDrag_.limits.lo + 1.0 / rate, cutDrag_.limits.hi - 1.0 / rate);
            cutDrag_.to = t;
            update();
        } else {
            setTime(xToTime(p.x));
        }
        return true;
    }
    if (mouse_up_event(ev) && (cutDrag_.chan >= 0 || scrubbing_)) {
        if (cutDrag_.chan >= 0 && !valEqualsVal(cutDrag_.from, cutDrag_.to))
            editor_.moveCut(cutDrag_.chan, cutDrag_.from, cutDrag_.to);
        cutDrag_ = CutDrag();
        scrubbing_ = false;
        update();
        return true;
    }
    return false;
}

// --- notices --------------------------------------------------------------------------------

void TimelineView::handleModifications(const EditModifications& mods, const VobModification& vobMod) {
    update();
    VobClient::handleModifications(mods, vobMod);
}

// --- drawing --------------------------------------------------------------------------------

void TimelineView::drawBackground() {
    CanvasRenderer& r = canvas()->renderer();
    const Zk::Box<int> all{0, 0, width(), height()};
    Glib::drawRect(r, getPalette().window(-1), all);
    drawTracks(r);
    drawRuler(r);
    drawStatus(r);
    r.addModifiedArea(all);
}

void TimelineView::drawRuler(CanvasRenderer& r) {
    EditPtr e = getEdit();
    const Zk::Box<int> box = rulerBox();
    Glib::drawRect(r, getPalette().window(-3), box);
    if (!e)
        return;
    const double start = e->getStartTime();
    const double step = tickStep((xToTime(box.x2) - start) / std::max(1, box.x2 - box.x1));
    const Colour ink = getPalette().text(2);
    for (double t = std::ceil(start / step) * step; t <= e->getEndTime() + 1e-9; t += step) {
        const int x = timeToX(t);
        fill(r, ink, x, box.y1, x + 1, box.y1 + 5);
        const double whole = std::round(t);
        String label = std::fabs(t - whole) < 1e-9 ? stringFormat("%.0fs", whole) : stringFormat("%.2gs", t);
        if (x + 30 < box.x2)
            r.renderPrimitive(text(toWide(label), x + 3, box.y1 + 5, ink, 0, getDefaultFontSize() - 2));
    }
    // The playhead's handle on the ruler and its time.
    if (vob()) {
        const double now = vob()->getCurrentTime(1);
        const int x = timeToX(now);
        const Colour red(0.92, 0.22, 0.2);
        fill(r, red, x - 5, box.y1 + 2, x + 6, box.y2);
        Zk::Box<int> tracks = trackBox(std::max(0, e->numChans() - 1));
        fill(r, red, x, tracks.y1, x + 1, box.y2);
    }
}

void TimelineView::drawTracks(CanvasRenderer& r) {
    EditPtr e = getEdit();
    if (!e)
        return;
    const Colour text0 = getPalette().text(0);
    for (int c = 0; c < e->numChans(); ++c) {
        const Zk::Box<int> row = trackBox(c);
        Glib::drawRect(r, getPalette().window(-2), row);
        const EditChannel& chan = e->chan(c);
        WString name = e->getChanDisplayName(chan.id, 3);
        r.renderPrimitive(text(name, 6, row.y1 + (row.y2 - row.y1) / 2 - 4, text0));
        for (const CelEvent& ev : chan.cel->events()) {
            if (ev.kind == CelEvent::Black)
                continue;
            const int x1 = timeToX(ev.start), x2 = timeToX(ev.end);
            Colour colour = StripColourManager::getColourFor(ev.strip);
            WString label;
            bool transition = false;
            if (ev.kind == CelEvent::Material) {
                if (const EditMaterial* m = e->findMaterial(ev.strip))
                    label = m->name;
            } else if (auto fx = Zk::dynamicCast<EffectInstance_opu4h5a4j>(ev.node)) {
                colour = StripColourManager::getTypeColour(fx->tagTypeId());
                label = fx->getName().empty() ? toWide(fx->tagTypeId()) : fx->getName();
                transition = fx->isTransition();
            } else if (auto mat = Zk::dynamicCast<MaterialUsageNode>(ev.node)) {
                colour = StripColourManager::getColourFor(mat->material());
                if (const EditMaterial* m = e->findMaterial(mat->material()))
                    label = m->name;
            }
            const Zk::Box<int> cel{x1 + 1, row.y1 + 1, std::max(x1 + 2, x2 - 1), row.y2 - 1};
            Glib::drawRoundedRect(r, scale(colour, 0.55), scale(colour, transition ? 1.0 : 0.8), cel, 3, 0,
                                  1);
            if (transition) {
                // A transition's span is marked by a band along its foot, from one side to the other.
                fill(r, scale(colour, 0.45), cel.x1 + 2, cel.y1 + 2, cel.x2 - 2, cel.y1 + 4);
            }
            const int room = (cel.x2 - cel.x1 - 8) / 7;
            if (room >= 3 && !label.empty()) {
                std::wstring s = label.str();
                if (static_cast<int>(s.size()) > room)
                    s = s.substr(0, static_cast<size_t>(room - 1)) + L"\u2026";
                r.renderPrimitive(text(WString(s), cel.x1 + 4, cel.y1 + (cel.y2 - cel.y1) / 2 - 4,
                                       Colour(0.08, 0.08, 0.1)));
            }
        }
        // Cuts: the starts of events after the edit's start.
        for (const CelEvent& ev : chan.cel->events())
            if (!valEqualsVal(ev.start, e->getStartTime()) && ev.kind != CelEvent::Black) {
                const int x = timeToX(ev.start);
                fill(r, Colour(0.95, 0.95, 0.95), x, row.y1, x + 1, row.y2);
            }
        if (cutDrag_.chan == c) {
            const int x = timeToX(cutDrag_.to);
            fill(r, Colour(1.0, 0.85, 0.2), x - 1, row.y1 - 2, x + 2, row.y2 + 2);
        }
    }
}

void TimelineView::drawStatus(CanvasRenderer& r) {
    const Zk::Box<int> box = statusBox();
    Glib::drawRect(r, getPalette().window(-3), box);
    r.renderPrimitive(text(status_, UifStd::getWidgetGap() + 2, box.y1 + 6, getPalette().text(0)));
}
