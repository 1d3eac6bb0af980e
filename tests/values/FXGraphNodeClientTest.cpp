// Watching graph nodes: single changes, bracketed changes, and the node's end.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <vector>

#include "host/EffectInstance_opu4h5a4j.h"
#include "host/FXGraphNodeClient.h"
#include "values/ValObserver.h"

namespace {

struct Watcher : FXGraphNodeClient {
    void generalUpdateNotification(const EffectModification& m) override {
        heard.push_back(m);
        if (onHear)
            onHear();
    }
    std::vector<EffectModification> heard;
    std::function<void()> onHear;
};

} // namespace

TEST(FXGraphNodeClient, HearsEachChangeAndOneBracketedChangeAtItsEnd) {
    EffectInstance_opu4h5a4j node(IdStamp(1, 2, 3));
    Watcher watcher;
    watcher.registerWith(&node);
    EXPECT_EQ(watcher.watchedNode(), &node);

    node.setParam("radius", 2.0);
    node.setEnabled(false);
    ASSERT_EQ(watcher.heard.size(), 2u);
    EXPECT_EQ(watcher.heard[0], EffectModification());

    watcher.heard.clear();
    EffectModification toggle(IdStamp(999, 999, 999), IdStamp(0, 0, 0), 1, 4);
    node.startBatchChange(toggle);
    node.startBatchChange(EffectModification());
    node.setEnabled(true);
    node.setParam("radius", 3.0);
    node.endBatchChange();
    EXPECT_TRUE(watcher.heard.empty()) << "nothing is told before the outermost bracket closes";
    node.endBatchChange();
    ASSERT_EQ(watcher.heard.size(), 1u);
    EXPECT_EQ(watcher.heard[0], toggle)
        << "the clients hear the modification the outermost bracket opened with";
    EXPECT_EQ(node.changeCount(), 4u) << "the change count still counts every change";

    node.endBatchChange();
    EXPECT_EQ(watcher.heard.size(), 1u) << "an end without a start tells nothing";
}

TEST(FXGraphNodeClient, ABracketOpenedWhileTheLastIsToldLeavesWhatTheOthersHear) {
    EffectInstance_opu4h5a4j node(IdStamp(1, 2, 3));
    Watcher first, second;
    first.registerWith(&node);
    second.registerWith(&node);
    EffectModification toggle(IdStamp(999, 999, 999), IdStamp(0, 0, 0), 1, 4);
    EffectModification next(IdStamp(5, 5, 5), IdStamp(0, 0, 0), 2, 0);
    bool opened = false; // the hook must not clear itself: that would destroy the running closure
    first.onHear = [&] {
        if (opened)
            return;
        opened = true;
        node.startBatchChange(next);
    };

    node.startBatchChange(toggle);
    node.setEnabled(false);
    node.endBatchChange();
    ASSERT_EQ(second.heard.size(), 1u);
    EXPECT_EQ(second.heard[0], toggle)
        << "a client later in the list hears the closed bracket, not the one opened under it";

    node.endBatchChange();
    EXPECT_EQ(first.heard, (std::vector<EffectModification>{toggle, next}));
    EXPECT_EQ(second.heard, (std::vector<EffectModification>{toggle, next}));
}

TEST(FXGraphNodeClient, SwitchingNodesAndOutlivingThem) {
    auto first = std::make_unique<EffectInstance_opu4h5a4j>(IdStamp(1, 0, 0));
    EffectInstance_opu4h5a4j second(IdStamp(2, 0, 0));
    Watcher watcher;
    watcher.registerWith(first.get());
    watcher.registerWith(&second);
    first->setEnabled(false);
    EXPECT_TRUE(watcher.heard.empty()) << "watching a node ends the watch of the one before";

    watcher.registerWith(first.get());
    first.reset();
    EXPECT_EQ(watcher.watchedNode(), nullptr) << "a node's end leaves its clients watching nothing";

    EffectInstance_opu4h5a4j copy(second);
    watcher.registerWith(&second);
    copy.setEnabled(false);
    EXPECT_TRUE(watcher.heard.empty()) << "a copied node has none of the original's clients";
    watcher.registerWith(nullptr);
    second.setEnabled(false);
    EXPECT_TRUE(watcher.heard.empty());
}

TEST(FXGraphNodeClient, AValueObserverOfTheClientCountsAsAChangeOfTheNode) {
    Watcher watcher;
    ValServer<double> parameter;
    ValObserver<double> observer(&watcher);
    observer.registerWith(&parameter);
    parameter = 0.5;
    EXPECT_EQ(watcher.heard.size(), 1u);
}
