// Vobs: publishing to clients, undo steps grouped by EasyBackup, do -> undo -> redo.
#include "host/Vob.h"

#include <gtest/gtest.h>

#include "host/FXEditor.h"
#include "host/VobClient.h"
#include "host/VobManager.h"
#include "tests/support/GraphBuilder.h"

namespace {

struct Listener : VobClient {
    void handleModifications(const EditModifications& mods, const VobModification& vm) override {
        heard.push_back(mods);
        flags.push_back(vm.flags);
        VobClient::handleModifications(mods, vm);
    }
    std::vector<EditModifications> heard;
    std::vector<unsigned> flags;
};

struct VobFixture : ::testing::Test {
    void SetUp() override {
        VobManager::instance().reset();
        v = g.channel(L"V1");
        root = g.effect(1, 2);
        a = g.material(2);
        b = g.material(3);
        GraphBuilder::link(root, 0, a);
        g.graphEvent(v, 0, 10, root);
        g.edit->setCookie(Cookie(Cookie::EditKind, IdStamp(8, 0, 1)));
        vob = VobManager::instance().vobFor(g.edit, "main");
        VobManager::instance().open(&listener, vob);
    }
    void TearDown() override {
        VobManager::instance().close(&listener, true);
        VobManager::instance().reset();
    }
    GraphBuilder g;
    int v = 0;
    Zk::Ptr<EffectInstance_opu4h5a4j> root;
    Zk::Ptr<MaterialUsageNode> a, b;
    Zk::Ptr<Vob> vob;
    Listener listener;
};

} // namespace

TEST_F(VobFixture, AnnouncedChangesReachClientsAtOnceOrWhenTheStepCloses) {
    g.edit->addModification(EditModifications(EditModification(11)), true);
    ASSERT_EQ(listener.heard.size(), 1u) << "no undo step open: published at once";
    EXPECT_TRUE(listener.heard[0].includes(18, 11));

    {
        EasyBackup step(g.edit);
        g.edit->addModification(EditModifications(EditModification(5)), true);
        {
            EasyBackup inner(g.edit);
            g.edit->addModification(EditModifications(EditModification(4)), true);
        }
        EXPECT_EQ(listener.heard.size(), 1u) << "held until the outermost step closes";
    }
    ASSERT_EQ(listener.heard.size(), 2u);
    EXPECT_TRUE(listener.heard[1].includes(18, 5));
    EXPECT_TRUE(listener.heard[1].includes(18, 4)) << "one publication for the whole step";

    vob->setCurrentTime(4.0);
    EXPECT_EQ(listener.flags.back(), 0x2u);
    EXPECT_EQ(vob->getCurrentTime(1), 4.0);
    vob->storeCurrentTime(6.0);
    EXPECT_EQ(listener.flags.size(), 3u) << "storing the time tells no one";
}

TEST_F(VobFixture, DisconnectUndoRedoRoundTrip) {
    FXEditor ed(g.edit);
    {
        EasyBackup step(g.edit);
        EditGraphIterator it = FXEditor::getIteratorFor(g.edit, root->getId(), 1.0, 9);
        ASSERT_TRUE(ed.disconnectNodes(it, 0, true));
    }
    auto rootNow = [&] { return g.edit->findNode(IdStamp(1, 0, 1)); };
    EXPECT_FALSE(rootNow()->input(0).node) << "done";
    EXPECT_EQ(vob->undoDepth(), 1u);

    ASSERT_TRUE(vob->undoRequest());
    ASSERT_TRUE(rootNow()->input(0).node) << "undone";
    EXPECT_EQ(rootNow()->input(0).node->getId(), a->getId());
    EXPECT_TRUE(listener.heard.back().includes(9, 0)) << "a restore is published as type 9";
    EditGraphIterator walk(g.edit, v, 1.0, 0);
    ASSERT_TRUE(walk.moveToInput(0)) << "the restored graph is walkable from its channel";

    ASSERT_TRUE(vob->redoRequest());
    EXPECT_FALSE(rootNow()->input(0).node) << "redone";
    EXPECT_FALSE(vob->redoRequest()) << "nothing more to redo";
    EXPECT_TRUE(vob->undoRequest());
    EXPECT_FALSE(vob->undoRequest()) << "the history has one step";
}

TEST_F(VobFixture, ClientsGroupsAndUnjoinedCuts) {
    Listener second;
    EXPECT_TRUE(VobManager::instance().open(&second, "main"));
    EXPECT_FALSE(VobManager::instance().open(&second, "elsewhere"));
    EXPECT_EQ(second.getEdit(), g.edit);
    EXPECT_EQ(VobManager::instance().getVobWithCookie(g.edit->cookie()), vob.get());

    Listener third;
    EXPECT_TRUE(VobManager::instance().create(&third, g.edit->cookie(), "side"));
    EXPECT_NE(third.vob(), vob.get()) << "another group, another Vob on the same edit";
    g.edit->addModification(EditModifications(EditModification(11)), true);
    EXPECT_EQ(third.heard.size(), 1u) << "every Vob on the edit publishes its changes";
    EXPECT_FALSE(VobManager::instance().create(&third, Cookie(Cookie::EditKind, IdStamp(1, 1, 1)), "x"));
    VobManager::instance().close(&third, true);
    VobManager::instance().close(&second, false);

    EXPECT_FALSE(vob->anyUnjoinedCuts());
    int v2 = g.channel(L"V2");
    g.materialEvent(v2, 0, 4, a);
    g.materialEvent(v2, 4, 8, a);
    EXPECT_TRUE(vob->anyUnjoinedCuts()) << "a cut inside one material";
}
