// Change tracking: for each kind of notice, the lightest refresh that is right is taken, and not
// a heavier one. Counts come from the view (what it decided, how often the list was really
// rebuilt) and from the recording canvas (what was painted).
#include <gtest/gtest.h>

#include <thread>

#include "../support/BuiltGraphView.h"
#include "graphnodes/FXGraphViewNode.h"
#include "graphview/FXGraphView.h"
#include "graphview/UIThreadCallbackDupe.h"
#include "host/Canvas.h"
#include "host/TransitStatus.h"
#include "host/UpdateDeferrer.h"
#include "host/Vob.h"
#include "nodeui/NodeUIPosManager.h"
#include "refhost/edit/EditGenerator.h"

namespace {

using Refresh = FXGraphView::Refresh;

// A view whose connection drag a test can hold, as a loose connection does.
struct HoldingView : FXGraphView {
    using FXGraphView::FXGraphView;
    void holdConnection() { draggingIFNode_ = nodes_.front(); }
    void letGo() { draggingIFNode_ = nullptr; }
};

// One channel, cut at 4 and 8: an effect over a clip, then a two-input mix, then the clip alone.
struct ChangesFixture : BuiltGraphView<HoldingView> {
    void SetUp() override {
        BuiltGraphView::SetUp();
        g.edit->setTimes(0, 16);
        auto blur = g.effect(1, 1, "PixShader:Blur:gauss.fx");
        auto clip = g.material(10);
        GraphBuilder::link(blur, 0, clip);
        auto mix = g.effect(2, 2, "PixShader:Mix:over.fx");
        GraphBuilder::link(mix, 0, g.effect(3, 0, "PixShader:Test"));
        g.graphEvent(chan, 0, 4, blur);
        g.graphEvent(chan, 4, 8, mix);
        g.materialEvent(chan, 8, 16, clip);
        openView(800, 600, "changes-test");
        view->calcMorphologyExtents(1.0);
    }
    // Paints are recorded from here on; returns how many primitives went to the canvas.
    void record() {
        CanvasRenderer& r = view->canvas()->renderer();
        r.clearRecording();
        r.startRecording();
    }
    size_t recorded() {
        CanvasRenderer& r = view->canvas()->renderer();
        r.stopRecording();
        return r.recorded().size();
    }
    unsigned builds() const { return view->nodeListBuilds(); }
    static EditModifications mod(EditModificationType t, unsigned d = 0) {
        return EditModifications(EditModification(t, d));
    }
};

TEST_F(ChangesFixture, EachRebuildTypeRebuildsAndRecomputesTheSpan) {
    for (EditModificationType t :
         {kModStructure, kModEffectApplied, kModRestored, kModNodesRemoved, kModReloaded, kModChannels}) {
        vob->storeCurrentTime(5.0);
        const unsigned before = builds();
        view->handleModifications(mod(t), VobModification());
        EXPECT_EQ(view->lastRefresh(), Refresh::Rebuild) << "type " << t;
        EXPECT_EQ(builds(), before + 1) << "type " << t;
        EXPECT_EQ(view->morphologyStart(), 4.0) << "the span follows the playhead, type " << t;
        EXPECT_EQ(view->morphologyEnd(), 8.0) << "type " << t;
        vob->storeCurrentTime(1.0);
        view->calcMorphologyExtents(1.0);
    }
    for (unsigned t : {2u, 3u, 5u, 10u, 13u}) {
        const unsigned before = builds();
        view->handleModifications(mod(static_cast<EditModificationType>(t)), VobModification());
        EXPECT_EQ(view->lastRefresh(), Refresh::Nothing) << "a type outside the list, " << t;
        EXPECT_EQ(builds(), before);
    }
}

TEST_F(ChangesFixture, GraphDetailsTakeTheirOwnWeight) {
    view->draw();
    unsigned before = builds();
    view->handleModifications(mod(kModEffectGraph, 5), VobModification());
    EXPECT_EQ(builds(), before + 1) << "new connections rebuild the list";
    EXPECT_TRUE(view->isOutOfDate());

    view->draw();
    view->holdConnection();
    before = builds();
    view->handleModifications(mod(kModEffectGraph, 5), VobModification());
    EXPECT_EQ(builds(), before) << "a loose connection keeps the list as it is";
    EXPECT_TRUE(view->isOutOfDate()) << "but the view still repaints";
    view->letGo();

    view->draw();
    before = builds();
    view->handleModifications(mod(kModEffectGraph, 11), VobModification());
    EXPECT_EQ(view->lastRefresh(), Refresh::Repaint);
    EXPECT_EQ(builds(), before);
    EXPECT_TRUE(view->isOutOfDate());

    view->resetView(RedrawAlways, RefitIfTooBigAndCentre);
    for (const EditModifications& m : {mod(kModNames, 0), mod(kModEffectGraph, 4)}) {
        view->draw();
        record();
        view->handleModifications(m, VobModification());
        EXPECT_GT(recorded(), 0u) << "the titles are painted";
        EXPECT_EQ(view->lastRefresh(), Refresh::Names);
        EXPECT_FALSE(view->isOutOfDate()) << "names alone: no full repaint is asked for";
    }
    EXPECT_EQ(builds(), before);
}

TEST_F(ChangesFixture, TheEditsChangeWinsOverThePlayheadAndTheFirstFlagDecides) {
    const unsigned before = builds();
    view->handleModifications(mod(kModEffectGraph, 11), VobModification(0x2, 12.0));
    EXPECT_EQ(view->lastRefresh(), Refresh::Repaint) << "only the edit's rule acts";
    EXPECT_EQ(builds(), before);
    EXPECT_EQ(view->morphologyEnd(), 4.0);

    // Bits 1 and 5: the focus is set again at the Vob's time, and the playhead's time is ignored.
    view->handleModifications(EditModifications(), VobModification(0x22, 12.0));
    EXPECT_EQ(builds(), before + 1);
    EXPECT_EQ(view->morphologyStart(), 0.0);
    EXPECT_EQ(view->morphologyEnd(), 4.0);

    // Bit 3 without unjoined cuts does nothing, and the playhead bit after it is not looked at.
    ASSERT_FALSE(vob->anyUnjoinedCuts());
    view->handleModifications(EditModifications(), VobModification(0x8 | 0x2, 12.0));
    EXPECT_EQ(view->lastRefresh(), Refresh::Nothing);
    EXPECT_EQ(builds(), before + 1);
    EXPECT_EQ(view->morphologyEnd(), 4.0);
}

TEST_F(ChangesFixture, UnjoinedCutsForgetTheSpanAndRebuild) {
    // A clip cut in two where nothing changes: the second half starts where the first ended.
    auto clip = g.material(11);
    const int v2 = g.channel(L"V2");
    g.materialEvent(v2, 0, 2, clip);
    g.materialEvent(v2, 2, 16, clip);
    ASSERT_TRUE(vob->anyUnjoinedCuts());
    const unsigned before = builds();
    view->handleModifications(EditModifications(), VobModification(0x8));
    EXPECT_EQ(builds(), before + 1);
    EXPECT_EQ(view->morphologyStart(), 1e99);
    EXPECT_EQ(view->morphologyEnd(), 1e99);
    vob->setCurrentTime(1.5);
    EXPECT_EQ(builds(), before + 2) << "with the span unknown the next move rebuilds";
}

TEST_F(ChangesFixture, ThePlayheadAgainstTheSpan) {
    unsigned before = builds();
    view->handleModifications(EditModifications(), VobModification(0x2, 0.0));
    EXPECT_EQ(view->lastRefresh(), Refresh::Stills) << "the start of the span is inside";
    view->handleModifications(EditModifications(), VobModification(0x2, 4.0 - 2e-6));
    EXPECT_EQ(view->lastRefresh(), Refresh::Stills) << "just short of the end is inside";
    EXPECT_EQ(builds(), before);
    view->handleModifications(EditModifications(), VobModification(0x2, 4.0 - 5e-7));
    EXPECT_EQ(view->lastRefresh(), Refresh::Rebuild) << "within 1e-6 of the end is outside";
    EXPECT_EQ(builds(), before + 1);
    EXPECT_EQ(view->morphologyStart(), 4.0);
    EXPECT_EQ(view->morphologyEnd(), 8.0);

    // The transport moving: no stills, nothing at all.
    vob->setStateWord(Vob::kPlaying);
    view->handleModifications(EditModifications(), VobModification(0x2, 5.0));
    EXPECT_EQ(view->lastRefresh(), Refresh::Nothing);
    vob->setStateWord(Vob::kShuttling);
    view->handleModifications(EditModifications(), VobModification(0x2, 5.0));
    EXPECT_EQ(view->lastRefresh(), Refresh::Nothing);
    vob->setStateWord(0);

    // Unknown span: any move rebuilds.
    before = builds();
    view->handleModifications(mod(kModStructure), VobModification());
    view->calcMorphologyExtents(5.0);
    view->handleModifications(EditModifications(), VobModification(0x2, 5.0));
    EXPECT_EQ(view->lastRefresh(), Refresh::Stills);
}

TEST_F(ChangesFixture, AFastTransportIsNotFollowedWhileRecording) {
    TransitStatus& transit = TransitStatus::manager();
    const int oldSpeed = transit.speed();
    vob->setRecording(true);
    for (int speed : {1024, -1024, 4096}) {
        transit.setSpeed(speed);
        const unsigned before = builds();
        view->handleModifications(EditModifications(), VobModification(0x2, 12.0));
        EXPECT_EQ(view->lastRefresh(), Refresh::Nothing) << "speed " << speed;
        EXPECT_EQ(builds(), before) << "even outside the span, speed " << speed;
        EXPECT_EQ(view->morphologyEnd(), 4.0);
    }
    transit.setSpeed(1023);
    view->handleModifications(EditModifications(), VobModification(0x2, 12.0));
    EXPECT_EQ(view->lastRefresh(), Refresh::Rebuild) << "below normal speed the graph is followed";
    vob->setRecording(false);
    transit.setSpeed(4096);
    view->handleModifications(EditModifications(), VobModification(0x2, 1.0));
    EXPECT_EQ(view->lastRefresh(), Refresh::Rebuild) << "a Vob that isn't recording follows at any speed";
    transit.setSpeed(oldSpeed);
}

TEST_F(ChangesFixture, ProjectAndManagerNotices) {
    using Change = Zk::CurrentProject::ChangeDescription;
    view->draw();
    view->handleProjectStateChange({Change{Zk::CurrentProject::kPicturesChanged}});
    EXPECT_EQ(view->lastRefresh(), Refresh::Stills);
    EXPECT_FALSE(view->isOutOfDate());
    view->handleProjectStateChange(
        {Change{Zk::CurrentProject::kPicturesChanged | Zk::CurrentProject::kLookChanged}});
    EXPECT_EQ(view->lastRefresh(), Refresh::Repaint) << "a new look repaints everything, stills included";
    view->handleProjectStateChange({Change{0x1}});
    EXPECT_EQ(view->lastRefresh(), Refresh::Nothing);

    const unsigned repaints = view->refreshCount(Refresh::Repaint);
    view->generalUpdateNotify("SomethingElse");
    EXPECT_EQ(view->refreshCount(Refresh::Repaint), repaints) << "only the group message repaints";
    auto manager = NodeUIPosManager::getManagerFor(g.edit);
    ASSERT_TRUE(manager);
    manager->sendGeneralUpdateNotification("GroupUpdateMsg");
    EXPECT_EQ(view->refreshCount(Refresh::Repaint), repaints + 1);

    const unsigned before = builds();
    view->nodeRecDeletedNotify(nullptr);
    EXPECT_EQ(builds(), before) << "a record's removal waits for the edit's change";

    // Leaving the manager: its group messages no longer reach the view.
    view->handleModifications(EditModifications(), VobModification(0x8000));
    manager->sendGeneralUpdateNotification("GroupUpdateMsg");
    EXPECT_EQ(view->refreshCount(Refresh::Repaint), repaints + 1);
}

TEST_F(ChangesFixture, ClosingTheEditTakesItsViewsOffTheirManager) {
    auto manager = NodeUIPosManager::getManagerFor(g.edit);
    ASSERT_TRUE(manager);
    const unsigned repaints = view->refreshCount(Refresh::Repaint);
    VobManager::instance().closeEdit(g.edit);
    manager->sendGeneralUpdateNotification("GroupUpdateMsg");
    EXPECT_EQ(view->refreshCount(Refresh::Repaint), repaints) << "the view no longer hears the manager";
}

TEST_F(ChangesFixture, ANewRecordRebuildsEveryViewOnTheManager) {
    HoldingView other(FXGraphView::InitArgs(400, 300, vob.get(), 1));
    other.draw();
    view->draw();
    const unsigned otherRepaints = other.refreshCount(Refresh::Repaint);
    view->newNodeRecNotify(nullptr);
    EXPECT_EQ(view->lastRefresh(), Refresh::Rebuild);
    EXPECT_EQ(other.refreshCount(Refresh::Repaint), otherRepaints + 1)
        << "the group message reached the other view";
}

TEST_F(ChangesFixture, NoticesForAViewWithoutItsVobChangeNothing) {
    HoldingView orphan(FXGraphView::InitArgs(400, 300, nullptr, 1));
    const unsigned made = orphan.nodeListBuilds();
    orphan.handleModifications(mod(kModStructure), VobModification(0x2, 3.0));
    orphan.handleModifications(EditModifications(), VobModification(0x20 | 0x8 | 0x2, 3.0));
    EXPECT_EQ(orphan.nodeListBuilds(), made);
    EXPECT_TRUE(orphan.nodes().empty());

    // The Vob goes: the view is told nothing more, and a late notice does no harm.
    VobManager::instance().close(view, false);
    const unsigned before = builds();
    vob->setCurrentTime(12.0);
    view->handleModifications(mod(kModStructure), VobModification());
    EXPECT_EQ(builds(), before);
}

// A callback for the wrapper tests: counts its calls and keeps the last text.
struct Counter : EventHandler {
    int hit(const NotifyMsg& m) {
        ++calls;
        last = m.text().c_str();
        return 7;
    }
    int calls = 0;
    std::string last;
};

TEST(UIThreadCallbackDupeTest, DeliversAtOnceOnTheUiThreadAndThroughTheQueueElsewhere) {
    ensureToolkitApplication();
    auto* target = new Counter;
    auto cb = UIThreadCallbackDupe<NotifyMsg>::make(target, &Counter::hit);
    EXPECT_EQ(cb->invoke(NotifyMsg("now")), 7) << "on the user-interface thread the call is direct";
    EXPECT_EQ(target->calls, 1);

    std::thread worker([&] { EXPECT_EQ(cb->invoke(NotifyMsg("later")), 0); });
    worker.join();
    EXPECT_EQ(target->calls, 1) << "from another thread the call waits for the event loop";
    deliverPostedMessages();
    EXPECT_EQ(target->calls, 2);
    EXPECT_EQ(target->last, "later") << "the message travels as a copy";

    auto deferring = UIThreadCallbackDupe<NotifyMsg>::make(target, &Counter::hit, true);
    EXPECT_EQ(deferring->invoke(NotifyMsg("deferred")), 0);
    EXPECT_EQ(target->calls, 2);
    deliverPostedMessages();
    EXPECT_EQ(target->calls, 3);

    // The handler goes while its call is on the way: the guard drops it, and the posted copy
    // keeps the wrapper alive until then.
    deferring->invoke(NotifyMsg("orphan"));
    delete target;
    deferring = nullptr;
    EXPECT_NO_FATAL_FAILURE(deliverPostedMessages());
    EXPECT_EQ(cb->invoke(NotifyMsg("gone")), 0) << "a guard that answers 0 stops a direct call too";
}

} // namespace

namespace {

// Two views on the same generated graph, every node put on one point; the hashed check and the
// pairwise scan must leave the same positions (the tidy can itself leave nodes on one point,
// which is what makes the pairwise scan tidy over and over).
TEST(CoincidentNodes, TheHashedCheckLeavesWhatThePairwiseScanLeaves) {
    ensureToolkitApplication();
    for (uint32_t seed : {3u, 11u}) {
        GeneratorOptions o;
        o.seed = seed;
        o.nodes = 300;
        o.sharedLinks = seed == 3 ? 0.1 : 0.0;
        // Two edits of one seed, so that the views share no records.
        Zk::Ptr<Vob> vobA = VobManager::instance().vobFor(generateEdit(o), "coincident-a");
        Zk::Ptr<Vob> vobB = VobManager::instance().vobFor(generateEdit(o), "coincident-b");
        vobA->storeCurrentTime(1.0);
        vobB->storeCurrentTime(1.0);
        FXGraphView hashed(FXGraphView::InitArgs(400, 300, vobA.get(), 1));
        FXGraphView scanned(FXGraphView::InitArgs(400, 300, vobB.get(), 1));
        ASSERT_EQ(hashed.nodes().size(), scanned.nodes().size());
        for (FXGraphView* v : {&hashed, &scanned})
            for (const auto& n : v->nodes())
                n->setPos(0.0, 0.0, false);
        hashed.checkForCoincidentNodes();
        EXPECT_NE(hashed.nodes()[1]->y(), 0.0) << "the nodes were tidied";
        scanned.checkForCoincidentNodesByScan();
        for (size_t i = 0; i < hashed.nodes().size(); ++i) {
            ASSERT_EQ(hashed.nodes()[i]->x(), scanned.nodes()[i]->x()) << "seed " << seed << " node " << i;
            ASSERT_EQ(hashed.nodes()[i]->y(), scanned.nodes()[i]->y()) << "seed " << seed << " node " << i;
        }
        VobManager::instance().reset();
    }
}

} // namespace
