// The tree tidier: worked placements in both directions, the walk's treatment of cycles and
// shared nodes, the repair pass, and invariants over generated graphs.
#include "graphview/TreeTidier.h"

#include <gtest/gtest.h>

#include <cmath>

#include "graphview/RootStacker.h"
#include "graphview/TidyLevels.h"
#include "host/FXEditor.h"
#include "refhost/edit/EditGenerator.h"
#include "refhost/edit/EditPosSource.h"
#include "tests/support/GraphBuilder.h"

using VidRouting::Orientations::BottomToTop;
using VidRouting::Orientations::LeftToRight;

namespace {

constexpr double S = 0.1875;

struct Layout {
    Layout(GraphBuilder& g, const Zk::Ptr<FXGraphNodeBase>& root, VidRouting::Orientations::Orientation o,
           double x = 0, double y = 0, double depth = S, double sibling = S)
        : source(g.edit, o), tidier(&source, depth, sibling) {
        EditGraphIterator it = FXEditor::getIteratorFor(g.edit, root->getId(), 1.0, 9);
        ok = tidier.run(it, x, y);
    }
    XY<double> at(const Zk::Ptr<FXGraphNodeBase>& n) {
        NodeUIPosRec* r = source.getPosRecForNode(n->getId());
        return XY<double>(r->x(), r->y());
    }
    EditPosSource source;
    TreeTidier tidier;
    bool ok = false;
};

#define EXPECT_AT(layout, node, ex, ey)                                                                      \
    do {                                                                                                     \
        XY<double> p_ = (layout).at(node);                                                                   \
        EXPECT_DOUBLE_EQ(p_.x, ex) << "x of node " << (node)->getId().asString().c_str();                    \
        EXPECT_DOUBLE_EQ(p_.y, ey) << "y of node " << (node)->getId().asString().c_str();                    \
    } while (0)

} // namespace

TEST(TreeTidier, ARootWithoutInputsOrNothingAtAllStandsAtThePoint) {
    GraphBuilder g;
    int v = g.channel(L"V1");
    auto root = g.effect(1, 0);
    g.graphEvent(v, 0, 10, root);
    Layout l(g, root, LeftToRight, 2.5, -1.0);
    EXPECT_TRUE(l.ok);
    EXPECT_AT(l, root, 2.5, -1.0);
    auto e = l.tidier.getExtents();
    EXPECT_EQ(e.x1, 2.5);
    EXPECT_EQ(e.x2, 2.5);
    EXPECT_EQ(e.y1, -1.0);
    EXPECT_EQ(e.y2, -1.0);

    EditGraphIterator nothing(0);
    EXPECT_FALSE(l.tidier.run(nothing, 3, 4)) << "nothing to lay out";
    e = l.tidier.getExtents();
    EXPECT_EQ(e.x1, 3) << "and the extents still stand at the point";
    EXPECT_EQ(e.y2, 4);
}

TEST(TreeTidier, TwoTracksInBothDirections) {
    GraphBuilder g;
    int v1 = g.channel(L"V1"), v2 = g.channel(L"V2"), v3 = g.channel(L"V3");
    auto root = g.effect(1, 2);
    auto a = g.material(2), b = g.material(3);
    g.feed(root, 0, v2);
    g.feed(root, 1, v3);
    g.graphEvent(v1, 0, 10, root);
    g.materialEvent(v2, 0, 10, a);
    g.materialEvent(v3, 0, 10, b);

    Layout ltr(g, root, LeftToRight);
    EXPECT_AT(ltr, a, -0.1875, 0.09375);
    EXPECT_AT(ltr, b, -0.1875, -0.09375);

    Layout btt(g, root, BottomToTop);
    EXPECT_AT(btt, a, -0.09375, -0.1875);
    EXPECT_AT(btt, b, 0.09375, -0.1875);
    auto e = btt.tidier.getExtents();
    EXPECT_DOUBLE_EQ(e.x1, -0.09375);
    EXPECT_DOUBLE_EQ(e.x2, 0.09375);
    EXPECT_DOUBLE_EQ(e.y1, -0.1875);
    EXPECT_DOUBLE_EQ(e.y2, 0.0);
}

TEST(TreeTidier, ThreeTracksKeepTheEmptySlotOpen) {
    GraphBuilder g;
    int v = g.channel(L"V1");
    auto root = g.effect(1, 3);
    auto a = g.material(2), c = g.material(3);
    GraphBuilder::link(root, 0, a);
    GraphBuilder::link(root, 2, c);
    g.graphEvent(v, 0, 10, root);
    Layout l(g, root, LeftToRight);
    EXPECT_AT(l, a, -S, 0.1875);
    EXPECT_AT(l, c, -S, -0.1875);
}

TEST(TreeTidier, TracksCountDistinctChannelsNotInputs) {
    // Two inputs fed by one channel make one track: the span is not centred on the parent,
    // and input 1 stands a whole step below it.
    GraphBuilder g;
    int v1 = g.channel(L"V1"), v2 = g.channel(L"V2");
    auto root = g.effect(1, 2);
    auto m = g.material(2);
    g.feed(root, 0, v2);
    g.feed(root, 1, v2);
    g.graphEvent(v1, 0, 10, root);
    g.materialEvent(v2, 0, 10, m);
    Layout l(g, root, LeftToRight);
    ASSERT_TRUE(l.ok);
    // The material is reached twice at level 1; it keeps its first slot, input 0, at offset 0.
    EXPECT_DOUBLE_EQ(l.at(m).y, 0.0);
}

TEST(TreeTidier, AParentWithoutValidTracksThrowsItsInputsFarOff) {
    // tracks - 1 is unsigned: 0 tracks give 2^64 - 1 slots of half spacing.
    GraphBuilder g;
    int v = g.channel(L"V1");
    auto root = g.effect(1, 1);
    auto m = g.material(2);
    GraphBuilder::link(root, 0, m);
    root->input(0).track = IdStamp();
    g.graphEvent(v, 0, 10, root);
    Layout l(g, root, LeftToRight);
    EXPECT_DOUBLE_EQ(l.at(m).y, 1.7293822569102705e18);
    EXPECT_DOUBLE_EQ(l.at(m).x, -S);
}

TEST(TreeTidier, ACycleEndsTheWalkAtTheClosingNode) {
    GraphBuilder g;
    int v = g.channel(L"V1");
    auto root = g.effect(1, 1), a = g.effect(2, 1), b = g.effect(3, 1);
    GraphBuilder::link(root, 0, a);
    GraphBuilder::link(a, 0, b);
    GraphBuilder::link(b, 0, a); // b feeds back into a
    g.graphEvent(v, 0, 10, root);
    EditPosSource source(g.edit, LeftToRight);
    EditGraphIterator it = FXEditor::getIteratorFor(g.edit, root->getId(), 1.0, 9);
    TidyLevels levels(it, &source);
    ASSERT_EQ(levels.numLevels(), 3u);
    EXPECT_EQ(levels.size(), 3u);
    EXPECT_EQ(levels.find(a->getId())->level, 1u) << "the edge back into a must not deepen it";
    EXPECT_EQ(it.depth(), 0) << "the walk returns the iterator to the root";

    Layout l(g, root, LeftToRight);
    EXPECT_AT(l, a, -S, 0.0);
    EXPECT_AT(l, b, -2 * S, 0.0);
}

TEST(TreeTidier, SharedNodeHangsFromItsDeepestParentWithItsFirstSlot) {
    // root: input 0 -> x (shared), input 1 -> p -> q, q input 1 -> x.
    // x is first seen at level 1 through input 0, then at level 3 below q.
    GraphBuilder g;
    int v = g.channel(L"V1");
    auto root = g.effect(1, 2), p = g.effect(2, 1), q = g.effect(3, 2);
    auto x = g.material(4);
    GraphBuilder::link(root, 0, x);
    GraphBuilder::link(root, 1, p);
    GraphBuilder::link(p, 0, q);
    GraphBuilder::link(q, 1, x);
    g.graphEvent(v, 0, 10, root);

    EditPosSource source(g.edit, LeftToRight);
    EditGraphIterator it = FXEditor::getIteratorFor(g.edit, root->getId(), 1.0, 9);
    TidyLevels levels(it, &source);
    const TidyNodeRec& rx = *levels.find(x->getId());
    EXPECT_EQ(rx.level, 3u);
    EXPECT_EQ(rx.parent, q.get());
    EXPECT_EQ(rx.parentLevel, 2u);
    EXPECT_EQ(rx.parentInput, 0) << "the slot of the first parent is kept";

    Layout l(g, root, LeftToRight);
    // q at (-0.375, -0.09375); x at q's input-0 slot, not its input-1 slot.
    EXPECT_AT(l, q, -0.375, -0.09375);
    EXPECT_AT(l, x, -0.5625, 0.0);
}

TEST(TreeTidier, SharedNodeAtEqualDepthsHangsFromItsFirstParent) {
    GraphBuilder g;
    int v = g.channel(L"V1");
    auto root = g.effect(1, 2), a = g.effect(2, 1), b = g.effect(3, 1);
    auto x = g.material(4);
    GraphBuilder::link(root, 0, a);
    GraphBuilder::link(root, 1, b);
    GraphBuilder::link(a, 0, x);
    GraphBuilder::link(b, 0, x);
    g.graphEvent(v, 0, 10, root);
    EditPosSource source(g.edit, BottomToTop);
    EditGraphIterator it = FXEditor::getIteratorFor(g.edit, root->getId(), 1.0, 9);
    TidyLevels levels(it, &source);
    EXPECT_EQ(levels.find(x->getId())->parent, a.get());
    EXPECT_EQ(levels.id(levels.parentIndex(levels.indexOf(x->getId()))), a->getId());
    Layout l(g, root, BottomToTop);
    EXPECT_AT(l, x, -0.09375, -0.375);
}

TEST(TreeTidier, RepairPassSpreadsTheLevelAboveACollision) {
    // p's child uses p's lower slot and r's child r's upper slot: both land on y = 0.
    GraphBuilder g;
    int v = g.channel(L"V1");
    auto root = g.effect(1, 2), p = g.effect(2, 2), r = g.effect(3, 2);
    auto c0 = g.material(4), c1 = g.material(5);
    GraphBuilder::link(root, 0, p);
    GraphBuilder::link(root, 1, r);
    GraphBuilder::link(p, 1, c0);
    GraphBuilder::link(r, 0, c1);
    g.graphEvent(v, 0, 10, root);

    Layout l(g, root, LeftToRight);
    EXPECT_AT(l, p, -S, 0.1875);
    EXPECT_AT(l, r, -S, -0.1875);
    EXPECT_AT(l, c0, -0.375, 0.09375);
    EXPECT_AT(l, c1, -0.375, -0.09375);

    Layout b(g, root, BottomToTop);
    EXPECT_AT(b, p, -0.1875, -S);
    EXPECT_AT(b, r, 0.1875, -S);
    EXPECT_AT(b, c0, -0.09375, -0.375);
    EXPECT_AT(b, c1, 0.09375, -0.375);
}

TEST(TreeTidier, CollisionTestIsStrict) {
    // In BottomToTop the gap is tested against the depth spacing and spread by the sibling
    // spacing. With a gap of exactly need - 0.0001 nothing moves; a little closer, it does.
    auto build = [](GraphBuilder& g) {
        int v = g.channel(L"V1");
        auto root = g.effect(1, 2), p = g.effect(2, 1), r = g.effect(3, 1);
        GraphBuilder::link(root, 0, p);
        GraphBuilder::link(root, 1, r);
        GraphBuilder::link(p, 0, g.material(4));
        GraphBuilder::link(r, 0, g.material(5));
        g.graphEvent(v, 0, 10, root);
        return root;
    };
    GraphBuilder g;
    auto root = build(g);
    Layout exact(g, root, BottomToTop, 0, 0, 0.2501, 0.25); // gap 0.25 == 0.2501 - 0.0001
    EXPECT_DOUBLE_EQ(exact.at(g.edit->findNode(IdStamp(1, 0, 2))).x, -0.125) << "no repair at the limit";

    GraphBuilder g2;
    auto root2 = build(g2);
    Layout closer(g2, root2, BottomToTop, 0, 0, 0.2502, 0.25);
    EXPECT_DOUBLE_EQ(closer.at(g2.edit->findNode(IdStamp(1, 0, 2))).x, -0.25)
        << "spread by half the sibling spacing";
}

TEST(TreeTidier, SameParentCollisionEndsTheLevelUnrepaired) {
    // x hangs from s (its deepest parent) with its first slot 0, the slot of y too: x and y
    // coincide, and since they share a parent the level is left as it is.
    GraphBuilder g;
    int v = g.channel(L"V1");
    auto root = g.effect(1, 2), p = g.effect(2, 1), q = g.effect(3, 1), s = g.effect(4, 2);
    auto x = g.material(5), y = g.material(6);
    GraphBuilder::link(root, 0, p);
    GraphBuilder::link(p, 0, x);
    GraphBuilder::link(root, 1, q);
    GraphBuilder::link(q, 0, s);
    GraphBuilder::link(s, 0, y);
    GraphBuilder::link(s, 1, x);
    g.graphEvent(v, 0, 10, root);
    Layout l(g, root, LeftToRight);
    EXPECT_EQ(l.at(x), l.at(y));
}

TEST(TreeTidier, DeepTreeDoesNotExhaustTheStack) {
    GeneratorOptions o;
    o.nodes = 10000;
    o.chain = true;
    EditPtr edit = generateEdit(o);
    EditPosSource source(edit, LeftToRight);
    TreeTidier tidier(&source, S, S);
    EditGraphIterator it = FXEditor::getIteratorFor(edit, IdStamp(1, 0, 1), 1.0, 9);
    ASSERT_TRUE(tidier.run(it, 0, 0));
    EXPECT_NEAR(tidier.getExtents().x1, -S * 9999, 1e-6);
}

TEST(TreeTidier, InvariantsOverGeneratedGraphs) {
    for (uint32_t seed = 1; seed <= 12; ++seed) {
        for (double shared : {0.0, 0.3}) {
            for (auto o : {LeftToRight, BottomToTop}) {
                GeneratorOptions opt;
                opt.seed = seed;
                opt.nodes = 60 + seed * 25;
                opt.sharedLinks = shared;
                EditPtr edit = generateEdit(opt);
                auto runOnce = [&](EditPosSource& source, TreeTidier& tidier) {
                    EditGraphIterator it = FXEditor::getIteratorFor(edit, IdStamp(1, 0, 1), 1.0, 9);
                    return tidier.run(it, 1.0, 2.0);
                };
                EditPosSource s1(edit, o), s2(edit, o);
                TreeTidier t1(&s1, S, S), t2(&s2, S, S);
                ASSERT_TRUE(runOnce(s1, t1));
                ASSERT_TRUE(runOnce(s2, t2));

                EditGraphIterator it = FXEditor::getIteratorFor(edit, IdStamp(1, 0, 1), 1.0, 9);
                Vector<Zk::Ptr<FXGraphNodeBase>> reached;
                it.findAllComponents(reached);
                auto box = t1.getExtents();
                EXPECT_EQ(s1.records().size(), reached.size())
                    << "one record per reached node, seed " << seed;
                for (const auto& n : reached) {
                    NodeUIPosRec* r1 = s1.getPosRecForNode(n->getId());
                    NodeUIPosRec* r2 = s2.getPosRecForNode(n->getId());
                    EXPECT_EQ(r1->x(), r2->x()) << "deterministic, seed " << seed;
                    EXPECT_EQ(r1->y(), r2->y()) << "deterministic, seed " << seed;
                    EXPECT_TRUE(box.contains(r1->x(), r1->y())) << "extents hold every centre, seed " << seed;
                }
                NodeUIPosRec* root = s1.getPosRecForNode(IdStamp(1, 0, 1));
                EXPECT_EQ(root->x(), 1.0);
                EXPECT_EQ(root->y(), 2.0);
            }
        }
    }
}

TEST(RootStacker, StacksTreesByTheirExtents) {
    // LeftToRight: a first tree from x = -0.375 to 0 and y from -0.1875 to +0.1875 puts the
    // second root at its left edge, one gap below it.
    GraphBuilder g;
    int v1 = g.channel(L"V1"), v2 = g.channel(L"V2");
    auto r1 = g.effect(1, 3), p = g.effect(2, 1);
    GraphBuilder::link(r1, 0, g.material(3));
    GraphBuilder::link(r1, 1, p);
    GraphBuilder::link(r1, 2, g.material(4));
    GraphBuilder::link(p, 0, g.material(5));
    g.graphEvent(v1, 0, 10, r1);
    auto r2 = g.effect(6, 0);
    g.graphEvent(v2, 0, 10, r2);
    EditPosSource ltr(g.edit, LeftToRight);
    auto ext = RootStacker::tidyRoots(g.edit, 1.0, {g.chanId(v1), g.chanId(v2)}, XY<double>(0, 0), &ltr);
    ASSERT_EQ(ext.size(), 2u);
    EXPECT_DOUBLE_EQ(ext[0].x1, -0.375);
    EXPECT_DOUBLE_EQ(ext[0].y1, -0.1875);
    EXPECT_DOUBLE_EQ(ext[0].y2, 0.1875);
    EXPECT_DOUBLE_EQ(ltr.getPosRecForNode(r2->getId())->x(), -0.375);
    EXPECT_DOUBLE_EQ(ltr.getPosRecForNode(r2->getId())->y(), -0.3125);

    // BottomToTop: a first tree reaching x = +0.09375 puts the second root at x = 0.28125, level
    // with the first tree's lowest point.
    GraphBuilder h;
    int w1 = h.channel(L"V1"), w2 = h.channel(L"V2");
    auto s1 = h.effect(1, 2);
    GraphBuilder::link(s1, 0, h.material(2));
    GraphBuilder::link(s1, 1, h.material(3));
    h.graphEvent(w1, 0, 10, s1);
    auto s2 = h.effect(4, 0);
    h.graphEvent(w2, 0, 10, s2);
    EditPosSource btt(h.edit, BottomToTop);
    ext = RootStacker::tidyRoots(h.edit, 1.0, {h.chanId(w1), h.chanId(w2)}, XY<double>(0, 0), &btt);
    EXPECT_DOUBLE_EQ(ext[0].x2, 0.09375);
    EXPECT_DOUBLE_EQ(btt.getPosRecForNode(s2->getId())->x(), 0.28125);
    EXPECT_DOUBLE_EQ(btt.getPosRecForNode(s2->getId())->y(), -0.1875);
}

TEST(RootStacker, ARootThatYieldsNothingStillMovesTheOrigin) {
    GraphBuilder g;
    int v1 = g.channel(L"V1"), v2 = g.channel(L"V2");
    g.blackEvent(v1, 0, 10);
    auto r2 = g.effect(2, 0);
    g.graphEvent(v2, 0, 10, r2);
    EditPosSource ltr(g.edit, LeftToRight);
    RootStacker::tidyRoots(g.edit, 1.0, {g.chanId(v1), g.chanId(v2)}, XY<double>(0, 0), &ltr);
    EXPECT_DOUBLE_EQ(ltr.getPosRecForNode(r2->getId())->y(), -0.125);
}
