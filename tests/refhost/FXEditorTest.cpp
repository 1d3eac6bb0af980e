// Wiring rules of the reference editor, and the removal of nodes.
#include "host/FXEditor.h"

#include <gtest/gtest.h>

#include "host/Resources.h"
#include "host/UserMessages.h"
#include "host/Vob.h"
#include "host/VobManager.h"
#include "tests/support/GraphBuilder.h"

namespace {
EditGraphIterator at(const GraphBuilder& g, const Zk::Ptr<FXGraphNodeBase>& n) {
    return FXEditor::getIteratorFor(g.edit, n->getId(), 1.0, 9);
}
} // namespace

TEST(FXEditor, ConnectionsAreAnnouncedAndDisconnectionKeepsTheSlot) {
    GraphBuilder g;
    int v = g.channel(L"V1");
    auto root = g.effect(1, 2);
    g.graphEvent(v, 0, 10, root);
    auto loose = g.effect(4, 1);
    FXEditor ed(g.edit);

    g.edit->takeAnnouncedModifications();
    EditGraphIterator to = at(g, root);
    ASSERT_TRUE(ed.connectNodes(to, 1, at(g, loose), true));
    EXPECT_EQ(root->input(1).node, loose);
    EXPECT_TRUE(root->input(1).track.valid()) << "a link travels on an internal track";
    EXPECT_TRUE(g.edit->takeAnnouncedModifications().includes(kModEffectGraph, 5));

    ASSERT_TRUE(ed.disconnectNodes(to, 1, false));
    EXPECT_FALSE(root->input(1).node);
    EXPECT_TRUE(root->input(1).track.valid()) << "the slot keeps its place";
    EXPECT_TRUE(g.edit->takeAnnouncedModifications().empty()) << "announce false records silently";
    EXPECT_FALSE(ed.disconnectNodes(to, 1, true)) << "nothing left to disconnect";
}

TEST(FXEditor, DestroyNodeOpensLinksAndHandsTheEventOn) {
    GraphBuilder g;
    int v = g.channel(L"V1");
    auto root = g.effect(1, 1), mid = g.effect(2, 1);
    auto src = g.material(3);
    GraphBuilder::link(root, 0, mid);
    GraphBuilder::link(mid, 0, src);
    g.graphEvent(v, 0, 10, root);

    EditGraphIterator it = at(g, src);
    EXPECT_FALSE(FXEditor::destroyNode(it, true)) << "a material stands for its cel";
    it = at(g, mid);
    ASSERT_TRUE(FXEditor::destroyNode(it, true));
    EXPECT_FALSE(root->input(0).node);
    EXPECT_FALSE(g.edit->findNode(mid->getId()));
    std::vector<IdStamp> orphans;
    FXEditor::findOrphanedComponents(g.edit, 1.0, orphans);
    ASSERT_EQ(orphans.size(), 1u) << "what hung from the removed node is orphaned";
    EXPECT_EQ(orphans[0], src->getId());

    it = at(g, root);
    ASSERT_TRUE(FXEditor::destroyNode(it, false));
    EXPECT_EQ(g.edit->eventAt(v, 1.0), -1) << "a root without input 0 leaves its event black";
}

TEST(FXEditor, CycleInputsRotatesTheLinks) {
    GraphBuilder g;
    int v = g.channel(L"V1");
    auto root = g.effect(1, 3);
    auto a = g.material(2), b = g.material(3);
    GraphBuilder::link(root, 0, a);
    GraphBuilder::link(root, 1, b);
    g.graphEvent(v, 0, 10, root);
    FXEditor ed(g.edit);
    EditGraphIterator it = at(g, root);
    ASSERT_TRUE(ed.cycleInputs(it, true));
    EXPECT_EQ(root->input(0).node, b);
    EXPECT_FALSE(root->input(1).node);
    EXPECT_EQ(root->input(2).node, a);
}

TEST(FXEditor, EachRefusalHasItsMessageAndAReadOnlyEditRefusesEveryChange) {
    GraphBuilder g;
    int v = g.channel(L"V1");
    auto root = g.effect(1, 2), mid = g.effect(2, 1);
    auto src = g.material(3);
    auto sound = g.effect(4, 1);
    sound->setChanType(kAudioChan);
    auto dissolve = g.effect(5, 2, "Transition:Dissolve");
    auto loose = g.effect(6, 1);
    GraphBuilder::link(root, 0, mid);
    GraphBuilder::link(mid, 0, src);
    g.graphEvent(v, 0, 10, root);
    FXEditor ed(g.edit);

    EXPECT_EQ(ed.connectionRefusal(at(g, mid), 0, at(g, root)), FXEditor::RefusedLoop);
    EXPECT_FALSE(ed.canConnectNodes(at(g, mid), 0, at(g, mid))) << "a node into itself";
    EXPECT_EQ(ed.connectionRefusal(at(g, root), 1, at(g, sound)), FXEditor::RefusedMediaType);
    EXPECT_EQ(ed.connectionRefusal(at(g, root), 2, at(g, loose)), FXEditor::RefusedNoSuchInput);
    EXPECT_EQ(ed.connectionRefusal(at(g, dissolve), 0, at(g, loose)), FXEditor::RefusedTransition);
    EXPECT_EQ(ed.connectionRefusal(at(g, src), 0, at(g, loose)), FXEditor::RefusedNotAnEffect);
    EXPECT_EQ(ed.connectionRefusal(at(g, root), 1, at(g, loose)), FXEditor::RefusedNone);

    const size_t shown = messagesShown().size();
    EXPECT_FALSE(ed.canConnectNodes(at(g, mid), 0, at(g, root)));
    EXPECT_EQ(messagesShown().size(), shown) << "the question is silent";
    EditGraphIterator to = at(g, mid);
    EXPECT_FALSE(ed.connectNodes(to, 0, at(g, root), true));
    ASSERT_EQ(messagesShown().size(), shown + 1);
    EXPECT_EQ(messagesShown().back(), resourceStrW(FXEditor::RefusedLoop));
    EXPECT_FALSE(messagesShown().back().empty()) << "the text comes from the resources";
    EXPECT_FALSE(ed.connectNodes(to, 0, at(g, root), false));
    EXPECT_EQ(messagesShown().size(), shown + 1) << "a silent call shows nothing";
    EditGraphIterator d = at(g, dissolve);
    EXPECT_FALSE(ed.connectNodes(d, 1, at(g, loose), false)) << "a transition's inputs are not open";
    EXPECT_FALSE(dissolve->input(1).node);
    FXEditor noEdit{EditPtr()};
    EditGraphIterator r0 = at(g, root);
    EXPECT_FALSE(noEdit.connectNodes(r0, 1, at(g, loose), true)) << "an editor without an edit refuses";
    EXPECT_FALSE(root->input(1).node);

    Zk::Ptr<Vob> vob = VobManager::instance().vobFor(g.edit, "read-only-rules");
    vob->setReadOnly(true);
    EXPECT_EQ(ed.connectionRefusal(at(g, root), 1, at(g, loose)), FXEditor::RefusedReadOnly);
    EditGraphIterator r = at(g, root);
    EXPECT_FALSE(ed.connectNodes(r, 1, at(g, loose), true));
    EXPECT_FALSE(ed.disconnectNodes(r, 0, true));
    EditGraphIterator m = at(g, mid);
    EXPECT_FALSE(FXEditor::destroyNode(m, true));
    EXPECT_EQ(root->input(0).node, mid) << "nothing changed";
    EXPECT_EQ(messagesShown().back(), resourceStrW(FXEditor::RefusedReadOnly));
    vob->setReadOnly(false);
    EXPECT_TRUE(ed.disconnectNodes(r, 0, true));
    VobManager::instance().reset();
}
