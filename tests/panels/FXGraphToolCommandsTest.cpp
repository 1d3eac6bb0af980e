// The panel's message table: the order of its tests, what each command does, and undo of the
// commands that edit the graph.
#include "host/Checkbox.h"
#include "host/CompoundEffectPanel.h"
#include "host/DropDownMenuButton.h"
#include "host/EffectInstance_opu4h5a4j.h"
#include "host/EffectMenuItems.h"
#include "host/EffectTemplatePanel.h"
#include "host/ImageButton.h"
#include "host/PushButton.h"
#include "host/UserMessages.h"
#include "host/UtrImporter.h"
#include "panels/DDVideoEffectsList.h"
#include "tests/panels/PanelTestSupport.h"

using namespace paneltest;

namespace {

IdStamp inputOf(const EditPtr& edit, const IdStamp& node, unsigned input) {
    Zk::Ptr<FXGraphNodeBase> n = edit->findNode(node);
    return n && n->getNumInputs() > input && n->input(input).node ? n->input(input).node->getId() : IdStamp();
}

} // namespace

TEST_F(PanelTest, MessagesThatMatchNothingAnswerZero) {
    FXGraphTool& p = open();
    EXPECT_EQ(p.handleMessageEvent("", nullptr), 0);
    EXPECT_EQ(p.handleMessageEvent(LightweightString<char>(), nullptr), 0);
    EXPECT_EQ(p.handleMessageEvent("undoBtn", nullptr), 0) << "undo goes by the sender, not the text";
    EXPECT_EQ(p.handleMessageEvent("Tidy", nullptr), 0);
    EXPECT_EQ(p.handleMessageEvent("autopos On", nullptr), 0);
    // An empty message from an image button still counts.
    EXPECT_EQ(p.handleMessageEvent("", p.undoButton()), 1);
}

TEST_F(PanelTest, AutoPosTakesOnlyOnExactly) {
    FXGraphTool& p = open();
    EXPECT_EQ(p.handleMessageEvent("AutoPos On", nullptr), 1);
    EXPECT_TRUE(p.autoPosition());
    EXPECT_TRUE(p.autoPositionCheckbox()->getValue());
    EXPECT_TRUE(prefs().getPreference(FXGraphTool::kAutoPositionPref, false));
    for (const char* off : {"AutoPos on", "AutoPos ", "AutoPos Onward"}) {
        p.handleMessageEvent("AutoPos On", nullptr);
        EXPECT_EQ(p.handleMessageEvent(off, nullptr), 1);
        EXPECT_FALSE(p.autoPosition()) << off;
    }
    // The checkbox sends its own message with its value.
    ASSERT_TRUE(p.autoPositionCheckbox()->click());
    EXPECT_TRUE(p.autoPosition());
    EXPECT_FALSE(p.tidyButton()->isActive());
    EXPECT_EQ(p.handleMessageEvent("TidyNodes", nullptr), 1);
}

TEST_F(PanelTest, ToggleTemplatesAnswersZeroAndKeepsTheViewSize) {
    FXGraphTool& p = open(800, 500);
    const int width = p.width();
    const int listWidth = p.templatesList()->width();
    const XY<int> viewSize = p.view()->getDimensions();
    EXPECT_EQ(p.handleMessageEvent("ToggleTemplates", p.toggleTemplatesButton()), 0);
    EXPECT_FALSE(p.templatesList());
    EXPECT_FALSE(p.showTemplates());
    EXPECT_FALSE(prefs().getPreference(FXGraphTool::kTemplatesPref, true));
    EXPECT_EQ(p.width(), width - listWidth - p.getBorder().getSize());
    EXPECT_EQ(p.view()->getDimensions(), viewSize) << "the panel shrinks by the list";

    ASSERT_TRUE(p.toggleTemplatesButton()->click());
    ASSERT_TRUE(p.templatesList());
    EXPECT_EQ(p.width(), width) << "toggling twice gives back the width";
    EXPECT_EQ(p.view()->getDimensions(), viewSize);
    EXPECT_TRUE(prefs().getPreference(FXGraphTool::kTemplatesPref, false));
}

TEST_F(PanelTest, ADockedPanelKeepsItsSizeAndTheViewTakesTheList) {
    Glob parent{GlobCreationInfo(900, 700)};
    auto* docked = new FXGraphTool(FXGraphTool::InitArgs(800, 500, vob.get()));
    parent.addChild(docked, Glob::BottomLeft(0, 0));
    const int listWidth = docked->templatesList()->width();
    const int viewWidth = docked->view()->width();
    docked->handleMessageEvent("ToggleTemplates", nullptr);
    EXPECT_EQ(docked->width(), 800);
    EXPECT_EQ(docked->view()->width(), viewWidth + listWidth + docked->getBorder().getSize());
    docked->handleMessageEvent("ToggleTemplates", nullptr);
    EXPECT_EQ(docked->width(), 800);
    EXPECT_EQ(docked->view()->width(), viewWidth);
}

TEST_F(PanelTest, OrientationMenuTurnsTheView) {
    FXGraphTool& p = open();
    p.orientationMenu()->choose(0);
    EXPECT_EQ(p.view()->getOrientation(), VidRouting::Orientations::LeftToRight);
    p.orientationMenu()->choose(1);
    EXPECT_EQ(p.view()->getOrientation(), VidRouting::Orientations::BottomToTop);
}

TEST_F(PanelTest, NodeMessagesWithoutAUsablePositionDoNothing) {
    FXGraphTool& p = open();
    const size_t roots = GlobManager::instance().roots().size();
    const unsigned changes = g.edit->changeCount();
    for (const char* msg :
         {"fxutrtile", "fxutr", "fxutrcycle_inputs nonsense", "fxutrremove_utr E9.9.9;-;1;0;1.0.11",
          "render_effect", "render_effect x;y", "popOuttile", "popOut"})
        EXPECT_EQ(p.handleMessageEvent(msg, nullptr), 1) << msg;
    EXPECT_EQ(GlobManager::instance().roots().size(), roots);
    EXPECT_EQ(g.edit->changeCount(), changes);
    EXPECT_EQ(vob->undoDepth(), 0u);
}

TEST_F(PanelTest, CycleInputsIsOneUndoableStep) {
    FXGraphTool& p = open();
    EXPECT_EQ(p.handleMessageEvent(String("fxutrcycle_inputs " + position(kMix, v1)), nullptr), 1);
    EXPECT_EQ(inputOf(g.edit, kMix, 0), kSource2);
    EXPECT_EQ(inputOf(g.edit, kMix, 1), kBlur);
    ASSERT_TRUE(vob->undoRequest());
    EXPECT_EQ(inputOf(g.edit, kMix, 0), kBlur);
    ASSERT_TRUE(vob->redoRequest());
    EXPECT_EQ(inputOf(g.edit, kMix, 0), kSource2);
    // The panel's redo and undo buttons go to the same history.
    ASSERT_TRUE(p.undoButton()->click());
    EXPECT_EQ(inputOf(g.edit, kMix, 0), kBlur);
    ASSERT_TRUE(p.redoButton()->click());
    EXPECT_EQ(inputOf(g.edit, kMix, 0), kSource2);
}

TEST_F(PanelTest, RemoveNodeOnlyOnTheRecordMachine) {
    FXGraphTool& p = open();
    EXPECT_EQ(p.handleMessageEvent(String("fxutrremove_utr " + position(kBlur, v1)), nullptr), 1);
    EXPECT_FALSE(g.edit->findNode(kBlur));
    EXPECT_FALSE(inputOf(g.edit, kMix, 0).valid());
    ASSERT_TRUE(vob->undoRequest());
    EXPECT_TRUE(g.edit->findNode(kBlur));
    EXPECT_EQ(inputOf(g.edit, kMix, 0), kBlur);

    Zk::Ptr<Vob> other = VobManager::instance().vobFor(g.edit, "elsewhere");
    other->makeRecordMachine();
    const size_t shown = messagesShown().size();
    EXPECT_EQ(p.handleMessageEvent(String("fxutrremove_utr " + position(kBlur, v1)), nullptr), 1);
    EXPECT_TRUE(g.edit->findNode(kBlur));
    ASSERT_EQ(messagesShown().size(), shown + 1);
    EXPECT_EQ(messagesShown().back().str(), L"This node can only be removed from the record machine");
}

TEST_F(PanelTest, RemoveTransitionLeavesACut) {
    FXGraphTool& p = open();
    EXPECT_EQ(p.handleMessageEvent(String("fxutrremove_xfade " + position(kDissolve, v2)), nullptr), 1);
    const auto& events = g.edit->chan(v2).cel->events();
    ASSERT_EQ(events.size(), 2u);
    EXPECT_EQ(events[0].node->getId(), kSource1);
    EXPECT_EQ(events[1].node->getId(), kSource2);
    EXPECT_DOUBLE_EQ(events[0].end, 5.0);
    EXPECT_DOUBLE_EQ(events[1].start, 5.0);
    EXPECT_FALSE(g.edit->findNode(kDissolve));
    ASSERT_TRUE(vob->undoRequest());
    ASSERT_EQ(g.edit->chan(v2).cel->events().size(), 1u);
    EXPECT_EQ(g.edit->chan(v2).cel->events()[0].node->getId(), kDissolve);
    // Not on a transition: nothing changes.
    p.handleMessageEvent(String("fxutrremove_xfade " + position(kMix, v1)), nullptr);
    EXPECT_EQ(g.edit->chan(v1).cel->events().size(), 1u);
}

TEST_F(PanelTest, AnyOtherWordOpensTheEffectsParameters) {
    FXGraphTool& p = open();
    const int before = CompoundEffectPanel::openCount();
    EXPECT_EQ(p.handleMessageEvent(String("fxutrwhatever " + position(kBlur, v1)), nullptr), 1);
    EXPECT_EQ(CompoundEffectPanel::openCount(), before + 1);
    EXPECT_EQ(p.handleMessageEvent(String("fxutrparams " + position(kBlur, v1)), nullptr), 1);
    EXPECT_EQ(CompoundEffectPanel::openCount(), before + 1) << "the same effect's window is raised";
    p.handleMessageEvent(String("fxutrparams " + position(kMix, v1)), nullptr);
    EXPECT_EQ(CompoundEffectPanel::openCount(), before + 2);
}

TEST_F(PanelTest, TileOpensTheTemplatePaneOnTheNode) {
    FXGraphTool& p = open();
    EXPECT_EQ(p.handleMessageEvent(String("fxutrtile " + position(kBlur, v1)), nullptr), 1);
    std::vector<Glob*> panes = rootsOfType("EffectTemplatePanel");
    ASSERT_EQ(panes.size(), 1u);
    auto* pane = static_cast<EffectTemplatePanel*>(panes[0]);
    ASSERT_TRUE(pane->apply(L"Sepia"));
    Zk::Ptr<FXGraphNodeBase> head = g.edit->findNode(kMix)->input(0).node;
    ASSERT_TRUE(head);
    EXPECT_EQ(head->tagTypeId().str(), "PixShader:Colour:sepia.fx");
    EXPECT_EQ(head->input(0).node->getId(), kBlur);
    ASSERT_TRUE(vob->undoRequest());
    EXPECT_EQ(inputOf(g.edit, kMix, 0), kBlur);
    EXPECT_FALSE(pane->apply(L"No such template"));
}

TEST_F(PanelTest, UnrenderMakesAnUndoStep) {
    FXGraphTool& p = open();
    EditGraphIterator it(g.edit, v1, 2.0, 0);
    EXPECT_EQ(p.handleMessageEvent(String("render_effect ") + it.asString(), nullptr), 1);
    EXPECT_EQ(vob->undoDepth(), 1u);
}

TEST_F(PanelTest, ImportRenderPutsAPictureInTheEffectsPlace) {
    FXGraphTool& p = open();
    EXPECT_EQ(p.handleMessageEvent(String("fxutrimport_render " + position(kBlur, v1)), nullptr), 1);
    EXPECT_EQ(rootsOfType("StandardPanel").size(), 1u) << "the importer's window";
    EditGraphIterator it(String(position(kBlur, v1)));
    ASSERT_TRUE(UtrImporter::importRender(vob.get(), it));
    Zk::Ptr<FXGraphNodeBase> image = g.edit->findNode(kMix)->input(0).node;
    ASSERT_TRUE(image);
    EXPECT_EQ(image->tagTypeId().str(), "Import:Image");
    ASSERT_TRUE(vob->undoRequest());
    EXPECT_EQ(inputOf(g.edit, kMix, 0), kBlur);
}

TEST_F(PanelTest, PopOutsDifferOnlyInWhatTheyOpen) {
    FXGraphTool& p = open();
    EXPECT_EQ(p.handleMessageEvent(String("popOuttile " + position(kSource2, v1)), nullptr), 1);
    EXPECT_EQ(rootsOfType("TileViewer").size(), 1u);
    EXPECT_EQ(rootsOfType("FloatingLogMetadataPanel").size(), 0u);
    EXPECT_EQ(p.handleMessageEvent(String("popOutlog " + position(kSource2, v1)), nullptr), 1);
    EXPECT_EQ(rootsOfType("TileViewer").size(), 1u);
    EXPECT_EQ(rootsOfType("FloatingLogMetadataPanel").size(), 1u);
}

TEST_F(PanelTest, NodeMenuItemsReachThePanel) {
    FXGraphTool& p = open();
    EditGraphIterator it(g.edit, v1, 2.0, 0);
    ASSERT_TRUE(it.search(kMix));
    std::vector<MenuItem> items = EffectMenuItems::getItemsForComponent(vob.get(), it, 799);
    std::vector<std::wstring> labels;
    for (const MenuItem& m : items)
        labels.push_back(m.label().resolve().str());
    EXPECT_EQ(labels, (std::vector<std::wstring>{L"Switch off", L"Parameters..", L"Templates..",
                                                 L"Cycle inputs", L"Render afresh", L"Import render..",
                                                 L"Pop out viewer", L"Pop out log entry", L"Remove"}));
    EXPECT_EQ(items[3].callback().target(), static_cast<EventHandler*>(&p));
    EXPECT_EQ(items[3].choose(p.view()), 1);
    EXPECT_EQ(inputOf(g.edit, kMix, 0), kSource2);
    EXPECT_EQ(items[8].callback().message().str().rfind("fxutrremove_utr ", 0), 0u);
    EXPECT_EQ(items[0].choose(p.view()), 1) << "switching stays a command of its own";
    EXPECT_FALSE(Zk::dynamicCast<EffectInstance_opu4h5a4j>(g.edit->findNode(kMix))->isEnabled());

    EditGraphIterator at(g.edit, v2, 2.0, 0);
    std::vector<MenuItem> onTransition = EffectMenuItems::getItemsForComponent(vob.get(), at, 799);
    bool remove = false;
    for (const MenuItem& m : onTransition)
        remove = remove || m.label().resolve() == L"Remove transition";
    EXPECT_TRUE(remove);
}
