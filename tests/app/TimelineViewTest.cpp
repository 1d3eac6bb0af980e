// The workbench's time line: dragging the playhead and a cut, stepping frames with the keys,
// play and stop, undo, the status line that tells what the graph view did, and a scrub across a
// minute of cuts that rebuilds the graph once per cut.
#include "app/workbench/TimelineView.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>
#include <cstdio>
#include <memory>

#include "app/workbench/Workbench.h"
#include "host/CutIterator.h"
#include "host/Edit.h"
#include "host/EditorPreferences.h"
#include "host/ToolkitApp.h"
#include "host/Vob.h"
#include "host/VobManager.h"
#include "refhost/edit/EditFile.h"
#include "refhost/toolkit/GlobImpl.h"

namespace {

struct TimelineViewTest : ::testing::Test {
    void open(const char* sample, double time) {
        ensureToolkitApplication();
        prefs().setPreference(kOrientationPrefKey, "BottomToTop");
        std::string error;
        edit = EditFile::open(std::string(NODEDESK_SOURCE_DIR) + "/samples/" + sample, error);
        ASSERT_TRUE(edit) << error;
        vob = VobManager::instance().vobFor(edit, "timeline-test");
        vob->storeCurrentTime(time);
        bench = std::make_unique<Workbench>(900, 600);
        bench->setTimeline(
            [&](const GlobCreationInfo& info) -> Glob* {
                return timeline = new TimelineView(info, vob.get());
            },
            TimelineView::preferredHeight(*edit));
        bench->setView([&](const GlobCreationInfo& info) -> Glob* {
            FXGraphView::InitArgs args(info.width, info.height, vob.get(), 1);
            return graph = new FXGraphView(args);
        });
        ASSERT_TRUE(timeline && graph);
        timeline->watch(graph);
    }
    void TearDown() override {
        bench.reset();
        VobManager::instance().reset();
    }
    void drag(Glob& g, XY<int> from, XY<int> to) {
        g.dispatchMouseEvent(Event(Event::Down, Event::Left, from, from));
        const XY<int> mid((from.x + to.x) / 2, (from.y + to.y) / 2);
        g.dispatchMouseEvent(Event(Event::Move, Event::Left, mid, from));
        g.dispatchMouseEvent(Event(Event::Move, Event::Left, to, from));
        g.dispatchMouseEvent(Event(Event::Up, Event::Left, to, from));
    }
    void key(int k, Qt::KeyboardModifiers mods = Qt::NoModifier) {
        QKeyEvent press(QEvent::KeyPress, k, mods);
        QCoreApplication::sendEvent(timeline->impl().widget, &press);
    }
    std::string status() const { return toUtf8(timeline->statusText()).str(); }
    double now() const { return vob->getCurrentTime(1); }
    int rulerY() const { return (timeline->rulerBox().y1 + timeline->rulerBox().y2) / 2; }
    int trackY(int chan) const { return (timeline->trackBox(chan).y1 + timeline->trackBox(chan).y2) / 2; }

    EditPtr edit;
    Zk::Ptr<Vob> vob;
    std::unique_ptr<Workbench> bench;
    TimelineView* timeline = nullptr;
    FXGraphView* graph = nullptr;
};

bool onFrame(double t, double rate = 25.0) {
    return std::fabs(t * rate - std::round(t * rate)) < 1e-6;
}

} // namespace

TEST_F(TimelineViewTest, TheTimeLineLiesUnderTheGraphAndFollowsTheWindow) {
    open("multitrack.edit.json", 2.0);
    EXPECT_EQ(timeline->getDimensions().x, bench->getUserArea().width());
    EXPECT_GE(graph->getPosition().y, timeline->getPosition().y + timeline->height()) << "the graph is above";
    bench->resize(1200, 800);
    EXPECT_EQ(timeline->width(), bench->getUserArea().width());
    EXPECT_EQ(graph->height() + timeline->height(), bench->getUserArea().height());
    EXPECT_EQ(status(), "t=2.000s  no notice yet");
    // Times and pixels agree both ways, the tracks stand under the ruler in edit order.
    EXPECT_NEAR(timeline->xToTime(timeline->timeToX(7.5)), 7.5, 16.0 / timeline->width());
    EXPECT_GT(timeline->trackBox(0).y1, timeline->trackBox(1).y1);
    EXPECT_LE(timeline->trackBox(0).y2, timeline->rulerBox().y1);
    EXPECT_GT(timeline->trackBox(3).y1, timeline->statusBox().y2);
}

TEST_F(TimelineViewTest, DraggingThePlayheadRepaintsStillsInsideASpanAndRebuildsAcrossACut) {
    // The cuts of the sample: 4 s (V4 comes in) and 8 s.
    open("multitrack.edit.json", 5.0);
    const unsigned builds = graph->nodeListBuilds();
    drag(*timeline, XY<int>(timeline->timeToX(5.5), rulerY()), XY<int>(timeline->timeToX(7.5), rulerY()));
    EXPECT_NEAR(now(), 7.5, 0.05);
    EXPECT_TRUE(onFrame(now())) << "the playhead stands on frames: " << now();
    EXPECT_EQ(graph->nodeListBuilds(), builds) << "no cut crossed";
    EXPECT_EQ(graph->lastRefresh(), FXGraphView::Refresh::Stills);
    EXPECT_NE(status().find("stills"), std::string::npos) << status();
    char t[32];
    std::snprintf(t, sizeof t, "t=%.3fs", now());
    EXPECT_EQ(status().rfind(t, 0), 0u) << status();

    // Dragging over a track moves the playhead too, here across the cut at 8 s and on in the
    // next span.
    drag(*timeline, XY<int>(timeline->timeToX(7.5), trackY(2)), XY<int>(timeline->timeToX(10.0), trackY(2)));
    EXPECT_NEAR(now(), 10.0, 0.05);
    EXPECT_EQ(graph->nodeListBuilds(), builds + 1) << "one cut crossed, one rebuild";
    EXPECT_NE(status().find("stills  (rebuilds "), std::string::npos) << status();

    // A click back before both cuts: one rebuild, and the status line says so.
    const XY<int> back(timeline->timeToX(3.0), rulerY());
    timeline->dispatchMouseEvent(Event(Event::Down, Event::Left, back, back));
    timeline->dispatchMouseEvent(Event(Event::Up, Event::Left, back, back));
    EXPECT_EQ(graph->nodeListBuilds(), builds + 2);
    EXPECT_NE(status().find("rebuild  (rebuilds "), std::string::npos) << status();

    // A press on the track names is not a move.
    const double before = now();
    EXPECT_FALSE(timeline->dispatchMouseEvent(
        Event(Event::Down, Event::Left, XY<int>(5, trackY(0)), XY<int>(5, trackY(0)))));
    EXPECT_EQ(now(), before);
}

TEST_F(TimelineViewTest, ArrowKeysStepFramesAndSecondsWithinTheEdit) {
    open("multitrack.edit.json", 2.0);
    key(Qt::Key_Right);
    EXPECT_NEAR(now(), 2.04, 1e-9) << "one frame at 25 fps";
    key(Qt::Key_Left);
    key(Qt::Key_Left);
    EXPECT_NEAR(now(), 1.96, 1e-9);
    key(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_NEAR(now(), 2.96, 1e-9) << "shift steps a second";
    key(Qt::Key_Home);
    EXPECT_EQ(now(), edit->getStartTime());
    key(Qt::Key_Left);
    EXPECT_EQ(now(), edit->getStartTime()) << "not before the start";
    key(Qt::Key_End);
    EXPECT_EQ(now(), edit->getEndTime());
    key(Qt::Key_Right);
    EXPECT_EQ(now(), edit->getEndTime()) << "not past the end";
    EXPECT_FALSE(timeline->handleKey(Qt::Key_A, 0)) << "other keys pass on";
}

TEST_F(TimelineViewTest, PlayingFollowsNoStillsUntilItStops) {
    open("multitrack.edit.json", 1.0);
    timeline->setSpeed(512);
    EXPECT_EQ(timeline->speed(), 512);
    timeline->setSpeed(333);
    EXPECT_EQ(timeline->speed(), 512) << "only the offered speeds";
    key(Qt::Key_Space);
    ASSERT_TRUE(timeline->isPlaying());
    EXPECT_TRUE(vob->stateWord() & Vob::kPlaying);
    const unsigned stills = graph->refreshCount(FXGraphView::Refresh::Stills);
    timeline->clock().advance(2.0);
    EXPECT_NEAR(now(), 2.0, 1e-9) << "half speed";
    EXPECT_EQ(graph->lastRefresh(), FXGraphView::Refresh::Nothing) << "no stills while the transport runs";
    timeline->clock().advance(14.0);
    EXPECT_EQ(graph->lastRefresh(), FXGraphView::Refresh::Rebuild) << "crossing the cut at 8 s";
    key(Qt::Key_Space);
    EXPECT_FALSE(timeline->isPlaying());
    EXPECT_FALSE(vob->stateWord() & Vob::kPlaying);
    EXPECT_EQ(graph->refreshCount(FXGraphView::Refresh::Stills), stills + 1) << "stopping draws the stills";
    EXPECT_NE(status().find("stills"), std::string::npos) << status();
}

TEST_F(TimelineViewTest, DraggingACutIsOneUndoableStepThatRebuilds) {
    open("multitrack.edit.json", 2.0);
    const std::string saved = EditFile::saveToText(*edit);
    const int x8 = timeline->timeToX(8.0);
    drag(*timeline, XY<int>(x8 + 1, trackY(0)), XY<int>(timeline->timeToX(10.0), trackY(0)));
    const auto& v1 = edit->chan(0).cel->events();
    EXPECT_NEAR(v1[0].end, 10.0, 0.05);
    EXPECT_EQ(v1[0].end, v1[1].start) << "a roll: both sides follow";
    EXPECT_TRUE(onFrame(v1[1].start));
    EXPECT_NEAR(now(), 2.0, 1e-9) << "a cut drag leaves the playhead";
    EXPECT_EQ(vob->undoDepth(), 1u);
    EXPECT_EQ(graph->lastRefresh(), FXGraphView::Refresh::Rebuild);

    // A cut can't be dragged past the end of the event that starts there.
    drag(*timeline, XY<int>(timeline->timeToX(v1[1].start), trackY(0)),
         XY<int>(timeline->width(), trackY(0)));
    EXPECT_LT(edit->chan(0).cel->events()[1].start, 16.0);
    EXPECT_EQ(edit->chan(0).cel->events().size(), 2u);

    timeline->undo();
    timeline->undo();
    EXPECT_EQ(EditFile::saveToText(*edit), saved);
    EXPECT_NE(status().find("rebuild"), std::string::npos) << status();
    timeline->redo();
    EXPECT_NEAR(edit->chan(0).cel->events()[0].end, 10.0, 0.05);

    const std::string path = std::string(NODEDESK_BINARY_DIR) + "/timeline-saved.edit.json";
    std::string error;
    ASSERT_TRUE(timeline->saveTo(path, error)) << error;
    Edit reread;
    ASSERT_TRUE(EditFile::load(path, reread, error)) << error;
    EXPECT_EQ(EditFile::saveToText(reread), EditFile::saveToText(*edit)) << "saved as it stands";
    EXPECT_FALSE(timeline->saveTo("/nonexistent/dir/x.edit.json", error));
}

TEST_F(TimelineViewTest, ScrubbingAMinuteOfCutsRebuildsOncePerCut) {
    open("scrub.edit.json", 0.0);
    // The cuts of the video tracks inside the edit; the audio track's cut is not the graph's.
    Vector<int> video;
    edit->getChans(video, kVideoChan, 15);
    unsigned cuts = 0;
    for (CutIterator c(edit, video, 0.0, false); c.valid(); ++c)
        if (c.editTime() > edit->getStartTime() + 1e-6 && c.editTime() < edit->getEndTime() - 1e-6)
            ++cuts;
    ASSERT_EQ(cuts, 11u) << "the sample's cuts";

    const unsigned builds = graph->nodeListBuilds();
    const unsigned rebuilds = graph->refreshCount(FXGraphView::Refresh::Rebuild);
    for (double t = 0.2; t < 60.0 - 1e-9; t += 0.2)
        timeline->setTime(t);
    EXPECT_EQ(graph->nodeListBuilds() - builds, cuts);
    EXPECT_EQ(graph->refreshCount(FXGraphView::Refresh::Rebuild) - rebuilds, cuts);

    // And back again, by frames over the last cut and its neighbours.
    const unsigned back = graph->nodeListBuilds();
    for (int f = 0; f < 25 * 20; ++f)
        timeline->stepFrames(-1);
    EXPECT_EQ(graph->nodeListBuilds() - back, 3u) << "the cuts at 50, 45 and 42 s";
}

TEST_F(TimelineViewTest, OpeningAFileReplacesTheEditShownAsOneUndoableStep) {
    open("multitrack.edit.json", 5.0);
    const std::string before = EditFile::saveToText(*edit);
    int opened = 0;
    timeline->setOpenedListener([&] { ++opened; });
    const unsigned builds = graph->nodeListBuilds();
    std::string error;
    ASSERT_TRUE(timeline->openFile(std::string(NODEDESK_SOURCE_DIR) + "/samples/scrub.edit.json", error))
        << error;
    EXPECT_EQ(opened, 1);
    EXPECT_EQ(edit->name(), WString(L"A minute of cuts"));
    EXPECT_EQ(now(), 0.0) << "the playhead at the start of the opened edit";
    EXPECT_EQ(graph->nodeListBuilds(), builds + 1) << "the graph is built afresh, once";
    EXPECT_NE(status().find("rebuild"), std::string::npos) << status();
    EXPECT_EQ(timeline->path(), std::string(NODEDESK_SOURCE_DIR) + "/samples/scrub.edit.json");

    EXPECT_FALSE(timeline->openFile("/nonexistent/x.edit.json", error));
    EXPECT_FALSE(error.empty());
    EXPECT_EQ(edit->name(), WString(L"A minute of cuts")) << "a failed open changes nothing";
    EXPECT_EQ(opened, 1);

    timeline->undo();
    EXPECT_EQ(EditFile::saveToText(*edit), before) << "undo brings the edit before back";
}
