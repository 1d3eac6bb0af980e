// The panel's construction and layout: its parts, geometry, title and preferences.
#include "panels/FXGraphTool.h"

#include "host/Checkbox.h"
#include "host/DropDownMenuButton.h"
#include "host/ImageButton.h"
#include "host/PersistableXY.h"
#include "host/PushButton.h"
#include "host/TextBox.h"
#include "host/UifStd.h"
#include "panels/DDVideoEffectsList.h"
#include "tests/panels/PanelTestSupport.h"

using namespace paneltest;

namespace {

XY<int> defaultSize() {
    return XY<int>(36 * UifStd::getRowHeight(), 25 * UifStd::getRowHeight());
}

} // namespace

TEST_F(PanelTest, BuiltWithItsPartsInPlace) {
    FXGraphTool& p = open();
    EXPECT_EQ(p.getDimensions(), defaultSize()) << "zero dimensions take calcSize";
    ASSERT_TRUE(p.view() && p.templatesList() && p.tidyButton() && p.undoButton() && p.redoButton() &&
                p.orientationMenu() && p.autoPositionCheckbox() && p.toggleTemplatesButton());
    EXPECT_EQ(p.getTitleText().str(), L"Effect graph : Panel test");
    EXPECT_EQ(p.getUITypeString(), std::string("FXGraphTool"));
    EXPECT_STREQ(p.idstring(), "FXGraphTool");
    EXPECT_EQ(p.getMinSize(), XY<int>(470, 290));
    EXPECT_TRUE(p.isResizable() && p.isMovable() && p.isPersistable());

    // The toolbar strip under the user area; the view at its top right, the list at its top left.
    const Zk::Box<int> ua = p.getUserArea();
    EXPECT_EQ(ua.y1, p.StandardPanel::getUserArea().y1 + UifStd::getRowHeight() + UifStd::getWidgetGap());
    EXPECT_EQ(p.view()->getX() + p.view()->width(), ua.x2);
    EXPECT_EQ(p.view()->getY() + p.view()->height(), ua.y2);
    EXPECT_EQ(p.view()->height(), ua.height());
    EXPECT_EQ(p.templatesList()->getX(), ua.x1);
    EXPECT_EQ(p.templatesList()->width(), 13 * UifStd::getRowHeight());
    EXPECT_EQ(p.view()->width(), ua.width() - p.getBorder().getSize() - p.templatesList()->width());
    EXPECT_LT(p.autoPositionCheckbox()->getX(), p.tidyButton()->getX());
    EXPECT_LT(p.tidyButton()->getX(), p.orientationMenu()->getX());
    EXPECT_LT(p.undoButton()->getX(), p.redoButton()->getX());
    EXPECT_LT(p.tidyButton()->getY() + p.tidyButton()->height(), ua.y1 + 1);
    // The title stands right of the template button in the title row.
    EXPECT_GT(p.getTitleWidget()->getX(), p.toggleTemplatesButton()->getX());
    EXPECT_EQ(p.undoButton()->getContextString().resolve().str(), L"Undo the last change");
    EXPECT_EQ(p.redoButton()->getContextString().resolve().str(), L"Redo the last change undone");
    EXPECT_EQ(p.orientationMenu()->getSelectedItem().index, 1) << "the view lays out bottom to top";
    EXPECT_EQ(p.view()->getViewZoomValue(), 0.75) << "the zoom preference's default";
}

TEST_F(PanelTest, GeometryFollowsResizeAndSavedSize) {
    prefs().setPreference(FXGraphTool::kSizePref, "(700,480)");
    EXPECT_EQ(FXGraphTool::calcSize(), XY<int>(700, 480));
    FXGraphTool& p = open(640, 400);
    EXPECT_EQ(p.getDimensions(), XY<int>(640, 400)) << "a panel with a size keeps it";
    p.resize(800, 500);
    const Zk::Box<int> ua = p.getUserArea();
    EXPECT_EQ(p.view()->getDimensions(), p.calcMainViewSize());
    EXPECT_EQ(p.templatesList()->height(), ua.height());
    EXPECT_EQ(p.view()->getY() + p.view()->height(), ua.y2);
}

TEST_F(PanelTest, HiddenTemplatesGiveTheViewTheWholeWidth) {
    prefs().setPreference(FXGraphTool::kTemplatesPref, false);
    FXGraphTool& p = open();
    EXPECT_FALSE(p.templatesList());
    for (Glob* c : p.children())
        EXPECT_FALSE(dynamic_cast<DDVideoEffectsList*>(c)) << "no list at all";
    EXPECT_EQ(p.view()->width(), p.getUserArea().width());
}

TEST_F(PanelTest, AutomaticPositioningAndTheTidyButton) {
    prefs().setPreference(FXGraphTool::kAutoPositionPref, true);
    FXGraphTool& p = open();
    EXPECT_FALSE(p.view()->getManualPosMode());
    EXPECT_FALSE(p.tidyButton()->isActive()) << "nothing to tidy while the layout is automatic";
    EXPECT_TRUE(p.autoPositionCheckbox()->getValue());

    EXPECT_EQ(p.handleMessageEvent("AutoPos Off", nullptr), 1);
    EXPECT_TRUE(p.view()->getManualPosMode());
    EXPECT_TRUE(p.tidyButton()->isActive());
    EXPECT_FALSE(prefs().getPreference(FXGraphTool::kAutoPositionPref, true));
}

TEST_F(PanelTest, WheelZoomStepsAreInverse) {
    prefs().setPreference(FXGraphTool::kZoomPref, 0.5);
    FXGraphTool& p = open();
    EXPECT_DOUBLE_EQ(p.view()->getViewZoomValue(), 0.5);
    EXPECT_EQ(p.handleZoom(-1), 1);
    EXPECT_DOUBLE_EQ(p.view()->getViewZoomValue(), 0.375);
    p.handleZoom(1);
    EXPECT_NEAR(p.view()->getViewZoomValue(), 0.5, 1e-12);
}

TEST_F(PanelTest, NodeSizeComesFromTheViewScale) {
    FXGraphTool& p = open();
    Glob other{GlobCreationInfo(10, 10)};
    EXPECT_EQ(FXGraphTool::getNodeSize(&other), XY<double>(0.0, 0.0));
    EXPECT_EQ(FXGraphTool::getNodeSize(nullptr), XY<double>(0.0, 0.0));
    const int h = static_cast<int>(p.view()->physicalScale() * 0.125);
    EXPECT_EQ(FXGraphTool::getNodeSize(&p), XY<double>(static_cast<int>(h * 1.25), h));
}

TEST_F(PanelTest, FloatingPanelWritesItsPreferencesDockedOneDoesNot) {
    {
        Glob parent{GlobCreationInfo(900, 700)};
        auto* docked = new FXGraphTool(FXGraphTool::InitArgs(600, 400, vob.get()));
        parent.addChild(docked, Glob::BottomLeft(0, 0));
        // Made before it was docked, it was a panel of its own for a moment.
        prefs().removePreference(FXGraphTool::kPositionPref);
        docked->resize(620, 420);
        docked->handleZoom(1);
    }
    for (const char* key : {FXGraphTool::kSizePref, FXGraphTool::kZoomPref, FXGraphTool::kPositionPref})
        EXPECT_FALSE(prefs().hasPreference(key)) << key;

    FXGraphTool& p = open(600, 400);
    EXPECT_TRUE(prefs().hasPreference(FXGraphTool::kPositionPref)) << "a resize writes the position";
    p.handleZoom(-1);
    const double zoom = p.view()->getViewZoomValue();
    delete panel;
    panel = nullptr;
    EXPECT_EQ(prefs().getPreference(FXGraphTool::kSizePref, String()).str(), "(600,400)");
    EXPECT_DOUBLE_EQ(prefs().getPreference(FXGraphTool::kZoomPref, 0.0), zoom);
    EXPECT_TRUE(FXGraphTool::allPanels().empty());
}

TEST_F(PanelTest, TitleFollowsTheEditsName) {
    FXGraphTool& p = open();
    g.edit->setName(L"Renamed");
    vob->setChangeDescription(EditModifications(EditModification(static_cast<EditModificationType>(3), 0)),
                              VobModification());
    EXPECT_EQ(p.getTitleText().str(), L"Effect graph : Renamed");
    g.edit->setName(L"Quietly renamed");
    vob->setChangeDescription(EditModifications(EditModification(kModStructure, 0)), VobModification());
    EXPECT_EQ(p.getTitleText().str(), L"Effect graph : Renamed") << "other changes leave the title";
    vob->setChangeDescription(EditModifications(), VobModification(2));
    EXPECT_EQ(p.getTitleText().str(), L"Effect graph : Quietly renamed");
}
