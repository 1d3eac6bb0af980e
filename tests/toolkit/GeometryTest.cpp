// Widget geometry: positions with y upward, the user area, anchoring on resize.
#include <gtest/gtest.h>

#include "host/Glob.h"
#include "host/ScrollBar.h"
#include "host/StandardPanel.h"
#include "host/TextBox.h"
#include "host/UifStd.h"

namespace {

Glob* box(int w, int h) {
    return new Glob(GlobCreationInfo(w, h));
}

} // namespace

TEST(Geometry, PositionMakersPlaceCornersWithYUpward) {
    Glob parent(GlobCreationInfo(200, 100));
    Glob* tl = parent.addChild(box(20, 10), Glob::TopLeft(5, 3));
    EXPECT_EQ(tl->getX(), 5);
    EXPECT_EQ(tl->getY(), 100 - 3 - 10) << "TopLeft offsets down from the top edge";
    Glob* bl = parent.addChild(box(20, 10), Glob::BottomLeft(4, 6));
    EXPECT_EQ(bl->getX(), 4);
    EXPECT_EQ(bl->getY(), 6);
    Glob* br = parent.addChild(box(30, 10), Glob::BottomRight(2, 2));
    EXPECT_EQ(br->getX(), 200 - 2 - 30);
    EXPECT_EQ(br->getY(), 2);
    Glob* left = parent.addChild(box(10, 6), Glob::LeftOf(4, nullptr, 0));
    EXPECT_EQ(left->getX(), br->getX() - 4 - 10) << "LeftOf with null takes the widget added last";
    EXPECT_EQ(left->getY(), br->getY() + 2) << "alignment 0 centres on the reference";
    Glob* right = parent.addChild(box(10, 10), Glob::RightOf(3, bl, 2));
    EXPECT_EQ(right->getX(), 4 + 20 + 3);
    EXPECT_EQ(right->getY(), bl->getY()) << "alignment 2 levels the tops";
    Glob* centre = parent.addChild(box(20, 20), Glob::Centre(0, 0));
    EXPECT_EQ(centre->getX(), 90);
    EXPECT_EQ(centre->getY(), 40);
}

TEST(Geometry, UserAreaOfPanelAndUserPositions) {
    StandardPanel panel(StandardPanel::InitArgs(300, 200, Border(0, 3, 15)));
    Zk::Box<int> ua = panel.getUserArea();
    EXPECT_EQ(ua.x1, 3);
    EXPECT_EQ(ua.y1, 3);
    EXPECT_EQ(ua.x2, 297);
    EXPECT_EQ(ua.y2, 200 - 3 - panel.titleRowHeight());
    EXPECT_EQ(panel.titleRowHeight() + 3, StandardPanel::calcSize(2, 0, Border(0, 3, 15)));

    Glob* utr = panel.addChild(box(50, 40), Glob::UserTopRight(0, 0));
    EXPECT_EQ(utr->getX() + utr->width(), ua.x2);
    EXPECT_EQ(utr->getY() + utr->height(), ua.y2);
    Glob* utl = panel.addChild(box(50, 40), Glob::UserTopLeft(2, 1));
    EXPECT_EQ(utl->getX(), ua.x1 + 2);
    EXPECT_EQ(utl->getY() + utl->height(), ua.y2 - 1);
    Glob* ubl = panel.addChild(box(50, 40), Glob::UserBottomLeft(0, 0));
    EXPECT_EQ(ubl->getX(), ua.x1);
    EXPECT_EQ(ubl->getY(), ua.y1);

    // A panel whose title is hidden has no title row: its user area reaches the top border.
    StandardPanel bare(StandardPanel::InitArgs(300, 200, Border(0, 3, 15)));
    bare.setTitleShown(false);
    EXPECT_EQ(bare.titleRowHeight(), 0);
    EXPECT_EQ(bare.getUserArea().y2, 197);

    // Sides without a border give their width to the user area.
    StandardPanel open(StandardPanel::InitArgs(300, 200, Border(0, 3, 8)));
    EXPECT_EQ(open.getUserArea().x1, 0);
    EXPECT_EQ(open.getUserArea().y1, 0);
}

TEST(Geometry, ResizeKeepsChildrenAgainstTheirEdges) {
    Glob parent(GlobCreationInfo(200, 100));
    Glob* top = parent.addChild(box(20, 10), Glob::TopLeft(5, 5));
    Glob* right = parent.addChild(box(20, 10), Glob::BottomRight(5, 5));
    Glob* bottom = parent.addChild(box(20, 10), Glob::BottomLeft(5, 5));
    parent.resize(260, 140);
    EXPECT_EQ(top->getY(), 140 - 5 - 10);
    EXPECT_EQ(right->getX(), 260 - 5 - 20);
    EXPECT_EQ(bottom->getX(), 5);
    EXPECT_EQ(bottom->getY(), 5);

    // A child that changes its own size keeps the edges it was placed by.
    top->resize(30, 25);
    EXPECT_EQ(top->getX(), 5);
    EXPECT_EQ(top->getY() + top->height(), 140 - 5) << "placed by its top, it grows downward";
    Glob* corner = parent.addChild(box(20, 10), Glob::TopRight(0, 0));
    corner->resize(40, 30);
    EXPECT_EQ(corner->getX() + corner->width(), 260) << "placed by its right, it grows leftward";
    EXPECT_EQ(corner->getY() + corner->height(), 140);
    bottom->resize(40, 30);
    EXPECT_EQ(bottom->getX(), 5);
    EXPECT_EQ(bottom->getY(), 5);

    parent.setMinSize(100, 80);
    parent.resize(10, 10);
    EXPECT_EQ(parent.getDimensions(), XY<int>(100, 80)) << "a resize never goes below the minimum size";
}

TEST(Geometry, RemoveWidgetDetachesOrDestroys) {
    Glob parent(GlobCreationInfo(200, 100));
    ScrollBar* bar = static_cast<ScrollBar*>(
        parent.addChild(new ScrollBar(ScrollBar::InitArgs(0, 0, ScrollBar::Vertical)), Glob::TopRight(0, 0)));
    EXPECT_EQ(bar->width(), ScrollBar::thickness()) << "width 0 lets the bar take its thickness";
    Glob* kept = parent.addChild(box(10, 10), Glob::BottomLeft(0, 0));
    EXPECT_TRUE(parent.removeWidget(kept, false));
    EXPECT_TRUE(is_good_glob_ptr(kept));
    EXPECT_EQ(kept->parent(), nullptr);
    EXPECT_FALSE(parent.removeWidget(kept, true)) << "not a child any more";
    Glob* gone = bar;
    EXPECT_TRUE(parent.removeWidget(bar, true));
    EXPECT_EQ(bar, nullptr);
    EXPECT_FALSE(is_good_glob_ptr(gone));
    delete kept;
    EXPECT_TRUE(parent.children().empty());
}

TEST(Geometry, ScreenPositionAndLocalPointerAgree) {
    Glob root(GlobCreationInfo(120, 80));
    root.setPos(100, 200);
    Glob* child = root.addChild(box(40, 30), Glob::BottomLeft(10, 20));
    EXPECT_EQ(root.getPosition(), XY<int>(100, 200));
    EXPECT_EQ(child->getPosition(), XY<int>(110, 220));
    EXPECT_EQ(child->screenXYToGlobXY(XY<int>(115, 225)), XY<int>(5, 5));
}

TEST(Geometry, ANewPanelHasItsTitleRowBeforeItIsShown) {
    StandardPanel panel(StandardPanel::InitArgs(300, 200));
    EXPECT_GT(panel.titleRowHeight(), 0) << "a panel not yet on screen still has a title row";
    const TextBox* title = panel.getTitleWidget();
    ASSERT_TRUE(title);
    EXPECT_LE(title->getY() + title->height(), 200) << "the title stands inside the panel";
    EXPECT_GE(title->getY(), panel.getUserArea().y2) << "and above the user area";
}
