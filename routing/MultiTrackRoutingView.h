// MultiTrackRoutingView: the routing of everything at the playhead, one tab per kind of track.
#pragma once

#include <vector>

#include "host/CompoundEffectMonitor.h"
#include "host/StandardPanel.h"
#include "host/TabbedDialogue.h"

class AudioRoutingView;
class FXGraphView;
class Vob;

// A tab strip holds a tab for the video graph (first, under the video label) and one for each
// audio group at the current place; below it stands the page of the chosen tab: the effect graph
// view for video, the audio routing table for an audio group. Only one page exists at a time:
// changing to a page of the other kind destroys the one shown and makes the other afresh. A
// place with video alone has no strip, and the page fills the panel. The panel follows the
// tracks through the Vob's CompoundEffectMonitor, which the host attaches to the Vob and which
// must outlive the panel.
class MultiTrackRoutingView : public StandardPanel, public CompoundEffectMonitorClient {
public:
    struct InitArgs : StandardPanel::InitArgs {
        InitArgs() = default;
        InitArgs(int w, int h, Vob* v) : StandardPanel::InitArgs(w, h), vob(v) {}
        Vob* vob = nullptr;
    };

    explicit MultiTrackRoutingView(const InitArgs& args);
    ~MultiTrackRoutingView() override;
    // A copy is a widget of its own without children: it takes the monitor and the track list,
    // and has no tab strip and no page until it is told of a change.
    MultiTrackRoutingView(const MultiTrackRoutingView& o);
    MultiTrackRoutingView(MultiTrackRoutingView&& o);
    MultiTrackRoutingView& operator=(const MultiTrackRoutingView& o);
    MultiTrackRoutingView& operator=(MultiTrackRoutingView&& o);
    const char* idstring() const override { return "MultiTrackRoutingView"; }

    Zk::Box<int> getUserArea() const override;
    void resize(double w, double h) override;
    std::vector<MenuItem> getMenuItems(const Event* e) override;
    int handleDataMessageEvent(const LightweightString<char>& msg, Glob* sender,
                               Zk::Ptr<iObject> data) override;
    void handleCompoundEffectChanges(const ChangeDescription& desc) override;

    FXGraphView* getVideoView() const { return videoView_; }
    AudioRoutingView* getAudioView() const { return audioView_; }
    TabbedDialogue* getTabs() const { return tabs_; }
    CompoundEffectMonitor* getMonitor() const { return monitor_; }

private:
    bool createViewWidget();
    bool createVideoViewWidget();
    bool createAudioViewWidget();
    bool updateTracksWidget();
    // Lays the children out again at the present size, then draws; pos moves the panel unless
    // it is (-1234, -1234).
    void reshapeAndDraw(const XY<int>& pos);
    void reshape();

    CompoundEffectMonitor* monitor_ = nullptr;
    FXGraphView* videoView_ = nullptr;
    TabbedDialogue* tabs_ = nullptr;
    AudioRoutingView* audioView_ = nullptr;
    std::vector<IdStamp> trackIds_;
};
