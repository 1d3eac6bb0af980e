// The multi-track panel: its tab strip follows the tracks at the playhead, and exactly one
// page stands below it, made afresh when the kind of page changes.
#include "routing/MultiTrackRoutingView.h"

#include <memory>
#include <string>
#include <vector>

#include "graphview/FXGraphView.h"
#include "host/EventMsgData.h"
#include "host/TabDetails.h"
#include "routing/AudioRoutingView.h"
#include "tests/routing/RoutingTestSupport.h"

using namespace routingtest;

namespace {

struct Panel : AudioSample {
    void TearDown() override {
        panel.reset();
        AudioSample::TearDown();
    }
    MultiTrackRoutingView& make() {
        panel = std::make_unique<MultiTrackRoutingView>(MultiTrackRoutingView::InitArgs(500, 400, vob.get()));
        return *panel;
    }
    std::vector<std::wstring> labels() const {
        std::vector<std::wstring> out;
        if (panel->getTabs())
            for (const auto& p : panel->getTabs()->pages())
                out.push_back(p.resolve().str());
        return out;
    }
    int current() const { return panel->getTabs()->getCurrentTabIndex(); }
    // One page at a time, and it is a child of the panel.
    void expectOnePage() const {
        EXPECT_NE(panel->getVideoView() == nullptr, panel->getAudioView() == nullptr);
    }
    std::unique_ptr<MultiTrackRoutingView> panel;
};

TEST_F(Panel, TabsFollowThePlayheadAcrossACut) {
    make();
    EXPECT_EQ(labels(), (std::vector<std::wstring>{L"Video", L"A1+A2", L"A3"}));
    EXPECT_EQ(panel->getTabs()->getPageID(0).str(), L"6.0.1");
    EXPECT_EQ(panel->getTabs()->getPageID(2).str(), L"6.0.4");
    ASSERT_TRUE(panel->getVideoView()) << "the current track is the video";
    expectOnePage();

    vob->setCurrentTime(15.0);
    EXPECT_EQ(labels(), (std::vector<std::wstring>{L"Video", L"A1+A2", L"A3", L"A4+A5"}));
    EXPECT_EQ(current(), 0) << "the video page stays chosen";
    EXPECT_TRUE(panel->getVideoView());

    // The page area is what the strip leaves.
    Zk::Box<int> ua = panel->getUserArea();
    EXPECT_EQ(ua.y2,
              panel->StandardPanel::getUserArea().y2 - panel->getTabs()->height() - UifStd::getWidgetGap());
    EXPECT_EQ(panel->getVideoView()->height(), ua.height());
}

TEST_F(Panel, ChangingPagesMakesAndDestroysViews) {
    make();
    TabbedDialogue* tabs = panel->getTabs();
    ASSERT_TRUE(tabs);

    ASSERT_TRUE(tabs->selectPage(2, true, false));
    AudioRoutingView* audio = panel->getAudioView();
    ASSERT_TRUE(audio);
    EXPECT_FALSE(panel->getVideoView()) << "the graph view went with its page";
    EXPECT_EQ(monitor->getTrackID(), kA3);
    EXPECT_EQ(audio->getTrack(), kA3);

    ASSERT_TRUE(tabs->selectPage(1, true, false));
    EXPECT_EQ(panel->getAudioView(), audio) << "a page of the same kind keeps the table";
    EXPECT_EQ(audio->getTrack(), kA1);
    EXPECT_EQ(audio->getNumRows(), 5);

    ASSERT_TRUE(tabs->selectPage(0, true, false));
    EXPECT_TRUE(panel->getVideoView());
    EXPECT_FALSE(panel->getAudioView());
    ASSERT_TRUE(tabs->selectPage(1, true, false));
    ASSERT_TRUE(panel->getAudioView());
    EXPECT_FALSE(panel->getVideoView());
    expectOnePage();
    EXPECT_EQ(panel->getAudioView()->getNumRows(), 5);
}

TEST_F(Panel, TheVideoLabelIsMatchedWithoutCaseOnAClick) {
    make();
    TabbedDialogue* tabs = panel->getTabs();
    tabs->selectPage(1, true, false);
    ASSERT_TRUE(panel->getAudioView());
    auto data = Zk::Ptr<iObject>(new EventMsgData<TabDetails>(TabDetails{UIString(L"VIDEO"), 0}));
    EXPECT_EQ(panel->handleDataMessageEvent(TabbedDialogue::changePageMsg, tabs, data), 1);
    EXPECT_TRUE(panel->getVideoView());

    // Only the strip's own message counts.
    EXPECT_EQ(panel->handleDataMessageEvent(TabbedDialogue::changePageMsg, panel.get(), data), 0);
    EXPECT_EQ(panel->handleDataMessageEvent("somethingElse", tabs, data), 0);
}

TEST_F(Panel, WhenTheChosenAudioTrackGoesTheStripFallsBack) {
    vob->storeCurrentTime(15.0);
    monitor->resync();
    make();
    panel->getTabs()->selectPage(3, true, false);
    ASSERT_EQ(panel->getAudioView()->getTrack(), kA4);

    vob->setCurrentTime(5.0);
    EXPECT_EQ(labels(), (std::vector<std::wstring>{L"Video", L"A1+A2", L"A3"}));
    EXPECT_EQ(monitor->getTrackID(), kA1) << "the first audio track stands in";
    EXPECT_EQ(current(), 1);
    ASSERT_TRUE(panel->getAudioView());
    EXPECT_EQ(panel->getAudioView()->getTrack(), kA1);
    EXPECT_EQ(panel->getAudioView()->getNumRows(), 5);
}

TEST_F(Panel, ChangesOfTheChainReachTheTable) {
    make();
    panel->getTabs()->selectPage(1, true, false);
    AudioRoutingView* audio = panel->getAudioView();
    ASSERT_TRUE(audio);
    {
        EasyBackup step(edit);
        fx(kReverb)->setInputTrackId(0, kGain, true);
        edit->addModification(EditModifications(EditModification(5)), true);
    }
    EXPECT_EQ(audio->getNumRows(), 4) << "the equaliser dropped out";
    EXPECT_EQ(audio->getFieldText(XY<int>(0, 2)).str(), L"Gain");
}

TEST_F(Panel, VideoAloneHasNoStrip) {
    std::string error;
    EditPtr video = EditFile::open(std::string(NODEDESK_SOURCE_DIR) + "/samples/chain.edit.json", error);
    ASSERT_TRUE(video) << error;
    Zk::Ptr<Vob> v = VobManager::instance().vobFor(video, "routing-video");
    CompoundEffectMonitor m(v.get());
    MultiTrackRoutingView p(MultiTrackRoutingView::InitArgs(400, 300, v.get()));
    EXPECT_FALSE(p.getTabs());
    ASSERT_TRUE(p.getVideoView());
    EXPECT_TRUE(p.getUserArea() == p.StandardPanel::getUserArea());
    EXPECT_TRUE(p.getMenuItems(nullptr).size() == p.getVideoView()->getMenuItems(nullptr).size());
}

TEST_F(Panel, ACopyTakesTheFieldsAndNoPage) {
    make();
    panel->getTabs()->selectPage(1, true, false);
    {
        MultiTrackRoutingView copy(*panel);
        EXPECT_EQ(copy.getMonitor(), monitor.get());
        EXPECT_FALSE(copy.getTabs());
        EXPECT_FALSE(copy.getAudioView());
        EXPECT_FALSE(copy.getVideoView());
    }
    // The original still hears the monitor after the copy has gone.
    vob->setCurrentTime(15.0);
    EXPECT_EQ(labels().size(), 4u);
    ASSERT_TRUE(panel->getAudioView());

    // Resizing keeps the page filling what the strip leaves.
    panel->resize(420, 300);
    EXPECT_EQ(panel->getTabs()->width(), panel->getUserArea().width());
    EXPECT_EQ(panel->getAudioView()->height(), panel->getUserArea().height());
    EXPECT_EQ(panel->getAudioView()->getTable()->height(), panel->getAudioView()->getUserArea().height());
}

} // namespace
