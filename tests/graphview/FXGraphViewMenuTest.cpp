// The canvas's right-click menu: the node's own commands from the host under the node's title, or
// the canvas's tidy and direction items, and what choosing them does.
#include <gtest/gtest.h>

#include <QApplication>
#include <QMenu>

#include "../support/BuiltGraphView.h"
#include "graphnodes/FXGraphViewNode.h"
#include "graphview/FXGraphView.h"
#include "host/Event.h"
#include "host/MenuData.h"
#include "host/Resources.h"
#include "host/ScrollBar.h"
#include "host/Vob.h"

namespace {

using VidRouting::Orientations::BottomToTop;
using VidRouting::Orientations::LeftToRight;

struct MenuFixture : BuiltGraphView<> {
    void SetUp() override {
        BuiltGraphView::SetUp();
        blur = g.effect(1, 1, "PixShader:Blur:gauss.fx");
        blur->setName(L"Soft focus");
        GraphBuilder::link(blur, 0, g.material(10));
        g.graphEvent(chan, 0, 10, blur);
        openView(800, 600, "menu-test");
        view->resetView(RedrawAlways, RefitIfTooBigAndCentre);
        view->draw();
    }
    // A right-button release at the middle of a node's pixel box.
    static Event clickOn(const FXGraphViewNode& n) {
        const XY<int> at((n.box_.x1 + n.box_.x2) / 2, (n.box_.y1 + n.box_.y2) / 2);
        return Event(Event::Up, Event::Right, at, at);
    }
    Event clickOnCanvas() {
        const XY<int> at(view->getWindowPos().x1 + 2, view->getWindowPos().y1 + 2);
        EXPECT_EQ(view->findNodeAt(at.x, at.y), nullptr) << "the corner must be empty canvas";
        return Event(Event::Up, Event::Right, at, at);
    }
    FXGraphViewNode& nodeFor(const Zk::Ptr<FXGraphNodeBase>& n) {
        for (const auto& v : view->nodes())
            if (v->node() == n)
                return *v;
        ADD_FAILURE() << "no view node";
        return *view->nodes().front();
    }
    static std::vector<unsigned> ids(const std::vector<MenuItem>& items) {
        std::vector<unsigned> out;
        for (const MenuItem& i : items)
            out.push_back(i.label().id());
        return out;
    }
    Zk::Ptr<EffectInstance_opu4h5a4j> blur;
};

TEST_F(MenuFixture, TheCanvasMenuHasTidyAndDirectionWithThePresentOneMarked) {
    const Event e = clickOnCanvas();
    std::vector<MenuItem> items = view->prepareMenu(&e);
    EXPECT_EQ(view->getMenuTitle().id(), 10608u);
    ASSERT_EQ(ids(items), (std::vector<unsigned>{10928, 11778}));
    ASSERT_EQ(items[1].choices().size(), 2u);
    EXPECT_EQ(items[1].choices()[0].id(), 11779u);
    EXPECT_EQ(items[1].choices()[1].id(), 11780u);
    EXPECT_EQ(items[1].selected().index, 1) << "bottom to top is the second choice";

    view->setOrientation(LeftToRight, false);
    items = view->prepareMenu(nullptr);
    EXPECT_EQ(view->getMenuTitle().id(), 10608u) << "without an event the menu is the canvas menu";
    ASSERT_EQ(ids(items), (std::vector<unsigned>{10928, 11778}));
    EXPECT_EQ(items[1].selected().index, 0);
}

TEST_F(MenuFixture, ChoosingTheCanvasItemsTidiesAndTurns) {
    std::vector<MenuItem> items = view->prepareMenu(nullptr);
    ASSERT_EQ(items.size(), 2u);
    FXGraphViewNode& top = nodeFor(blur);
    const XY<double> tidyPos(top.x(), top.y());
    top.setPos(top.x() + 3, top.y() - 2, false);
    items[0].choose(view);
    EXPECT_EQ(nodeFor(blur).x(), tidyPos.x) << "tidying puts the node back";
    EXPECT_EQ(nodeFor(blur).y(), tidyPos.y);

    items[1].choose(view, 0);
    EXPECT_EQ(view->getOrientation(), LeftToRight);
    items[1].choose(view, 1);
    EXPECT_EQ(view->getOrientation(), BottomToTop);

    // The choice is read by its text: anything but the first choice's text is bottom to top.
    view->setOrientation(LeftToRight, false);
    view->changeOrientation(NotifyMsg("x", Zk::Ptr<iObject>(new MenuData::Change(L"Sideways", 0))));
    EXPECT_EQ(view->getOrientation(), BottomToTop);
    view->changeOrientation(NotifyMsg("x", Zk::Ptr<iObject>(new MenuData::Change(resourceStrW(11779), 1))));
    EXPECT_EQ(view->getOrientation(), LeftToRight);
}

TEST_F(MenuFixture, ANodesMenuIsTheHostsUnderTheNodesTitle) {
    Event e = clickOn(nodeFor(blur));
    std::vector<MenuItem> items = view->prepareMenu(&e);
    EXPECT_EQ(view->getMenuTitle().id(), UIString::NoResource);
    EXPECT_EQ(view->getMenuTitle().resolve(), WString(L"Soft focus"));
    ASSERT_FALSE(items.empty()) << "the host has commands for an effect";
    for (const MenuItem& i : items) {
        EXPECT_NE(i.label().id(), 10928u) << "a node's menu has no canvas items";
        EXPECT_NE(i.label().id(), 11778u);
    }

    // A source clip is titled with its channel's name.
    FXGraphViewNode* clip = nullptr;
    for (const auto& v : view->nodes())
        if (v->node() != blur)
            clip = v.get();
    ASSERT_NE(clip, nullptr);
    e = clickOn(*clip);
    view->prepareMenu(&e);
    EXPECT_EQ(view->getMenuTitle().resolve(), WString(L"V1"));

    // Where the host offers nothing (a read-only edit), the canvas items stand under the title.
    vob->setReadOnly(true);
    e = clickOn(nodeFor(blur));
    items = view->prepareMenu(&e);
    EXPECT_EQ(view->getMenuTitle().resolve(), WString(L"Soft focus"));
    EXPECT_EQ(ids(items), (std::vector<unsigned>{10928, 11778}));
    vob->setReadOnly(false);
}

TEST_F(MenuFixture, TheMenuPopsUpAsARealMenuWithItsTexts) {
    const Event e = clickOnCanvas();
    ASSERT_TRUE(view->popUpMenu(&e));
    QMenu* shown = nullptr;
    for (QWidget* w : QApplication::topLevelWidgets())
        if (auto* m = qobject_cast<QMenu*>(w); m && m->objectName() == "nodedeskPopup" && m->isVisible())
            shown = m;
    ASSERT_NE(shown, nullptr);
    QStringList texts;
    for (QAction* a : shown->actions())
        if (!a->isSeparator())
            texts << a->text();
    EXPECT_EQ(texts, (QStringList{"Effect graph", "Tidy nodes", "Layout direction"}));
    shown->close();
}

} // namespace
