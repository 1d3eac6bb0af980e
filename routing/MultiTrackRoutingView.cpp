// MultiTrackRoutingView: the tab strip, the one page below it, and following the monitor.
#include "routing/MultiTrackRoutingView.h"

#include <cwctype>

#include "graphview/FXGraphView.h"
#include "host/Edit.h"
#include "host/EventMsgData.h"
#include "host/Resources.h"
#include "host/TabDetails.h"
#include "host/UifStd.h"
#include "host/Vob.h"
#include "routing/AudioRoutingView.h"

namespace {

constexpr unsigned kVideoLabel = 10052;

WString wideId(const IdStamp& id) {
    return toWide(id.asString());
}

bool equalsIgnoringCase(const WString& a, const WString& b) {
    if (a.size() != b.size())
        return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (std::towlower(static_cast<wint_t>(a[i])) != std::towlower(static_cast<wint_t>(b[i])))
            return false;
    return true;
}

} // namespace

MultiTrackRoutingView::MultiTrackRoutingView(const InitArgs& args) : StandardPanel(args) {
    // The tab strip takes the place of the title row.
    setTitleShown(false);
    if (args.vob)
        monitor_ =
            dynamic_cast<CompoundEffectMonitor*>(args.vob->findClient(CompoundEffectMonitor::IDString));
    updateTracksWidget();
    createViewWidget();
    if (monitor_)
        monitor_->registerForChangeNotifications(this, true);
}

MultiTrackRoutingView::~MultiTrackRoutingView() {
    if (monitor_)
        monitor_->registerForChangeNotifications(this, false);
}

MultiTrackRoutingView::MultiTrackRoutingView(const MultiTrackRoutingView& o)
    : StandardPanel(o), CompoundEffectMonitorClient(o), monitor_(o.monitor_), trackIds_(o.trackIds_) {}

MultiTrackRoutingView::MultiTrackRoutingView(MultiTrackRoutingView&& o) : MultiTrackRoutingView(o) {}

MultiTrackRoutingView& MultiTrackRoutingView::operator=(const MultiTrackRoutingView& o) {
    if (this != &o) {
        if (monitor_)
            monitor_->registerForChangeNotifications(this, false);
        monitor_ = o.monitor_;
        trackIds_ = o.trackIds_;
    }
    return *this;
}

MultiTrackRoutingView& MultiTrackRoutingView::operator=(MultiTrackRoutingView&& o) {
    return *this = static_cast<const MultiTrackRoutingView&>(o);
}

bool MultiTrackRoutingView::createViewWidget() {
    if (!monitor_)
        return false;
    EditPtr edit = monitor_->getSourceEdit();
    const bool audioTrack = edit && edit->getChanType(monitor_->getTrackID()) == kAudioChan;
    if ((monitor_->getFlags() & CompoundEffectMonitor::kHasVideo) && !audioTrack)
        return createVideoViewWidget();
    if (monitor_->getFlags() & CompoundEffectMonitor::kHasAudio)
        return createAudioViewWidget();
    return false;
}

bool MultiTrackRoutingView::createVideoViewWidget() {
    bool made = false;
    if (!videoView_) {
        Zk::Box<int> ua = getUserArea();
        FXGraphView::InitArgs args(ua.width(), ua.height(), monitor_ ? monitor_->getVob() : nullptr, 1);
        args.palette = getPalette();
        videoView_ = static_cast<FXGraphView*>(
            addChild(new FXGraphView(args), UserBottomLeft(0, 0), WidgetSurround()));
        removeWidget(audioView_, true);
        made = true;
    }
    if (tabs_)
        tabs_->selectPage(0, false, false);
    return made;
}

bool MultiTrackRoutingView::createAudioViewWidget() {
    bool made = false;
    if (audioView_) {
        audioView_->setTrack(monitor_->getTrackID());
    } else {
        Zk::Box<int> ua = getUserArea();
        AudioRoutingView::InitArgs args(ua.width(), ua.height(), Border(0, 0, 15), monitor_);
        args.palette = getPalette();
        audioView_ =
            static_cast<AudioRoutingView*>(addChild(new AudioRoutingView(args), UserBottomLeft(0, 0)));
        removeWidget(videoView_, true);
        made = true;
    }
    if (tabs_)
        tabs_->selectPage(wideId(monitor_->getTrackID()), false, false);
    return made;
}

bool MultiTrackRoutingView::updateTracksWidget() {
    std::vector<UIString> pages;
    std::vector<WString> ids;
    EditPtr edit = monitor_ ? monitor_->getSourceEdit() : EditPtr();
    if (monitor_ && edit) {
        std::vector<IdStamp> video;
        edit->getChans(video, kVideoChan, 0xFF);
        if ((monitor_->getFlags() & CompoundEffectMonitor::kHasVideo) && !video.empty()) {
            pages.push_back(UIString(kVideoLabel));
            ids.push_back(wideId(video.front()));
        }
        if (monitor_->getFlags() & CompoundEffectMonitor::kHasAudio)
            for (const IdStamp& track : monitor_->getTrackIDs())
                if (edit->getChanType(track) == kAudioChan) {
                    pages.push_back(UIString(edit->getGroupDisplayName(track, false), UIString::NoResource));
                    ids.push_back(wideId(track));
                }
    }

    // Video alone needs no strip. The label is compared exactly here.
    const bool needed =
        !pages.empty() && !(pages.size() == 1 && pages[0].resolve() == resourceStrW(kVideoLabel));
    if (!needed) {
        if (!tabs_)
            return false;
        removeWidget(tabs_, true);
        return true;
    }
    auto setIds = [&] {
        for (size_t i = 0; i < ids.size(); ++i)
            tabs_->setPageID(static_cast<int>(i), ids[i]);
    };
    if (!tabs_) {
        const int gap = UifStd::getWidgetGap();
        int w = width() != 0 ? width() : StandardPanel::getUserArea().width();
        TabbedDialogue::InitArgs args(w, 2 * gap + TabbedDialogue::minHeight(), pages, 0x90);
        args.palette = getPalette();
        tabs_ = static_cast<TabbedDialogue*>(addChild(new TabbedDialogue(args), TopLeft(0, 0)));
        setIds();
        return true;
    }
    WString remembered = tabs_->getPageID(tabs_->getCurrentTabIndex());
    bool changed = tabs_->setPages(pages, 0, false);
    setIds();
    if (tabs_->findPageIdx(UIString(remembered, UIString::NoResource)) >= 0)
        tabs_->selectPage(remembered, false, false);
    else
        tabs_->selectPage(wideId(monitor_->getTrackID()), false, false);
    return changed;
}

Zk::Box<int> MultiTrackRoutingView::getUserArea() const {
    Zk::Box<int> ua = StandardPanel::getUserArea();
    if (tabs_)
        ua.y2 -= tabs_->height() + UifStd::getWidgetGap();
    return ua;
}

void MultiTrackRoutingView::resize(double w, double h) {
    StandardPanel::resize(w, h);
    Zk::Box<int> ua = getUserArea();
    if (tabs_)
        tabs_->setWidth(ua.width());
    if (videoView_)
        videoView_->setDimensions(ua.width(), ua.height());
    if (audioView_)
        audioView_->setDimensions(ua.width(), ua.height());
}

void MultiTrackRoutingView::reshape() {
    resize(width(), height());
}

void MultiTrackRoutingView::reshapeAndDraw(const XY<int>& pos) {
    if (pos != XY<int>(-1234, -1234))
        setPos(pos.x, pos.y);
    reshape();
    draw();
}

std::vector<MenuItem> MultiTrackRoutingView::getMenuItems(const Event* e) {
    if (videoView_ && videoView_->isVisible())
        return videoView_->getMenuItems(e);
    if (audioView_)
        return audioView_->getMenuItems(e);
    return {};
}

int MultiTrackRoutingView::handleDataMessageEvent(const LightweightString<char>& msg, Glob* sender,
                                                  Zk::Ptr<iObject> data) {
    if (msg != TabbedDialogue::changePageMsg || sender != tabs_ || !tabs_)
        return NotHandled;
    auto tab = Zk::dynamicCast<EventMsgData<TabDetails>>(data);
    if (!tab)
        return NotHandled;
    if (!equalsIgnoringCase(tab->getData().label.resolve(), resourceStrW(kVideoLabel))) {
        IdStamp track(toUtf8(tabs_->getPageID(tab->getData().index)).c_str());
        monitor_->setTrackID(track);
        if (createAudioViewWidget()) {
            makeCanvasCurrent();
            reshapeAndDraw(XY<int>(-1234, -1234));
        }
    } else {
        createVideoViewWidget();
        makeCanvasCurrent();
        reshapeAndDraw(XY<int>(-1234, -1234));
    }
    return Handled;
}

void MultiTrackRoutingView::handleCompoundEffectChanges(const ChangeDescription& desc) {
    if (!monitor_)
        return;
    Drawable::disableRedraws();
    bool drawn = true;
    if (desc.tracksChanged) {
        updateTracksWidget();
        if (!tabs_ && (monitor_->getFlags() & CompoundEffectMonitor::kHasVideo))
            createVideoViewWidget();
        // The track shown may have gone with the tracks; the monitor has chosen another.
        if (audioView_ && audioView_->getTrack() != monitor_->getTrackID())
            audioView_->setTrack(monitor_->getTrackID());
        makeCanvasCurrent();
        resize(width(), height());
        reshape();
    } else if (desc.oldTrack != desc.newTrack) {
        if (tabs_ && desc.newTrack.valid()) {
            tabs_->selectPage(wideId(desc.newTrack), false, false);
            createAudioViewWidget();
        }
    } else {
        drawn = false;
    }
    if (drawn)
        update();
    Drawable::enableRedraws();
}
