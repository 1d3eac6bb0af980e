// Effect templates applied by the reference editor: onto a node, where the host sees fit, and in
// place of a transition; each as one undo step.
#include <gtest/gtest.h>

#include "host/EffectTemplateManager.h"
#include "host/FXEditor.h"
#include "host/VobManager.h"
#include "refhost/edit/EditFile.h"
#include "tests/support/GraphBuilder.h"

namespace {
Zk::Ptr<EffectTemplate> tmpl(const wchar_t* name) {
    auto t = EffectTemplateManager::instance().find(name);
    EXPECT_TRUE(t) << "the catalogue has no template named so";
    return t;
}
EditPtr sample(const char* name) {
    std::string error;
    EditPtr e = EditFile::open(std::string(NODEDESK_SOURCE_DIR) + "/samples/" + name, error);
    EXPECT_TRUE(e) << error;
    return e;
}
} // namespace

TEST(EffectTemplates, CatalogueCountsOpenInputs) {
    EXPECT_EQ(tmpl(L"Gaussian blur")->getNumInputs(1), 1u);
    EXPECT_EQ(tmpl(L"Picture in picture")->getNumInputs(1), 2u);
    EXPECT_EQ(tmpl(L"Flat colour matte")->getNumInputs(1), 0u);
    EXPECT_EQ(tmpl(L"Soft glow")->getNumInputs(1), 2u) << "the blur's input and the overlay's second";
    EXPECT_EQ(tmpl(L"Soft glow")->getComponents(0).size(), 2u);
    EXPECT_TRUE(EffectTemplateManager::instance().isStereoscopicEffect(tmpl(L"Stereo convergence")));
    EXPECT_EQ(tmpl(L"Equaliser")->getType(), kAudioChan);
}

TEST(EffectTemplates, OntoANodeTakesItsPlaceAndUndoes) {
    VobManager::instance().reset();
    EditPtr edit = sample("chain.edit.json");
    Zk::Ptr<Vob> vob = VobManager::instance().vobFor(edit, "templates");
    Zk::Ptr<FXGraphNodeBase> blur = edit->findNode(IdStamp("10.0.1"));
    Zk::Ptr<FXGraphNodeBase> source = edit->findNode(IdStamp("10.0.9"));
    const size_t before = edit->nodes().size();

    FXEditor::RC rc;
    {
        EasyBackup step(edit);
        FXEditor ed(vob->getEditModule());
        rc = ed.applyEffectsTemplateToNode(tmpl(L"Soft glow"), source);
    }
    ASSERT_TRUE(rc.ok);
    EXPECT_TRUE(rc.mods.includes(8, 0));
    Zk::Ptr<FXGraphNodeBase> head = rc.iterator.getNode(-1);
    ASSERT_TRUE(head);
    EXPECT_EQ(head->tagTypeId(), String("PixShader:Mix:over.fx"));
    EXPECT_EQ(blur->input(0).node, head) << "the head takes the material's place";
    EXPECT_EQ(head->input(1).node, source) << "the overlay takes the picture on its open input";
    Zk::Ptr<FXGraphNodeBase> glowBlur = head->input(0).node;
    ASSERT_TRUE(glowBlur);
    EXPECT_EQ(glowBlur->input(0).node, source) << "and so does the glow's blur";
    EXPECT_EQ(edit->nodes().size(), before + 2);
    EXPECT_EQ(rc.iterator.getNode(0)->getId(), IdStamp("10.0.4")) << "a path from the top of the edit";

    ASSERT_TRUE(vob->undoRequest());
    EXPECT_EQ(edit->nodes().size(), before);
    EXPECT_EQ(edit->findNode(IdStamp("10.0.1"))->input(0).node->getId(), IdStamp("10.0.9"));
    ASSERT_TRUE(vob->redoRequest());
    EXPECT_EQ(edit->nodes().size(), before + 2);
    VobManager::instance().reset();
}

TEST(EffectTemplates, AutoApplyUsesTheChannelOrMakesAnEvent) {
    GraphBuilder g;
    int v = g.channel(L"V1");
    auto m = g.material(1);
    g.materialEvent(v, 0, 5, m);
    g.blackEvent(v, 5, 10);
    FXEditor ed(g.edit);

    FXEditor::RC onto =
        ed.autoApplyEffectsTemplate(tmpl(L"Sepia"), EditModule(g.edit, 1, 2, g.chanId(v)), 48, 0, nullptr);
    ASSERT_TRUE(onto.ok);
    EXPECT_EQ(onto.iterator.getNode(-1)->input(0).node, m);
    EXPECT_EQ(g.edit->chan(v).cel->events()[0].kind, CelEvent::Graph)
        << "the material event now shows a graph";

    FXEditor::RC fresh = ed.autoApplyEffectsTemplate(tmpl(L"Flat colour matte"),
                                                     EditModule(g.edit, 6, 8, g.chanId(v)), 48, 0, nullptr);
    ASSERT_TRUE(fresh.ok);
    const auto& events = g.edit->chan(v).cel->events();
    ASSERT_EQ(events.size(), 4u) << "material, black, the new matte, black";
    EXPECT_EQ(events[2].start, 6.0);
    EXPECT_EQ(events[2].end, 8.0);
    EXPECT_EQ(events[2].node, fresh.iterator.getNode(-1));
    EXPECT_TRUE(fresh.mods.includes(8, 0));

    FXEditor::RC wrongType = ed.autoApplyEffectsTemplate(
        tmpl(L"Equaliser"), EditModule(g.edit, 1, 2, g.chanId(v)), 48, 0, nullptr);
    EXPECT_FALSE(wrongType.ok) << "no audio channel to take an audio template";
}

TEST(EffectTemplates, ReplaceATransitionKeepsItsCels) {
    EditPtr edit = sample("transition.edit.json");
    CelEventPair pair(edit, IdStamp("40.0.1"), 5.5);
    ASSERT_TRUE(pair.valid()) << "a pair found by the transition's own id";
    FXEditor ed(edit);
    FXEditor::RC rc = ed.replaceTransitionEffect(pair, tmpl(L"Wipe"));
    ASSERT_TRUE(rc.ok);
    Zk::Ptr<FXGraphNodeBase> wipe = rc.iterator.getNode(-1);
    EXPECT_EQ(wipe->tagTypeId(), String("Transition:Wipe"));
    EXPECT_EQ(wipe->input(0).node->getId(), IdStamp("41.0.3"));
    EXPECT_EQ(wipe->input(1).node->getId(), IdStamp("41.0.4"));
    EXPECT_FALSE(edit->findNode(IdStamp("40.0.1"))) << "the dissolve is gone";

    CelEventPair material(edit, edit->chan(0).id, 1.0);
    EXPECT_FALSE(ed.replaceTransitionEffect(material, tmpl(L"Wipe")).ok) << "only a transition is replaced";
}
