// The monitor: tracks at the playhead, the chain of the current track, and what it tells.
#include "host/CompoundEffectMonitor.h"

#include <vector>

#include "tests/routing/RoutingTestSupport.h"

using namespace routingtest;

namespace {

struct Recorder : CompoundEffectMonitorClient {
    void componentAdded(const Component&) override { ++added; }
    void componentRemoved(const Component&) override { ++removed; }
    void componentSwapped(const Component&, const Component&) override { ++swapped; }
    void resyncComponents() override { ++resyncs; }
    void handleCompoundEffectChanges(const ChangeDescription& d) override { changes.push_back(d); }
    int added = 0, removed = 0, swapped = 0, resyncs = 0;
    std::vector<ChangeDescription> changes;
};

using Monitor = AudioSample;

TEST_F(Monitor, ListsOneTrackPerGroupAtThePlayheadAndFollowsCuts) {
    EXPECT_EQ(monitor->getTrackIDs(), (std::vector<IdStamp>{kV1, kA1, kA3}))
        << "A2 shares A1's group, and A4/A5 are black before 12";
    EXPECT_EQ(monitor->getFlags(), CompoundEffectMonitor::kHasVideo | CompoundEffectMonitor::kHasAudio);
    EXPECT_EQ(monitor->getTrackID(), kV1);
    EXPECT_TRUE(monitor->vob() == vob.get());
    EXPECT_TRUE(vob->findClient(CompoundEffectMonitor::IDString) == monitor.get());

    Recorder r;
    monitor->registerForChangeNotifications(&r, true);
    vob->setCurrentTime(15.0);
    EXPECT_EQ(monitor->getTrackIDs(), (std::vector<IdStamp>{kV1, kA1, kA3, kA4}));
    ASSERT_EQ(r.changes.size(), 1u);
    EXPECT_TRUE(r.changes[0].tracksChanged);
    EXPECT_TRUE(r.changes[0].flags & 2);
    vob->setCurrentTime(16.0);
    ASSERT_EQ(r.changes.size(), 2u);
    EXPECT_FALSE(r.changes[1].tracksChanged);
    monitor->registerForChangeNotifications(&r, false);
}

TEST_F(Monitor, ComponentsAreTheChainFromTheRootDown) {
    monitor->setTrackID(kA1);
    ASSERT_EQ(monitor->getNumComponents(CompoundEffectMonitor::kAudioComponent), 4u);
    EXPECT_EQ(monitor->getNumComponents(CompoundEffectMonitor::kVideoComponent), 0u);
    std::vector<IdStamp> ids;
    for (unsigned short i = 0; i < 4; ++i)
        ids.push_back(monitor->getEffect(i)->getId());
    EXPECT_EQ(ids, (std::vector<IdStamp>{kCompressor, kReverb, kEqualiser, kGain}));
    EXPECT_FALSE(monitor->getEffect(4));

    monitor->setTrackID(kA3);
    EXPECT_EQ(monitor->getNumComponents(CompoundEffectMonitor::kAudioComponent), 0u) << "plain music at 5";
    vob->setCurrentTime(10.0);
    ASSERT_EQ(monitor->getNumComponents(CompoundEffectMonitor::kAudioComponent), 1u);
    EXPECT_EQ(monitor->getEffect(0)->getId(), kCrossfade);
}

TEST_F(Monitor, TellsSwapsRemovalsAndResyncs) {
    monitor->setTrackID(kA1);
    Recorder r;
    monitor->registerForChangeNotifications(&r, true);

    // Equaliser and gain change places.
    {
        const IdStamp source = fx(kGain)->getInputTrackId(0);
        EasyBackup step(edit);
        fx(kReverb)->setInputTrackId(0, kGain, false);
        fx(kGain)->setInputTrackId(0, kEqualiser, false);
        fx(kEqualiser)->setInputTrackId(0, source, true);
        edit->addModification(EditModifications(EditModification(5)), true);
    }
    EXPECT_EQ(r.swapped, 1);
    ASSERT_EQ(r.changes.size(), 1u);
    ASSERT_EQ(r.changes[0].swapped.size(), 1u);
    EXPECT_EQ(r.changes[0].swapped[0].first->getId(), kGain);
    EXPECT_EQ(r.changes[0].swapped[0].second->getId(), kEqualiser);
    EXPECT_TRUE(r.changes[0].modification.matches(18));
    EXPECT_EQ(r.changes[0].kind, 5u);

    // Undo brings back copies of every node: the list is read afresh.
    ASSERT_TRUE(vob->undoRequest());
    EXPECT_EQ(r.resyncs, 1);
    EXPECT_TRUE(r.changes.back().changed);

    // The gain leaves the chain.
    {
        EasyBackup step(edit);
        fx(kEqualiser)->setInputTrackId(0, kDialogue, true);
        edit->addModification(EditModifications(EditModification(5)), true);
    }
    EXPECT_EQ(r.removed, 1);
    EXPECT_EQ(r.changes.back().removed.size(), 1u);
    EXPECT_EQ(monitor->getNumComponents(CompoundEffectMonitor::kAudioComponent), 3u);
    monitor->registerForChangeNotifications(&r, false);
}

// A client that leaves while hearing a change, taking another one with it.
struct Leaver : CompoundEffectMonitorClient {
    void handleCompoundEffectChanges(const ChangeDescription&) override {
        ++heard;
        monitor->registerForChangeNotifications(this, false);
        if (other)
            monitor->registerForChangeNotifications(other, false);
    }
    CompoundEffectMonitor* monitor = nullptr;
    CompoundEffectMonitorClient* other = nullptr;
    int heard = 0;
};

TEST_F(Monitor, AClientThatLeavesDuringANoticeHearsNoMore) {
    Leaver first;
    Recorder second;
    first.monitor = monitor.get();
    first.other = &second;
    monitor->registerForChangeNotifications(&first, true);
    monitor->registerForChangeNotifications(&second, true);
    monitor->resync();
    monitor->resync();
    EXPECT_EQ(first.heard, 1);
    EXPECT_TRUE(second.changes.empty());
}

} // namespace
