// TimelineView: the workbench's time line. It shows the edit's tracks with their cels and
// transitions under a ruler, with the playhead, the transport and the file commands, and a
// status line that tells what the graph view did about the last notice.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "graphview/FXGraphView.h"
#include "host/Glob.h"
#include "host/VobClient.h"
#include "refhost/edit/PlayClock.h"
#include "refhost/edit/TimelineEditor.h"

class CanvasRenderer;
class DropDownMenuButton;
class PushButton;
class QObject;

// A person drags the playhead on the ruler or the tracks, drags a cut (a roll, or a trim after a
// gap, as TimelineEditor does, one undo step on release), steps frame by frame with the arrow
// keys (a second with shift), plays and stops with the space bar or the play button at the
// chosen speed. The playhead stands on frames of the edit's rate. Every change reaches the
// time line through the Vob, so it also follows changes made elsewhere.
class TimelineView : public Glob, public VobClient {
public:
    // The speeds the transport offers, in TransitStatus units (1024 normal forward).
    static constexpr int kSpeeds[] = {256, 512, 1024, 2048, -1024};

    TimelineView(const GlobCreationInfo& info, Vob* vob);
    ~TimelineView() override;
    const char* idstring() const override { return "TimelineView"; }
    // The height that shows every channel of the edit at its natural row height.
    static int preferredHeight(const Edit& edit);

    // The status line follows this graph view's refreshes; null stops following.
    void watch(FXGraphView* view);
    const WString& statusText() const { return status_; }

    // --- what a person does
    // Moves the playhead to t, on a frame, within the edit; publishes only a real move.
    void setTime(double t);
    void stepFrames(int frames);
    void play();
    void stop();
    bool isPlaying() const { return clock_.isPlaying(); }
    // The chosen speed, one of kSpeeds.
    void setSpeed(int speed);
    int speed() const { return speed_; }
    void undo() { editor_.undo(); }
    void redo() { editor_.redo(); }
    // A key as Qt names it (Qt::Key_Left ...) with Qt's modifier bits; true when it was used.
    bool handleKey(int key, unsigned modifiers);

    // Where the file came from; Save writes there when it is an edit file.
    void setPath(const std::string& path) { path_ = path; }
    const std::string& path() const { return path_; }
    // Saves the edit to path; false with the error.
    bool saveTo(const std::string& path, std::string& error);
    // Opens another edit or timeline file in place of the one shown: the same edit takes the
    // file's state, the playhead goes to its start, and the change is told as a reload (type
    // 11, with the Vob flag 0x20 "the edit shown changed"), so every view on it starts afresh.
    // The open is an undo step like any other change. False with the error, the edit untouched.
    bool openFile(const std::string& path, std::string& error);
    // Told after a file was opened.
    void setOpenedListener(std::function<void()> listener) { opened_ = std::move(listener); }

    // --- geometry, y upward in the widget's pixels
    int timeToX(double t) const;
    double xToTime(int x) const;
    // The row of channel `chan`, its bottom and top pixel rows.
    Zk::Box<int> trackBox(int chan) const;
    Zk::Box<int> rulerBox() const;
    Zk::Box<int> statusBox() const;

    TimelineEditor& editor() { return editor_; }
    PlayClock& clock() { return clock_; }

    bool handleMouseEvent(const Event& e) override;
    void drawBackground() override;
    void handleModifications(const EditModifications& mods, const VobModification& vobMod) override;

protected:
    void sizeChanged() override;

private:
    struct CutDrag {
        int chan = -1;
        double from = 0.0;
        double to = 0.0;
        NumRange<double> limits;
    };
    void placeButtons();
    void refreshStatus(FXGraphView::Refresh r);
    void drawTracks(CanvasRenderer& r);
    void drawRuler(CanvasRenderer& r);
    void drawStatus(CanvasRenderer& r);
    double frameRate() const;
    // The cut of channel `chan` within a few pixels of x, as its time; false if none.
    bool cutNear(int chan, int x, double& cutTime) const;
    int chanAt(int y) const;
    void askOpen();
    void askSave();

    TimelineEditor editor_;
    PlayClock clock_;
    FXGraphView* watched_ = nullptr;
    IdStamp watchedId_;
    WString status_;
    std::string path_;
    std::function<void()> opened_;
    int speed_ = 1024;
    CutDrag cutDrag_;
    bool scrubbing_ = false;
    PushButton* open_ = nullptr;
    PushButton* save_ = nullptr;
    PushButton* undo_ = nullptr;
    PushButton* redo_ = nullptr;
    PushButton* back_ = nullptr;
    PushButton* playButton_ = nullptr;
    PushButton* forward_ = nullptr;
    DropDownMenuButton* speedChoice_ = nullptr;
    std::unique_ptr<QObject> keys_;
};
