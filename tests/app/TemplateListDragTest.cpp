// Dragging a template from the graph tool's template list onto a graph view with the window
// system's own mouse events: the drag starts beyond the click tolerance, the preview follows the
// pointer over the view and goes when the pointer leaves, and the release drops the template.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QMouseEvent>
#include <string>

#include "graphview/FXGraphView.h"
#include "host/DragDropManager.h"
#include "host/EditorPreferences.h"
#include "host/GlobManager.h"
#include "host/ToolkitApp.h"
#include "host/Vob.h"
#include "host/VobManager.h"
#include "panels/DDVideoEffectsList.h"
#include "refhost/edit/EditFile.h"
#include "refhost/toolkit/GlobImpl.h"

namespace {

struct DragFixture : ::testing::Test {
    void SetUp() override {
        ensureToolkitApplication();
        prefs().setPreference(kOrientationPrefKey, "BottomToTop");
        std::string error;
        edit = EditFile::open(std::string(NODEDESK_SOURCE_DIR) + "/samples/chain.edit.json", error);
        ASSERT_TRUE(edit) << error;
        vob = VobManager::instance().vobFor(edit, "drag-test");
        vob->makeRecordMachine();
        view = new FXGraphView(FXGraphView::InitArgs(500, 400, vob.get(), 1));
        Glob::setupRootPos(view->canvas(), XY<int>(300, 100));
        GlobManager::instance().realize(view);
        view->ensureNodeListVisible(view->getAllNodes(), RefitIfTooBigAndCentre);
        view->draw();
        list = new DDVideoEffectsList(DDVideoEffectsList::InitArgs(vob.get(), 1, 0, 160, 500));
        Glob::setupRootPos(list->canvas(), XY<int>(100, 100));
        GlobManager::instance().realize(list);
    }
    void TearDown() override {
        DragDropManager::instance().cancel();
        GlobManager::instance().destroyAll();
        VobManager::instance().reset();
    }

    // A mouse event to the list, which holds the pointer from the press to the release, at a
    // point on the screen.
    void mouse(QEvent::Type type, const XY<int>& screen, Qt::MouseButtons held,
               Qt::KeyboardModifiers mods = Qt::NoModifier) {
        const XY<int> local = list->screenXYToGlobXY(screen);
        const QPointF q(local.x, list->height() - 1 - local.y);
        const QPointF global(screen.x, toolkit::screenHeight() - 1 - screen.y);
        const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent e(type, q, global, button, held, mods);
        QCoreApplication::sendEvent(list->impl().widget, &e);
    }
    XY<int> onRow(const wchar_t* name) {
        const XY<int> c = list->rowCentre(list->rowOf(name));
        return XY<int>(list->getPosition().x + c.x, list->getPosition().y + c.y);
    }
    // An empty pixel of the view's canvas, on the screen.
    XY<int> emptyOnView() const {
        const Zk::Box<int> w = view->getWindowPos();
        for (int x = w.x1 + 10; x < w.x2; x += 9)
            if (!view->findNodeAt(x, w.y1 + 10))
                return XY<int>(view->getPosition().x + x, view->getPosition().y + w.y1 + 10);
        return XY<int>();
    }

    EditPtr edit;
    Zk::Ptr<Vob> vob;
    FXGraphView* view = nullptr;
    DDVideoEffectsList* list = nullptr;
};

TEST_F(DragFixture, PressMoveAndReleaseDropATemplateOnTheView) {
    DragDropManager& dd = DragDropManager::instance();
    ASSERT_GE(list->rowOf(L"Sepia"), 0);
    EXPECT_LT(list->rowOf(L"Gain"), 0) << "the list holds the templates of its channel type";
    const XY<int> row = onRow(L"Sepia");
    const XY<int> target = emptyOnView();
    const size_t before = edit->nodes().size();

    mouse(QEvent::MouseButtonPress, row, Qt::LeftButton);
    EXPECT_EQ(list->pressedRow(), list->rowOf(L"Sepia"));
    mouse(QEvent::MouseMove, XY<int>(row.x + 2, row.y), Qt::LeftButton);
    EXPECT_FALSE(dd.dragging()) << "within the click tolerance";
    mouse(QEvent::MouseMove, XY<int>(row.x + 20, row.y), Qt::LeftButton);
    ASSERT_TRUE(dd.dragging());
    EXPECT_EQ(view->floatingNode(), nullptr) << "not over the view yet";

    mouse(QEvent::MouseMove, target, Qt::LeftButton);
    Glob* preview = view->floatingNode();
    ASSERT_TRUE(preview);
    const XY<int> s = view->getNodeSize();
    EXPECT_EQ(preview->getPosition(), XY<int>(target.x - s.x / 2, target.y - s.y / 2));
    mouse(QEvent::MouseMove, XY<int>(target.x + 15, target.y + 5), Qt::LeftButton);
    EXPECT_EQ(view->floatingNode(), preview);
    EXPECT_EQ(preview->getPosition(), XY<int>(target.x + 15 - s.x / 2, target.y + 5 - s.y / 2))
        << "it follows";

    mouse(QEvent::MouseMove, row, Qt::LeftButton);
    EXPECT_EQ(view->floatingNode(), nullptr) << "leaving the view removes the preview";
    mouse(QEvent::MouseMove, target, Qt::LeftButton);
    EXPECT_TRUE(view->floatingNode());

    mouse(QEvent::MouseButtonRelease, target, Qt::NoButton);
    EXPECT_FALSE(dd.dragging());
    EXPECT_EQ(view->floatingNode(), nullptr);
    EXPECT_EQ(edit->nodes().size(), before + 1);
    EXPECT_EQ(vob->undoDepth(), 1u);
    processToolkitEvents();
}

TEST_F(DragFixture, AReleaseAwayFromTheViewDropsNothing) {
    const XY<int> row = onRow(L"Crop");
    const size_t before = edit->nodes().size();
    mouse(QEvent::MouseButtonPress, row, Qt::LeftButton);
    mouse(QEvent::MouseMove, emptyOnView(), Qt::LeftButton);
    mouse(QEvent::MouseMove, XY<int>(row.x, row.y - 30), Qt::LeftButton);
    mouse(QEvent::MouseButtonRelease, XY<int>(row.x, row.y - 30), Qt::NoButton);
    EXPECT_FALSE(DragDropManager::instance().dragging());
    EXPECT_EQ(view->floatingNode(), nullptr);
    EXPECT_EQ(edit->nodes().size(), before);
    EXPECT_EQ(vob->undoDepth(), 0u);

    // A click on a row is no drag.
    mouse(QEvent::MouseButtonPress, row, Qt::LeftButton);
    mouse(QEvent::MouseButtonRelease, row, Qt::NoButton);
    EXPECT_FALSE(DragDropManager::instance().dragging());
    EXPECT_EQ(list->pressedRow(), -1);
}

} // namespace
