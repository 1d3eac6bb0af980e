// Walking the reference edit model: paths, inputs, channels, option words, searches, cuts.
#include "host/EditGraphIterator.h"

#include <gtest/gtest.h>

#include "host/CutIterator.h"
#include "host/FXEditor.h"
#include "tests/support/GraphBuilder.h"

namespace {

// V1 holds a mix whose inputs are V2's graph (blur over a material) and V3's material; V3 is
// black from 5 on. An orphan chain hangs from no channel.
struct MixEdit {
    MixEdit() {
        v1 = g.channel(L"V1");
        v2 = g.channel(L"V2");
        v3 = g.channel(L"V3");
        mix = g.effect(10, 3);
        g.feed(mix, 0, v2);
        g.feed(mix, 1, v3);
        blur = g.effect(11, 1);
        src = g.material(12);
        GraphBuilder::link(blur, 0, src);
        other = g.material(13);
        g.graphEvent(v1, 0, 10, mix);
        g.graphEvent(v2, 0, 10, blur);
        g.materialEvent(v3, 0, 5, other);
        g.blackEvent(v3, 5, 10);
        orphan = g.effect(20, 1);
        GraphBuilder::link(orphan, 0, g.material(21));
    }
    GraphBuilder g;
    int v1, v2, v3;
    Zk::Ptr<EffectInstance_opu4h5a4j> mix, blur, orphan;
    Zk::Ptr<MaterialUsageNode> src, other;
};

} // namespace

TEST(EditGraphIterator, PathStepsAndChannels) {
    MixEdit m;
    EditGraphIterator it(m.g.edit, m.v1, 1.0, 0);
    ASSERT_TRUE(it.isValid());
    EXPECT_EQ(it.depth(), 0);
    EXPECT_EQ(it.getNode(-1), m.mix);
    EXPECT_EQ(it.getChanId(-1), m.g.chanId(m.v1));
    EXPECT_EQ(it.getChanId(-2), m.g.chanId(m.v1)) << "at the root, the channel the path starts from";
    EXPECT_EQ(it.getNode(-2), nullptr) << "but no node before the root";
    EXPECT_FALSE(it.moveBack()) << "moveBack at the root";

    ASSERT_TRUE(it.moveToInput(0));
    EXPECT_EQ(it.getNode(-1), m.blur);
    EXPECT_EQ(it.getChanIndex(-1), m.v2) << "a track input enters the feeding channel";
    EXPECT_EQ(it.getChanIndex(-2), m.v1);
    ASSERT_TRUE(it.moveToInput(0));
    EXPECT_EQ(it.getNode(-1), m.src);
    EXPECT_EQ(it.getChanIndex(-1), m.v2) << "a direct link stays on its parent's channel";
    EXPECT_EQ(it.getParentInputNum(), 0);
    EXPECT_EQ(it.depth(), 2);
    EXPECT_EQ(it.getNode(0), m.mix);

    EXPECT_FALSE(it.moveToInput(0)) << "a material has no inputs";
    EXPECT_EQ(it.depth(), 2) << "a failed step leaves the path alone";
    it.moveBack();
    it.moveBack();
    EXPECT_FALSE(it.moveToInput(2)) << "an open slot is not connected";
    EXPECT_FALSE(it.moveToInput(7)) << "an input out of range";

    EditGraphIterator late(m.g.edit, m.v1, 6.0, 0);
    EXPECT_TRUE(late.moveToInput(0));
    late.moveBack();
    EXPECT_FALSE(late.moveToInput(1)) << "V3 is black at 6";

    EditGraphIterator none(0);
    EXPECT_FALSE(none.isValid());
    EXPECT_EQ(none.getNode(-1), nullptr);
    EXPECT_FALSE(none.getNodeId(-1).valid());
    EXPECT_EQ(none.getParentInputNum(), 0);
}

// A looking step goes where moveToInput goes, through links and channels alike, without taking
// a reference; a copy of the iterator holds every node of its path, and letting both go leaves
// every count as it was.
TEST(EditGraphIterator, LookingStepsHoldNothingAndCopiesHoldAll) {
    MixEdit m;
    const int mixRefs = m.mix->refCount();
    const int blurRefs = m.blur->refCount();
    const int srcRefs = m.src->refCount();
    {
        EditGraphIterator held(m.g.edit, m.v1, 1.0, 0);
        EditGraphIterator look(m.g.edit, m.v1, 1.0, 0);
        ASSERT_TRUE(held.moveToInput(0) && held.moveToInput(0));
        EXPECT_EQ(m.src->refCount(), srcRefs + 1) << "moveToInput holds the node it stands on";
        ASSERT_TRUE(look.lookToInput(0));
        EXPECT_EQ(look.getChanIndex(-1), m.v2) << "a track input enters the feeding channel";
        ASSERT_TRUE(look.lookToInput(0));
        EXPECT_EQ(look.getNodeId(-1), held.getNodeId(-1));
        EXPECT_EQ(look.getChanIndex(-1), held.getChanIndex(-1));
        EXPECT_EQ(look.getParentInputNum(), held.getParentInputNum());
        EXPECT_TRUE(look == held);
        EXPECT_EQ(look.peekNode(-1), m.src.get());
        EXPECT_EQ(look.peekNode(-4), nullptr);
        EXPECT_EQ(m.blur->refCount(), blurRefs + 1) << "only the held path counts";
        EXPECT_EQ(m.src->refCount(), srcRefs + 1);
        EXPECT_FALSE(look.lookToInput(0)) << "a material has no inputs";
        EXPECT_EQ(look.depth(), 2) << "a failed step leaves the path alone";

        {
            Zk::Ptr<FXGraphNodeBase> got = look.getNode(-1);
            EXPECT_EQ(m.src->refCount(), srcRefs + 2) << "getNode hands out a reference of its own";
        }
        EditGraphIterator copy = look;
        EXPECT_EQ(m.src->refCount(), srcRefs + 2) << "a copy holds what its original only looked at";
        EXPECT_EQ(m.blur->refCount(), blurRefs + 2);
        EditGraphIterator assigned(0);
        assigned = look;
        EXPECT_EQ(m.src->refCount(), srcRefs + 3);
        EXPECT_TRUE(copy.moveBack() && copy.moveBack());
        EXPECT_EQ(m.src->refCount(), srcRefs + 2);
        EXPECT_TRUE(look.moveBack());
        EXPECT_EQ(m.src->refCount(), srcRefs + 2) << "stepping back from a look releases nothing";
        EXPECT_TRUE(look.lookToInput(0));
        EXPECT_EQ(look.getNode(-1), m.src);
    }
    EXPECT_EQ(m.mix->refCount(), mixRefs);
    EXPECT_EQ(m.blur->refCount(), blurRefs);
    EXPECT_EQ(m.src->refCount(), srcRefs);
}

// Round a ring, held and looking steps in turn: the path grows past its capacity and moves its
// entries, each keeping what it held, and shrinks again.
TEST(EditGraphIterator, HeldAndLookingStepsRoundARing) {
    GraphBuilder g;
    int v = g.channel(L"V1");
    auto a = g.effect(1, 1), b = g.effect(2, 1);
    GraphBuilder::link(a, 0, b);
    GraphBuilder::link(b, 0, a);
    g.graphEvent(v, 0, 10, a);
    const int aRefs = a->refCount();
    const int bRefs = b->refCount();
    {
        EditGraphIterator it(g.edit, v, 1.0, 0);
        for (int i = 0; i < 100; ++i)
            ASSERT_TRUE(i % 2 ? it.lookToInput(0) : it.moveToInput(0));
        EXPECT_EQ(it.depth(), 100);
        EXPECT_EQ(it.getNodeId(-1), a->getId());
        EXPECT_EQ(a->refCount(), aRefs + 1) << "the root is held, a's other entries only look";
        EXPECT_EQ(b->refCount(), bRefs + 50);
        EditGraphIterator copy = it;
        EXPECT_EQ(a->refCount(), aRefs + 1 + 51);
        EXPECT_EQ(b->refCount(), bRefs + 100);
        while (it.moveBack())
            ;
        EXPECT_EQ(it.depth(), 0);
        EXPECT_EQ(a->refCount(), aRefs + 1 + 51);
        EXPECT_EQ(b->refCount(), bRefs + 50);
    }
    EXPECT_EQ(a->refCount(), aRefs);
    EXPECT_EQ(b->refCount(), bRefs);
}

TEST(EditGraphIterator, PathsMayHoldANodeTwice) {
    GraphBuilder g;
    int v = g.channel(L"V1");
    auto a = g.effect(1, 1), b = g.effect(2, 1);
    GraphBuilder::link(a, 0, b);
    GraphBuilder::link(b, 0, a);
    g.graphEvent(v, 0, 10, a);
    EditGraphIterator it(g.edit, v, 1.0, 0);
    ASSERT_TRUE(it.moveToInput(0));
    ASSERT_TRUE(it.moveToInput(0));
    EXPECT_EQ(it.getNode(-1), it.getNode(0)) << "the iterator does not guard against cycles";
    Vector<Zk::Ptr<FXGraphNodeBase>> all;
    it.findAllComponents(all);
    EXPECT_EQ(all.size(), 2u) << "findAllComponents gives each node once";
}

TEST(EditGraphIterator, OptionWords) {
    MixEdit m;
    // 2 and 10 climb to the primary node: V2's content is shown by V1's mix.
    EditGraphIterator primary(m.g.edit, m.g.chanId(m.v2), 1.0, 2);
    EXPECT_EQ(primary.getNode(-1), m.mix);
    EditGraphIterator plain(m.g.edit, m.g.chanId(m.v2), 1.0, 0);
    EXPECT_EQ(plain.getNode(-1), m.blur);
    EditGraphIterator all(m.g.edit, 0, 1.0, 10);
    EXPECT_EQ(all.getNode(-1), m.mix);

    // 9: an iterator made for a known node stands on it with its path from the top of the edit.
    EditGraphIterator at = FXEditor::getIteratorFor(m.g.edit, m.src->getId(), 1.0, 9);
    ASSERT_TRUE(at.isValid());
    EXPECT_EQ(at.getNode(-1), m.src);
    EXPECT_EQ(at.depth(), 2);
    EXPECT_EQ(at.getNode(0), m.mix);
    EditGraphIterator chanRoot = FXEditor::getIteratorFor(m.g.edit, m.g.chanId(m.v3), 1.0, 9);
    EXPECT_EQ(chanRoot.getNode(-1), m.other) << "a channel id gives the channel's root";
    EXPECT_FALSE(FXEditor::getIteratorFor(m.g.edit, m.other->getId(), 6.0, 9).isValid())
        << "a node not in the edit at that time";
    EditGraphIterator orphan = FXEditor::getIteratorFor(m.g.edit, m.orphan->getId(), 1.0, 9);
    EXPECT_EQ(orphan.getNode(-1), m.orphan);

    // 1: a search from the top reaches other channels; 0 only searches below the root.
    EditGraphIterator top(m.g.edit, 0, 1.0, 1);
    EXPECT_TRUE(top.search(m.orphan.get()));
    EditGraphIterator below(m.g.edit, m.v2, 1.0, 0);
    EXPECT_TRUE(below.search(m.src.get()));
    EXPECT_FALSE(below.search(m.mix.get()));
    EXPECT_EQ(below.getNode(-1), m.src) << "a failed search leaves the path";

    // Rebuilt from stored state.
    EditGraphIterator back = FXEditor::getIteratorFor(at.getState());
    EXPECT_TRUE(back == at);
}

TEST(EditGraphIterator, RootsAndOrphans) {
    MixEdit m;
    std::vector<IdStamp> roots;
    findAllRootNodeChans(m.g.edit, 1.0, roots, kVideoChan);
    ASSERT_EQ(roots.size(), 1u) << "V2 and V3 are shown through V1's mix";
    EXPECT_EQ(roots[0], m.g.chanId(m.v1));
    std::vector<IdStamp> orphans;
    FXEditor::findOrphanedComponents(m.g.edit, 1.0, orphans);
    ASSERT_EQ(orphans.size(), 1u);
    EXPECT_EQ(orphans[0], m.orphan->getId());
}

TEST(EditGraphIterator, GhostInputsAreEnteredOnlyWhenAsked) {
    GraphBuilder g;
    int v = g.channel(L"V1");
    auto a = g.effect(1, 1);
    GraphBuilder::link(a, 0, g.material(2));
    a->input(0).ghost = true;
    g.graphEvent(v, 0, 10, a);
    EditGraphIterator it(g.edit, v, 1.0, 0);
    EXPECT_FALSE(it.moveToInput(0));
    it.setTraverseGhosts(true);
    EXPECT_TRUE(it.moveToInput(0));
}

TEST(CutIterator, StepsOverTheCutsOfSeveralChannels) {
    MixEdit m;
    Vector<int> chans;
    m.g.edit->getChans(chans, kVideoChan, 15);
    ASSERT_EQ(chans.size(), 3u);
    CutIterator fwd(m.g.edit, chans, 1.0, false);
    ASSERT_TRUE(fwd.valid());
    EXPECT_EQ(fwd.editTime(), 5.0);
    ++fwd;
    EXPECT_FALSE(fwd.valid());
    CutIterator back(m.g.edit, chans, 4.0, true);
    ASSERT_TRUE(back.valid());
    EXPECT_EQ(back.editTime(), 0.0) << "all three channels cut at 0, counted once";
    --back;
    EXPECT_FALSE(back.valid());
    CutIterator on(m.g.edit, chans, 5.0, false);
    EXPECT_EQ(on.editTime(), 5.0) << "a cut at the time itself";
    CelEventPair e(m.g.edit, m.g.chanId(m.v3), 5.0);
    EXPECT_EQ(e.editTime(), 5.0) << "the event that starts at a time wins over the one ending there";
    EXPECT_FALSE(e.getEffectHandle());
    EXPECT_FALSE(next(e).valid());
    EXPECT_EQ(prev(e).stripCookie(), m.other->material());
}

TEST(EditGraphIterator, ChannelsFeedingEachOtherInARingStillShowOnce) {
    GraphBuilder g;
    int v1 = g.channel(L"V1"), v2 = g.channel(L"V2"), v3 = g.channel(L"V3");
    auto a = g.effect(1, 1), b = g.effect(2, 1), c = g.effect(3, 1);
    g.feed(a, 0, v2);
    g.feed(b, 0, v1);
    g.feed(c, 0, v2); // V3 takes V2 in too, from outside the ring
    g.graphEvent(v1, 0, 10, a);
    g.graphEvent(v2, 0, 10, b);
    g.graphEvent(v3, 0, 10, c);
    std::vector<IdStamp> roots;
    findAllRootNodeChans(g.edit, 1.0, roots, kVideoChan);
    ASSERT_EQ(roots.size(), 2u) << "V1 and V2 feed each other; V1, the lower, stands for the ring";
    EXPECT_EQ(roots[0], g.chanId(v1));
    EXPECT_EQ(roots[1], g.chanId(v3)) << "nothing takes V3 in";
    EditGraphIterator fromV2(g.edit, v2, 1.0, EditGraphIterator::optPrimary);
    EXPECT_EQ(fromV2.getChanIndex(0), v1) << "the primary graph of a ring member is the ring's";
    EditGraphIterator fromV3(g.edit, v3, 1.0, EditGraphIterator::optPrimary);
    EXPECT_EQ(fromV3.getChanIndex(0), v3) << "nothing takes V3 in";
}

TEST(EditGraphIterator, ADetachedRingReportsOneTop) {
    GraphBuilder g;
    g.channel(L"V1");
    // Ring 5 <-> 6, feeding 2 and 3 below it (lower ids than the ring); 2 feeds 3.
    auto low = g.effect(2, 1), lower = g.effect(3, 0);
    auto r1 = g.effect(5, 2), r2 = g.effect(6, 1);
    GraphBuilder::link(r1, 0, r2);
    GraphBuilder::link(r2, 0, r1);
    GraphBuilder::link(r1, 1, low);
    GraphBuilder::link(low, 0, lower);
    // A second ring, fed by the first: it is not a top of its own.
    auto s1 = g.effect(8, 1), s2 = g.effect(9, 1);
    GraphBuilder::link(s1, 0, s2);
    GraphBuilder::link(s2, 0, s1);
    r2->setNumInputs(2);
    GraphBuilder::link(r2, 1, s2);
    std::vector<IdStamp> orphans;
    FXEditor::findOrphanedComponents(g.edit, 1.0, orphans);
    ASSERT_EQ(orphans.size(), 1u);
    EXPECT_EQ(orphans[0], r1->getId());
}
