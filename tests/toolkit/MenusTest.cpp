// Menus built by reviewMenu, their choices, and the texts they show.
#include <gtest/gtest.h>

#include "host/MenuData.h"
#include "host/MenuGlob.h"
#include "host/Resources.h"
#include "host/UIString.h"

// The callback interface as the notification layer declares it, for a message type of this test.
template <class R, class E>
class iCallbackBase : public iObject {
public:
    virtual R invoke(const E& e) = 0;
};

namespace {

// A stand-in for the callback interface of the notification layer.
struct Msg {
    Msg(const LightweightString<char>& t, Zk::Ptr<iObject> d) : text(t), data(d) {}
    LightweightString<char> text;
    Zk::Ptr<iObject> data;
};

struct Counter : iCallbackBase<int, Msg> {
    int invoke(const Msg& m) override {
        ++calls;
        last = m.data;
        return 3;
    }
    int calls = 0;
    Zk::Ptr<iObject> last;
};

class CanvasMenu : public MenuGlob {
public:
    CanvasMenu() : MenuGlob(GlobCreationInfo(200, 100)) {}
    void reviewMenu(const Event* e) override {
        clearMenu();
        setMenuTitle(UIString(10608));
        if (e && e->pos().x < 50) {
            addMenuItem(MenuItem(UIString(L"Node command"), WidgetCallback("nodeCmd")));
            return;
        }
        addMenuItem(MenuItem(UIString(10928), WidgetCallback(tidy)));
        addMenuItem(MenuItem(UIString(11778), WidgetCallback(orient), {UIString(11779), UIString(11780)},
                             MenuItemIndex(1)));
    }
    int handleMessageEvent(const LightweightString<char>& msg, Glob*) override {
        got = msg.str();
        return 1;
    }
    Zk::Ptr<iCallbackBase<int, Msg>> tidy{new Counter};
    Zk::Ptr<iCallbackBase<int, Msg>> orient{new Counter};
    std::string got;
};

} // namespace

TEST(Menus, ReviewMenuBuildsTheItemsForThePlace) {
    CanvasMenu m;
    Event far(Event::Up, Event::Right, XY<int>(150, 50), XY<int>(150, 50));
    std::vector<MenuItem> items = m.prepareMenu(&far);
    ASSERT_EQ(items.size(), 2u);
    EXPECT_EQ(m.getMenuTitle().resolve(), L"Effect graph");
    EXPECT_EQ(items[0].label().resolve(), L"Tidy nodes");
    EXPECT_EQ(items[1].choices().size(), 2u);
    EXPECT_EQ(items[1].selected().index, 1);

    EXPECT_EQ(items[0].choose(&m), 3);
    EXPECT_EQ(static_cast<Counter*>(m.tidy.get())->calls, 1);
    EXPECT_EQ(items[1].choose(&m, 0), 3);
    auto change = Zk::dynamicCast<MenuData::Change>(static_cast<Counter*>(m.orient.get())->last);
    ASSERT_TRUE(change) << "a choice carries what was chosen";
    EXPECT_EQ(change->getText(), L"Left to right");
    EXPECT_EQ(items[1].choose(&m, 2), 0) << "a choice out of range does nothing";

    Event near(Event::Up, Event::Right, XY<int>(10, 50), XY<int>(10, 50));
    items = m.prepareMenu(&near);
    ASSERT_EQ(items.size(), 1u) << "the menu is rebuilt each time";
    items[0].choose(&m);
    EXPECT_EQ(m.got, "nodeCmd") << "a message item goes to the menu's owner";

    Event leftUp(Event::Up, Event::Left, XY<int>(10, 50), XY<int>(10, 50));
    EXPECT_FALSE(m.processRightMouseClicks(leftUp));
    EXPECT_TRUE(m.processRightMouseClicks(far)) << "a right release pops the menu up";
}

TEST(Menus, TextsComeFromResourcesWithFlags) {
    EXPECT_EQ(UIString(11779).resolve(), L"Left to right");
    EXPECT_EQ(UIString(11779, UIString::AppendDots).resolve(), L"Left to right..");
    EXPECT_EQ(UIString(L"as is").resolve(), L"as is");
    EXPECT_EQ(UIString(L"fallback", 4242).resolve(), L"fallback") << "an unknown id keeps the literal text";
    EXPECT_EQ(paddedResourceStrW(11587, L"", L" : "), L"Effect graph : ");
    EXPECT_EQ(resourceStrW(10052, 1), L"VIDEO");
    EXPECT_TRUE(resourceStrW(1).empty());
    EXPECT_FALSE(getIconPath("redo.png").empty());
    EXPECT_TRUE(getIconPath("../strings.txt").empty());
    EXPECT_TRUE(getIconPath("missing.png").empty());

    int bad = 0;
    EXPECT_EQ(
        parseResourceStrings("900001 one\nnot a line\n900002\n123456789012 too big\n900003\tthree", &bad), 2);
    EXPECT_EQ(bad, 3);
    EXPECT_EQ(resourceStrW(900003), L"three");
}
