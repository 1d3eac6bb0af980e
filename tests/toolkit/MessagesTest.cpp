// Text messages between widgets, posted messages, timers and the redraw bracket.
#include <gtest/gtest.h>

#include <thread>

#include "host/Button.h"
#include "host/Canvas.h"
#include "host/Checkbox.h"
#include "host/DropDownMenuButton.h"
#include "host/EventMsgData.h"
#include "host/GlobManager.h"
#include "host/MenuData.h"
#include "host/ScrollBar.h"
#include "host/StandardPanel.h"
#include "host/TabDetails.h"
#include "host/TabbedDialogue.h"
#include "host/ToolkitApp.h"
#include "host/UpdateDeferrer.h"

namespace {

// A panel that keeps what reaches it.
class Recorder : public StandardPanel {
public:
    Recorder() : StandardPanel(InitArgs(300, 200)) {}
    int handleMessageEvent(const LightweightString<char>& msg, Glob* sender) override {
        messages.push_back(msg.str());
        senders.push_back(sender);
        return msg == "ignored" ? 0 : 1;
    }
    int handleDataMessageEvent(const LightweightString<char>& msg, Glob* sender,
                               Zk::Ptr<iObject> d) override {
        data = d;
        return StandardPanel::handleDataMessageEvent(msg, sender, d);
    }
    void handleTimerEvent() override { ++ticks; }
    void drawBackground() override {
        ++paints;
        StandardPanel::drawBackground();
    }
    std::vector<std::string> messages;
    std::vector<Glob*> senders;
    Zk::Ptr<iObject> data;
    int ticks = 0;
    int paints = 0;
};

struct Note : iObject {
    int value = 7;
};

} // namespace

TEST(Messages, WidgetsTellTheirParent) {
    Recorder panel;
    auto* b = static_cast<Button*>(
        panel.addChild(new Button(Button::InitArgs(UIString(L"Go"), "TidyNodes")), Glob::BottomLeft(2, 2)));
    EXPECT_TRUE(b->click());
    ASSERT_EQ(panel.messages.size(), 1u);
    EXPECT_EQ(panel.messages[0], "TidyNodes");
    EXPECT_EQ(panel.senders[0], b);
    b->setActive(false, Glob::NoRedraw);
    EXPECT_FALSE(b->click()) << "an inactive button sends nothing";

    auto* c = static_cast<Checkbox*>(
        panel.addChild(new Checkbox(Checkbox::InitArgs(UIString(L"Auto"), false)), Glob::RightOf(4)));
    c->click();
    EXPECT_EQ(panel.messages.back(), "Checkbox 1");
    EXPECT_TRUE(c->getValue());
    c->setValue(false);
    EXPECT_EQ(panel.messages.size(), 2u) << "setting the value from code sends nothing";

    auto* dd = static_cast<DropDownMenuButton*>(
        panel.addChild(new DropDownMenuButton(DropDownMenuButton::InitArgs(
                           {UIString(L"One"), UIString(L"Two")}, WidgetCallback())),
                       Glob::RightOf(4)));
    dd->choose(1);
    EXPECT_EQ(panel.messages.back(), DropDownMenuButton::dropDownMenuButtonMsg);
    auto change = Zk::dynamicCast<MenuData::Change>(panel.data);
    ASSERT_TRUE(change);
    EXPECT_EQ(change->getText(), L"Two");
    EXPECT_EQ(dd->getSelectedItem().index, 1);
    EXPECT_FALSE(dd->setSelectedItem(MenuItemIndex(5)));

    auto* bar = static_cast<ScrollBar*>(panel.addChild(
        new ScrollBar(ScrollBar::InitArgs(100, 0, ScrollBar::Horizontal)), Glob::BottomLeft(0, 40)));
    EXPECT_TRUE(bar->setThumbSize(0.25));
    EXPECT_FALSE(bar->setThumbSize(0.25)) << "no change, no report";
    EXPECT_TRUE(bar->setThumbPos(0.5));
    bar->userPressedButton(true);
    EXPECT_EQ(panel.messages.back(), ScrollBar::leftButtonPressedMsg);
    EXPECT_DOUBLE_EQ(bar->getThumbPos(), 0.5) << "a button press leaves the thumb to the owner";
    bar->userStretchedThumb(0.4);
    EXPECT_EQ(panel.messages.back(), ScrollBar::thumbStretchedMsg);
    EXPECT_DOUBLE_EQ(bar->getThumbSize(), 0.4);
    bar->userStretchedThumb(0.9);
    EXPECT_DOUBLE_EQ(bar->getThumbSize(), 0.5) << "the thumb can't run past the end";
}

TEST(Messages, UnhandledMessagesGoUpTheTree) {
    Recorder outer;
    auto* inner = static_cast<StandardPanel*>(
        outer.addChild(new StandardPanel(StandardPanel::InitArgs(100, 100)), Glob::BottomLeft(0, 0)));
    EXPECT_EQ(inner->handleMessageEvent("popOut", inner), 1);
    ASSERT_EQ(outer.messages.size(), 1u);
    EXPECT_EQ(outer.messages[0], "popOut");
    EXPECT_EQ(inner->handleMessageEvent("ignored", inner), 0) << "the parent's answer is returned";

    StandardPanel lone(StandardPanel::InitArgs(100, 100));
    EXPECT_EQ(lone.handleMessageEvent("anything", nullptr), 0) << "a root with no taker answers 0";
}

TEST(Messages, TabClicksCarryTheirDetails) {
    Recorder panel;
    auto* tabs = static_cast<TabbedDialogue*>(panel.addChild(
        new TabbedDialogue(TabbedDialogue::InitArgs(200, 0, {UIString(L"Video"), UIString(L"A1")})),
        Glob::TopLeft(0, 0)));
    tabs->setPageID(1, L"3.0.1");
    EXPECT_EQ(tabs->findPageIdx(UIString(L"A1")), 1);
    EXPECT_LT(tabs->findPageIdx(UIString(L"A9")), 0);
    EXPECT_TRUE(tabs->selectPage(WString(L"3.0.1"), true, false));
    EXPECT_EQ(panel.messages.back(), TabbedDialogue::changePageMsg);
    auto details = Zk::dynamicCast<EventMsgData<TabDetails>>(panel.data);
    ASSERT_TRUE(details);
    EXPECT_EQ(details->getData().index, 1);
    EXPECT_FALSE(tabs->setPages({UIString(L"Video"), UIString(L"A1")}, 0, false)) << "same labels: no change";
    EXPECT_TRUE(tabs->setPages({UIString(L"A1")}, 0, false));
    EXPECT_EQ(tabs->getPageID(0), L"3.0.1") << "a page that stays keeps its id";
}

TEST(Messages, PostedMessagesArriveOnTheUiThreadWhileTheHandlerLives) {
    ensureToolkitApplication();
    EXPECT_EQ(co_pid(), 0);
    auto* panel = new Recorder;
    int otherPid = 0;
    std::thread t([&] {
        otherPid = co_pid();
        Zk::Ptr<iObject> data(new Note);
        sendMessageWithData("fromThread", panel, data, nullptr);
    });
    t.join();
    EXPECT_NE(otherPid, 0);
    EXPECT_TRUE(panel->messages.empty()) << "posting never delivers inside the call";
    processToolkitEvents();
    ASSERT_EQ(panel->messages.size(), 1u);
    EXPECT_EQ(panel->messages[0], "fromThread");
    ASSERT_TRUE(Zk::dynamicCast<Note>(panel->data));

    IdStamp id = panel->handlerId();
    EXPECT_TRUE(EventHandler::valid(panel, id));
    sendMessageWithData("late", panel, nullptr, nullptr);
    delete panel;
    EXPECT_FALSE(EventHandler::valid(panel, id));
    EXPECT_EQ(deliverPostedMessages(), 0) << "a message to a deleted handler is dropped";
}

TEST(Messages, TimerEventsFollowTheInterest) {
    Recorder panel;
    GlobManager::instance().deliverTimerEvents();
    EXPECT_EQ(panel.ticks, 0);
    panel.setInterest(Glob::TimerInterest);
    panel.setInterest(Glob::TimerInterest);
    GlobManager::instance().deliverTimerEvents();
    EXPECT_EQ(panel.ticks, 1) << "setting the interest twice still gives one event a round";
    panel.clearInterest(Glob::TimerInterest);
    GlobManager::instance().deliverTimerEvents();
    EXPECT_EQ(panel.ticks, 1);
}

TEST(Messages, DeletionWaitsForASafeMoment) {
    auto* panel = new Recorder;
    GlobManager::instance().realize(panel);
    EXPECT_TRUE(GlobManager::instance().owns(panel));
    GlobManager::instance().requestDeletion(panel);
    EXPECT_TRUE(is_good_glob_ptr(panel)) << "still there inside the call that asked";
    EXPECT_EQ(GlobManager::instance().processDeletions(), 1);
    EXPECT_FALSE(is_good_glob_ptr(panel));
    EXPECT_FALSE(GlobManager::instance().owns(panel));
}

TEST(Messages, RedrawBracketHoldsDrawsUntilTheLastEnable) {
    Recorder panel;
    panel.draw();
    int base = panel.paints;
    EXPECT_EQ(base, 1);
    Drawable::disableRedraws();
    Drawable::disableRedraws();
    panel.draw();
    EXPECT_EQ(panel.paints, base) << "draw while disabled only marks the widget";
    EXPECT_TRUE(panel.isOutOfDate());
    Drawable::enableRedraws();
    EXPECT_TRUE(Drawable::redrawsDisabled()) << "disables nest";
    Drawable::enableRedraws();
    Drawable::enableRedraws();
    EXPECT_FALSE(Drawable::redrawsDisabled()) << "enabling never goes below zero";
    panel.saveSnapshot("/dev/null");
    EXPECT_EQ(panel.paints, base + 1) << "the out-of-date widget is painted once redraws are back";

    int flushes = panel.canvas()->screenUpdateCount();
    {
        Glib::UpdateDeferrer outer(panel.canvas());
        Glib::UpdateDeferrer inner(panel.canvas());
        panel.draw();
        panel.draw();
    }
    EXPECT_EQ(panel.canvas()->screenUpdateCount(), flushes + 1) << "a deferral sends its updates once";
}
