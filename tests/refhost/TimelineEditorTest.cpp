// The reference host's time line edits: what each one publishes, what it refuses, and that
// do -> undo -> redo gives back the saved edit byte for byte.
#include "refhost/edit/TimelineEditor.h"

#include <gtest/gtest.h>

#include <functional>

#include "host/Edit.h"
#include "host/EffectInstance_opu4h5a4j.h"
#include "host/EffectTemplateManager.h"
#include "host/FXEditor.h"
#include "host/ToolkitApp.h"
#include "host/TransitStatus.h"
#include "host/Vob.h"
#include "host/VobClient.h"
#include "host/VobManager.h"
#include "refhost/edit/EditFile.h"
#include "refhost/edit/PlayClock.h"

namespace {

struct Listener : VobClient {
    void handleModifications(const EditModifications& mods, const VobModification& vm) override {
        heard.push_back(mods);
        flags.push_back(vm.flags);
        times.push_back(vm.time);
        VobClient::handleModifications(mods, vm);
    }
    std::vector<EditModifications> heard;
    std::vector<unsigned> flags;
    std::vector<double> times;
};

struct TimelineEditorTest : ::testing::Test {
    void SetUp() override {
        VobManager::instance().reset();
        std::string error;
        edit = EditFile::open(NODEDESK_SOURCE_DIR "/samples/multitrack.edit.json", error);
        ASSERT_TRUE(edit) << error;
        vob = VobManager::instance().vobFor(edit, "timeline");
        VobManager::instance().open(&listener, vob);
        editor = std::make_unique<TimelineEditor>(vob.get());
    }
    void TearDown() override {
        VobManager::instance().close(&listener, true);
        VobManager::instance().reset();
    }

    // Runs op as one step: it must publish exactly once; undo must give back the saved text of
    // before and redo that of after. Returns what was published for the step.
    EditModifications roundTrip(const std::function<bool()>& op, unsigned* flags = nullptr) {
        const std::string before = EditFile::saveToText(*edit);
        const size_t heard = listener.heard.size();
        const size_t depth = vob->undoDepth();
        EXPECT_TRUE(op());
        EXPECT_EQ(listener.heard.size(), heard + 1) << "one publication per step";
        EXPECT_EQ(vob->undoDepth(), depth + 1) << "one undo step";
        if (listener.heard.size() != heard + 1)
            return EditModifications();
        const EditModifications published = listener.heard.back();
        if (flags)
            *flags = listener.flags.back();
        const std::string after = EditFile::saveToText(*edit);
        EXPECT_NE(after, before) << "the step changed the saved edit";
        EXPECT_TRUE(editor->undo());
        EXPECT_TRUE(listener.heard.back().includes(kModRestored, 0)) << "undo publishes a restore";
        EXPECT_EQ(EditFile::saveToText(*edit), before) << "undo gives back the edit as it was";
        EXPECT_TRUE(editor->redo());
        EXPECT_TRUE(listener.heard.back().includes(kModRestored, 0)) << "redo publishes a restore";
        EXPECT_EQ(EditFile::saveToText(*edit), after) << "redo gives back the edit as changed";
        return published;
    }
    // op must be refused without a trace.
    void refused(const std::function<bool()>& op, const char* what) {
        const std::string before = EditFile::saveToText(*edit);
        const size_t heard = listener.heard.size();
        const size_t depth = vob->undoDepth();
        EXPECT_FALSE(op()) << what;
        EXPECT_EQ(listener.heard.size(), heard) << what << ": nothing published";
        EXPECT_EQ(vob->undoDepth(), depth) << what << ": no undo step";
        EXPECT_EQ(EditFile::saveToText(*edit), before) << what << ": the edit is as it was";
    }
    const std::vector<CelEvent>& events(int chan) const { return edit->chan(chan).cel->events(); }

    EditPtr edit;
    Zk::Ptr<Vob> vob;
    Listener listener;
    std::unique_ptr<TimelineEditor> editor;
};

} // namespace

TEST_F(TimelineEditorTest, MovingACutRollsBothSidesOrTrimsAfterAGap) {
    unsigned flags = 0;
    EditModifications mods = roundTrip([&] { return editor->moveCut(0, 8.0, 9.5); }, &flags);
    EXPECT_TRUE(mods.includes(kModStructure, 0));
    EXPECT_EQ(flags, 0x8u) << "cuts changed";
    EXPECT_DOUBLE_EQ(events(0)[0].end, 9.5);
    EXPECT_DOUBLE_EQ(events(0)[1].start, 9.5);

    // V4 starts black: the black event is an event, so the cut at 4 rolls too.
    roundTrip([&] { return editor->moveCut(3, 4.0, 2.0); });
    EXPECT_DOUBLE_EQ(events(3)[0].end, 2.0);
    EXPECT_DOUBLE_EQ(events(3)[1].start, 2.0);

    // After a gap only the later event moves.
    edit->chan(3).cel->events().erase(edit->chan(3).cel->events().begin());
    NumRange<double> limits;
    ASSERT_TRUE(editor->cutLimits(3, 2.0, limits));
    EXPECT_DOUBLE_EQ(limits.lo, 0.0) << "the gap reaches back to the edit's start";
    EXPECT_DOUBLE_EQ(limits.hi, 16.0);
    roundTrip([&] { return editor->moveCut(3, 2.0, 5.0); });
    ASSERT_EQ(events(3).size(), 1u);
    EXPECT_DOUBLE_EQ(events(3)[0].start, 5.0);

    refused([&] { return editor->moveCut(0, 7.0, 7.5); }, "no cut at 7");
    refused([&] { return editor->moveCut(0, 9.5, 16.0); }, "onto the end of the later event");
    refused([&] { return editor->moveCut(0, 9.5, 0.0); }, "onto the start of the earlier event");
    refused([&] { return editor->moveCut(0, 9.5, 9.5); }, "no move");
    refused([&] { return editor->moveCut(9, 8.0, 9.0); }, "no such channel");
}

TEST_F(TimelineEditorTest, LayingAClipOverASpanCutsWhatLiesUnder) {
    const Cookie crowd = Cookie::fromString("M2.0.4");
    unsigned flags = 0;
    EditModifications mods = roundTrip([&] { return editor->addCel(2, 4.0, 6.0, crowd); }, &flags);
    EXPECT_TRUE(mods.includes(kModStructure, 0));
    EXPECT_EQ(flags, 0x8u);
    ASSERT_EQ(events(2).size(), 3u);
    EXPECT_DOUBLE_EQ(events(2)[0].end, 4.0);
    EXPECT_EQ(events(2)[1].strip, crowd);
    EXPECT_DOUBLE_EQ(events(2)[1].start, 4.0);
    EXPECT_DOUBLE_EQ(events(2)[2].start, 6.0);
    EXPECT_DOUBLE_EQ(events(2)[2].end, 16.0);
    ASSERT_TRUE(events(2)[1].node);
    EXPECT_EQ(edit->findNode(events(2)[1].node->getId()), events(2)[1].node)
        << "the clip's node is in the edit";

    // Past the end the edit grows; a span that covers events whole replaces them.
    roundTrip([&] { return editor->addCel(3, 2.0, 20.0, crowd); });
    ASSERT_EQ(events(3).size(), 2u);
    EXPECT_DOUBLE_EQ(edit->getEndTime(), 20.0);

    refused([&] { return editor->addCel(2, 4.0, 6.0, Cookie::fromString("M9.9.9")); }, "unknown material");
    refused([&] { return editor->addCel(2, 6.0, 6.0, crowd); }, "empty span");
    refused([&] { return editor->addCel(-1, 1.0, 2.0, crowd); }, "no channel");
}

TEST_F(TimelineEditorTest, LiftingACelTakesItsOwnGraphAlong) {
    ASSERT_TRUE(edit->findNode(IdStamp("20.0.5")));
    EditModifications mods = roundTrip([&] { return editor->removeCel(0, 1); });
    EXPECT_TRUE(mods.includes(kModStructure, 0));
    EXPECT_TRUE(mods.includes(kModNodesRemoved, 0));
    EXPECT_EQ(events(0).size(), 1u);
    EXPECT_FALSE(edit->findNode(IdStamp("20.0.5"))) << "the picture in picture went with its cel";

    // A clip's cel: no graph goes.
    mods = roundTrip([&] { return editor->removeCel(2, 0); });
    EXPECT_TRUE(mods.includes(kModStructure, 0));
    EXPECT_FALSE(mods.includes(kModNodesRemoved, 0));

    refused([&] { return editor->removeCel(3, 0); }, "a black event");
    refused([&] { return editor->removeCel(0, 5); }, "no such event");
}

TEST_F(TimelineEditorTest, EffectSettingsPublishTheirGraphDetail) {
    const IdStamp mix("20.0.1"), blur("20.0.2");
    unsigned flags = 1;
    EditModifications mods = roundTrip([&] { return editor->setParam(mix, "balance", 0.75); }, &flags);
    EXPECT_TRUE(mods.includes(kModEffectGraph, 4));
    EXPECT_EQ(flags, 0u) << "no cut moved";
    mods = roundTrip([&] { return editor->rename(blur, L"Haze"); });
    EXPECT_TRUE(mods.includes(kModEffectGraph, 4));
    mods = roundTrip([&] { return editor->setEnabled(blur, false); });
    EXPECT_TRUE(mods.includes(kModEffectGraph, 11));
    EXPECT_FALSE(mods.includes(kModEffectGraph, 4));
    mods = roundTrip([&] { return editor->renameChannel(1, L"Cam B"); });
    EXPECT_TRUE(mods.includes(kModNames, 0));
    mods = roundTrip([&] { return editor->removeEffect(blur); });
    EXPECT_TRUE(mods.includes(kModNodesRemoved, 0));

    refused([&] { return editor->setEnabled(mix, true); }, "already on");
    refused([&] { return editor->setParam(IdStamp("21.0.1"), "x", 1); }, "a material has no parameters");
    refused([&] { return editor->setParam(mix, "", 1); }, "a parameter without a name");
    refused([&] { return editor->rename(IdStamp("99.0.1"), L"x"); }, "no such node");
    refused([&] { return editor->removeEffect(IdStamp("21.0.1")); }, "a material isn't an effect");
    EXPECT_FALSE(editor->redo()) << "nothing to redo after a new step";
}

TEST_F(TimelineEditorTest, OtherEditsOfTheHostTellCutsAndTheRunningTransport) {
    // A template laid on black cuts it: a new event, and the cuts changed.
    FXEditor ed(edit);
    auto matte = EffectTemplateManager::instance().find(L"Flat colour matte");
    ASSERT_TRUE(matte);
    EditModifications mods;
    unsigned flags = 0;
    mods = roundTrip(
        [&] {
            EasyBackup step(edit);
            return ed.autoApplyEffectsTemplate(matte, EditModule(edit, 1, 3, edit->chan(3).id), 0, 0, nullptr)
                .ok;
        },
        &flags);
    EXPECT_TRUE(mods.includes(kModEffectApplied, 0));
    EXPECT_TRUE(mods.includes(kModStructure, 0));
    EXPECT_EQ(flags, 0x8u);

    // Rewiring while the transport runs tells it to read the graph again; at rest it doesn't.
    EditGraphIterator mix = FXEditor::getIteratorFor(edit, IdStamp("20.0.1"), 1.0, 9);
    EditGraphIterator grade = FXEditor::getIteratorFor(edit, IdStamp("20.0.3"), 1.0, 9);
    ASSERT_TRUE(mix.isValid() && grade.isValid());
    const unsigned told = TransitStatus::manager().graphChanges();
    ASSERT_TRUE(ed.connectNodes(mix, 2, grade, true));
    EXPECT_EQ(TransitStatus::manager().graphChanges(), told);
    TransitStatus::manager().setSpeed(1024);
    ASSERT_TRUE(ed.disconnectNodes(mix, 2, true));
    ASSERT_TRUE(ed.cycleInputs(mix, true));
    TransitStatus::manager().setSpeed(0);
    EXPECT_EQ(TransitStatus::manager().graphChanges(), told + 2);
}

TEST(PlayClockTest, PlaysAtTheSpeedOnFramesAndStopsAtTheEnd) {
    ensureToolkitApplication(); // the clock's timer lives in the event loop
    VobManager::instance().reset();
    std::string error;
    EditPtr edit = EditFile::open(NODEDESK_SOURCE_DIR "/samples/multitrack.edit.json", error);
    ASSERT_TRUE(edit) << error;
    Zk::Ptr<Vob> vob = VobManager::instance().vobFor(edit, "clock");
    Listener listener;
    VobManager::instance().open(&listener, vob);
    vob->storeCurrentTime(1.0);
    {
        PlayClock clock(vob.get());
        int ticks = 0;
        clock.setTickListener([&] { ++ticks; });
        clock.play(1024);
        EXPECT_TRUE(clock.isPlaying());
        EXPECT_EQ(vob->stateWord() & Vob::kPlaying, Vob::kPlaying);
        EXPECT_EQ(TransitStatus::manager().speed(), 1024);

        clock.advance(0.48);
        EXPECT_NEAR(vob->getCurrentTime(1), 1.48, 1e-9);
        EXPECT_EQ(listener.flags.back(), 0x2u);
        EXPECT_NEAR(listener.times.back(), 1.48, 1e-9) << "the move is published with its time";
        const size_t moves = listener.flags.size();
        clock.advance(0.01);
        EXPECT_EQ(listener.flags.size(), moves) << "less than a frame at 25 fps: no move";
        clock.advance(0.03);
        EXPECT_NEAR(vob->getCurrentTime(1), 1.52, 1e-9) << "a frame later";

        clock.play(2048);
        clock.advance(1.0);
        EXPECT_NEAR(vob->getCurrentTime(1), 3.52, 1e-9) << "twice as fast";
        clock.play(-1024);
        clock.advance(0.52);
        EXPECT_NEAR(vob->getCurrentTime(1), 3.0, 1e-9) << "backward";

        const size_t before = listener.flags.size();
        clock.play(1024);
        clock.advance(100.0);
        EXPECT_FALSE(clock.isPlaying()) << "stops at the end";
        EXPECT_DOUBLE_EQ(vob->getCurrentTime(1), edit->getEndTime());
        EXPECT_EQ(vob->stateWord() & Vob::kPlaying, 0u);
        EXPECT_EQ(TransitStatus::manager().speed(), 0);
        EXPECT_EQ(listener.flags.size(), before + 2) << "the move to the end, then the resting playhead";
        EXPECT_GT(ticks, 0);

        clock.play(0);
        EXPECT_FALSE(clock.isPlaying()) << "speed 0 is stop";
        clock.play(-1024);
        clock.advance(100.0);
        EXPECT_DOUBLE_EQ(vob->getCurrentTime(1), edit->getStartTime()) << "backward stops at the start";
        EXPECT_FALSE(clock.isPlaying());
    }
    VobManager::instance().close(&listener, true);
    VobManager::instance().reset();
}
