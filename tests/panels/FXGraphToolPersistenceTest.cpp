// Panels coming and going: one per Vob, the saved record and its keys, restoring through make,
// and whole screen layouts, damaged ones included.
#include <fstream>
#include <sstream>

#include "host/ScreenLayout.h"
#include "tests/panels/PanelTestSupport.h"

using namespace paneltest;

namespace {

std::vector<std::string> keysOf(const configb& c) {
    std::vector<std::string> keys;
    std::istringstream lines(c.toText().str());
    for (std::string line; std::getline(lines, line);)
        keys.push_back(line.substr(0, line.find('=')));
    return keys;
}

FXGraphTool* restore(const configb& c) {
    GlobCreationInfo info;
    info.config = c;
    c.in("W", info.width);
    c.in("H", info.height);
    return static_cast<FXGraphTool*>(FXGraphTool::make(&info));
}

} // namespace

TEST_F(PanelTest, DumpWritesTheKeysInOrder) {
    FXGraphTool& p = open(600, 400);
    p.view()->setViewCentre(0.25, -0.5);
    configb c;
    p.dump(c);
    EXPECT_EQ(keysOf(c),
              (std::vector<std::string>{"TYPE", "X", "Y", "W", "H", "EDIT_COOKIE", "GROUPID", "CURRENT_TIME",
                                        "VIEW_CX", "VIEW_CY", "VIEW_ZOOM", "AUTO_POSITION"}));
    Cookie cookie;
    String group;
    double time = 0, zoom = 0;
    int automatic = -1;
    EXPECT_EQ(c.in("EDIT_COOKIE", cookie), 0);
    EXPECT_EQ(cookie, kEditCookie);
    c.in("GROUPID", group);
    EXPECT_EQ(group.str(), "panel");
    c.in("CURRENT_TIME", time);
    EXPECT_DOUBLE_EQ(time, 2.0);
    c.in("VIEW_ZOOM", zoom);
    EXPECT_DOUBLE_EQ(zoom, p.view()->getViewZoomValue());
    c.in("AUTO_POSITION", automatic);
    EXPECT_EQ(automatic, 0);
}

TEST_F(PanelTest, RestoredPanelJoinsItsVobWithTheSavedZoom) {
    FXGraphTool& p = open(640, 420);
    p.handleZoom(-1);
    p.view()->setViewCentre(0.125, 0.0);
    configb c;
    p.dump(c);
    const double zoom = p.view()->getViewZoomValue();
    delete panel;
    panel = nullptr;
    vob->storeCurrentTime(3.5);

    std::unique_ptr<FXGraphTool> back(restore(c));
    EXPECT_EQ(back->vob(), vob.get()) << "an open Vob of the group is joined";
    EXPECT_DOUBLE_EQ(vob->getCurrentTime(1), 3.5) << "and keeps its time";
    EXPECT_EQ(back->getDimensions(), XY<int>(640, 420));
    EXPECT_DOUBLE_EQ(back->view()->getViewZoomValue(), zoom);
    double cx = 1e99;
    c.in("VIEW_CX", cx);
    EXPECT_DOUBLE_EQ(FXGraphTool::savedCentreX(), cx) << "the saved centre is kept, not applied";
}

TEST_F(PanelTest, LoadChoosesTheGroupAndMakesAVobWhenNoneIsOpen) {
    configb both;
    both.set("EDIT_COOKIE", kEditCookie);
    both.set("VOB_GROUP_ID", 5u);
    both.set("GROUPID", "panel");
    both.set("CURRENT_TIME", 7.25);
    std::unique_ptr<FXGraphTool> a(restore(both));
    ASSERT_TRUE(a->vob());
    EXPECT_EQ(a->vob()->group().str(), "5") << "the old integer group wins over the string";
    EXPECT_DOUBLE_EQ(a->vob()->getCurrentTime(1), 7.25) << "a new Vob takes the saved time";
    EXPECT_EQ(a->getDimensions(), FXGraphTool::calcSize());

    FXGraphTool::setStartZoom(0.4);
    configb neither;
    neither.set("EDIT_COOKIE", kEditCookie);
    std::unique_ptr<FXGraphTool> b(restore(neither));
    ASSERT_TRUE(b->vob());
    EXPECT_EQ(b->vob()->group().str(), "") << "the empty group";
    EXPECT_DOUBLE_EQ(b->view()->getViewZoomValue(), 0.4) << "no saved zoom: the process's start zoom";

    configb unknownEdit;
    unknownEdit.set("EDIT_COOKIE", Cookie(Cookie::EditKind, IdStamp(9, 9, 9)));
    unknownEdit.set("GROUPID", "nowhere");
    std::unique_ptr<FXGraphTool> c(restore(unknownEdit));
    EXPECT_FALSE(c->vob()) << "an edit that isn't open leaves the panel without a Vob";
    EXPECT_TRUE(c->view());
}

TEST_F(PanelTest, OnePanelPerVobToggledByCreatePanelFor) {
    FXGraphTool::createPanelFor(vob.get());
    ASSERT_EQ(FXGraphTool::allPanels().size(), 1u);
    auto* made = dynamic_cast<FXGraphTool*>(FXGraphTool::allPanels().first());
    ASSERT_TRUE(made);
    EXPECT_TRUE(GlobManager::instance().owns(made));
    EXPECT_EQ(made->getPosition(), glib_getPosForWindow(made->width(), made->height()))
        << "no saved position: centred";

    FXGraphTool::createPanelFor(vob.get());
    GlobManager::instance().processDeletions();
    EXPECT_TRUE(FXGraphTool::allPanels().empty()) << "a second call closes the panel";
    FXGraphTool::show();
    EXPECT_EQ(FXGraphTool::allPanels().size(), 1u) << "a third opens one again";
}

TEST_F(PanelTest, CreatePanelForAPositionRaisesAndMovesThePlayhead) {
    g.blackEvent(v1, 10, 20);
    EditGraphIterator first(g.edit, v1, 2.0, 0);
    FXGraphTool::createPanelFor(vob.get(), first);
    ASSERT_EQ(FXGraphTool::allPanels().size(), 1u);
    vob->storeCurrentTime(15.0);
    EditGraphIterator again(g.edit, v1, 2.0, 0);
    FXGraphTool::createPanelFor(vob.get(), again);
    EXPECT_EQ(FXGraphTool::allPanels().size(), 1u) << "raised, not made again";
    EXPECT_DOUBLE_EQ(vob->getCurrentTime(1), 0.0) << "the playhead goes into the shot";
    EditGraphIterator invalid(0);
    FXGraphTool::createPanelFor(vob.get(), invalid);
    EXPECT_EQ(FXGraphTool::allPanels().size(), 1u);
}

TEST_F(PanelTest, SavedPositionPlacesTheNextPanel) {
    prefs().setPreference(FXGraphTool::kSizePref, "(480,300)");
    prefs().setPreference(FXGraphTool::kPositionPref, XY<int>(40, 30));
    FXGraphTool::createPanelFor(vob.get());
    auto* made = dynamic_cast<FXGraphTool*>(FXGraphTool::allPanels().first());
    ASSERT_TRUE(made);
    EXPECT_EQ(made->getPosition(), XY<int>(40, 30));
}

struct LayoutTest : PanelTest {
    void SetUp() override {
        PanelTest::SetUp();
        ScreenLayout::registerMaker(FXGraphTool::getUITypeString(), FXGraphTool::make);
    }
    void TearDown() override {
        ScreenLayout::unregisterMaker(FXGraphTool::getUITypeString());
        PanelTest::TearDown();
    }
};

TEST_F(LayoutTest, ALayoutRoundTripsThroughItsFile) {
    FXGraphTool::createPanelFor(vob.get());
    auto* made = dynamic_cast<FXGraphTool*>(FXGraphTool::allPanels().first());
    ASSERT_TRUE(made);
    made->setPos(120, 80);
    made->resize(700, 450);
    made->handleZoom(-1);
    const double zoom = made->view()->getViewZoomValue();
    const String path = EditorPreferences::configDir() + "/layout-roundtrip.txt";
    String error;
    ASSERT_TRUE(ScreenLayout::save(path, error)) << error.c_str();
    GlobManager::instance().destroyAll();
    ASSERT_TRUE(FXGraphTool::allPanels().empty());

    std::vector<configb> windows;
    ASSERT_TRUE(ScreenLayout::read(path, windows, error)) << error.c_str();
    ASSERT_EQ(windows.size(), 1u);
    std::vector<Glob*> back = ScreenLayout::restore(windows);
    ASSERT_EQ(back.size(), 1u);
    auto* tool = dynamic_cast<FXGraphTool*>(back[0]);
    ASSERT_TRUE(tool);
    EXPECT_EQ(tool->vob(), vob.get());
    EXPECT_EQ(tool->getPosition(), XY<int>(120, 80));
    EXPECT_EQ(tool->getDimensions(), XY<int>(700, 450));
    EXPECT_DOUBLE_EQ(tool->view()->getViewZoomValue(), zoom);
    EXPECT_TRUE(GlobManager::instance().owns(tool));
}

TEST_F(LayoutTest, DamagedLayoutsAreRefusedWhole) {
    const std::string dir = std::string(NODEDESK_SOURCE_DIR) + "/tests/data/malformed/";
    for (const char* name :
         {"layout-no-header.txt", "layout-bad-record.txt", "layout-no-type.txt", "layout-unknown-type.txt",
          "layout-outside-section.txt", "layout-huge-size.txt", "layout-truncated-string.txt"}) {
        std::vector<configb> windows(1);
        String error;
        EXPECT_FALSE(ScreenLayout::read(String(dir + name), windows, error)) << name;
        EXPECT_TRUE(windows.empty()) << name << ": nothing half read";
        EXPECT_FALSE(error.empty()) << name;
        EXPECT_EQ(error.view().find('\n'), std::string_view::npos) << name << ": one line";
    }
    // The good windows before a bad one are not made either.
    std::vector<configb> windows;
    String error;
    EXPECT_FALSE(ScreenLayout::read(String(dir + "layout-bad-record.txt"), windows, error));
    EXPECT_TRUE(ScreenLayout::restore(windows).empty());
    EXPECT_TRUE(FXGraphTool::allPanels().empty());
    // A missing file is an empty layout.
    EXPECT_TRUE(ScreenLayout::read(String(dir + "no-such-layout.txt"), windows, error));
    EXPECT_TRUE(windows.empty());
}
