// The tree tidier and the first tidier side by side on the same graphs: every position and the
// extents must agree to the bit, on generated trees of every size the benchmarks use and on small
// random graphs with cycles, shared nodes, odd tracks and signed zeros.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <map>
#include <random>

#include "graphview/TreeTidier.h"
#include "graphview/TreeTidierReference.h"
#include "host/FXEditor.h"
#include "refhost/edit/EditGenerator.h"
#include "refhost/edit/EditPosSource.h"
#include "tests/support/GraphBuilder.h"

using VidRouting::Orientations::BottomToTop;
using VidRouting::Orientations::LeftToRight;
using Orientation = VidRouting::Orientations::Orientation;

namespace {

constexpr double S = 0.1875;

struct Outcome {
    bool ok = false;
    Zk::Box<double, Zk::BottomUpTraits> box;
    std::map<IdStamp, std::pair<double, double>, IdStampLess> positions;
};

struct TidyCase {
    EditPtr edit;
    IdStamp root;
    Orientation orientation = LeftToRight;
    XY<double> origin{0.0, 0.0};
    double depth = S;
    double sibling = S;
    int startInput = -1;             // when not -1, the walk starts at this input of the root
    std::vector<unsigned> startPath; // or, when given, at the end of these inputs from the root
    std::function<void(EditPosSource&)> preset;
};

template <class Tidier>
Outcome tidy(const TidyCase& run) {
    EditPosSource source(run.edit, run.orientation);
    if (run.preset)
        run.preset(source);
    EditGraphIterator it = FXEditor::getIteratorFor(run.edit, run.root, 1.0, 9);
    if (run.startInput >= 0 && !it.moveToInput(static_cast<unsigned>(run.startInput)))
        it = EditGraphIterator(0);
    for (unsigned input : run.startPath)
        if (!it.moveToInput(input))
            break;
    Tidier tidier(&source, run.depth, run.sibling);
    Outcome out;
    out.ok = tidier.run(it, run.origin.x, run.origin.y);
    out.box = tidier.getExtents();
    for (const auto& [id, rec] : source.records())
        out.positions[id] = {rec->x(), rec->y()};
    return out;
}

bool sameBits(double a, double b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

// Compares, reporting the first few differences only.
void expectSame(const TidyCase& run, const std::string& what) {
    const Outcome want = tidy<TreeTidierReference>(run);
    const Outcome got = tidy<TreeTidier>(run);
    EXPECT_EQ(got.ok, want.ok) << what;
    EXPECT_TRUE(sameBits(got.box.x1, want.box.x1) && sameBits(got.box.y1, want.box.y1) &&
                sameBits(got.box.x2, want.box.x2) && sameBits(got.box.y2, want.box.y2))
        << what << ": extents (" << got.box.x1 << ", " << got.box.y1 << ", " << got.box.x2 << ", "
        << got.box.y2 << "), want (" << want.box.x1 << ", " << want.box.y1 << ", " << want.box.x2 << ", "
        << want.box.y2 << ")";
    ASSERT_EQ(got.positions.size(), want.positions.size()) << what;
    int reported = 0;
    for (const auto& [id, p] : want.positions) {
        const auto& q = got.positions.at(id);
        if (sameBits(p.first, q.first) && sameBits(p.second, q.second))
            continue;
        ADD_FAILURE() << what << ": node " << id.asString().c_str() << " at (" << q.first << ", " << q.second
                      << "), want (" << p.first << ", " << p.second << ")";
        if (++reported == 5)
            return;
    }
}

EditPtr generated(uint32_t nodes, double shared, bool chain) {
    GeneratorOptions o;
    o.seed = 7;
    o.nodes = nodes;
    o.sharedLinks = shared;
    o.chain = chain;
    return generateEdit(o);
}

} // namespace

TEST(TreeTidierSideBySide, GeneratedTreesOfEverySize) {
    struct Case {
        uint32_t nodes;
        double shared;
        bool chain;
    };
    // Under the sanitizers the first tidier takes minutes on the largest trees: those are
    // compared in the plain build only.
#if defined(__SANITIZE_ADDRESS__)
    const uint32_t largest = 10000;
#else
    const uint32_t largest = 100000;
#endif
    for (const Case& c :
         {Case{1000, 0.0, false}, Case{1000, 0.2, false}, Case{10000, 0.0, false}, Case{10000, 0.2, false},
          Case{100000, 0.0, false}, Case{100000, 0.2, false}, Case{10000, 0.0, true}}) {
        if (c.nodes > largest)
            continue;
        TidyCase run;
        run.edit = generated(c.nodes, c.shared, c.chain);
        run.root = IdStamp(1, 0, 1);
        for (Orientation o : {LeftToRight, BottomToTop}) {
            run.orientation = o;
            expectSame(run, std::to_string(c.nodes) +
                                (c.chain        ? " deep"
                                 : c.shared > 0 ? " shared"
                                                : "") +
                                (o == LeftToRight ? " left to right" : " bottom to top"));
        }
    }
}

TEST(TreeTidierSideBySide, OriginAndSpacingsOfAnyKind) {
    TidyCase run;
    run.edit = generated(2000, 0.3, false);
    run.root = IdStamp(1, 0, 1);
    for (Orientation o : {LeftToRight, BottomToTop}) {
        run.orientation = o;
        run.origin = XY<double>(-3.75, 12.5);
        expectSame(run, "away from the origin");
        run.origin = XY<double>(-0.0, -0.0);
        expectSame(run, "at negative zero");
        run.origin = XY<double>(0.0, 0.0);
        run.depth = 0.2502;
        run.sibling = 0.25;
        expectSame(run, "unequal spacings");
        run.depth = S;
        run.sibling = S;
    }
}

TEST(TreeTidierSideBySide, RandomGraphsWithCyclesAndStartingPositions) {
    // Small graphs whose links go anywhere, the root and the node itself included, so that the
    // walk closes cycles, nodes hang from parents at their own level or in no level, and slots
    // collide. Tracks are repeated or missing. Records may start anywhere, zeros of both signs
    // and NaN among the places.
    std::mt19937 rng(2025);
    const double places[] = {0.0, -0.0, 0.09375, -0.1875, std::numeric_limits<double>::quiet_NaN(), 5.5};
    for (int round = 0; round < 8000; ++round) {
        GraphBuilder g;
        const int chan = g.channel(L"V1");
        const uint32_t n = 3 + rng() % 12;
        std::vector<Zk::Ptr<EffectInstance_opu4h5a4j>> fx;
        for (uint32_t i = 1; i <= n; ++i)
            fx.push_back(g.effect(i, i == n ? 0 : 1 + rng() % 2));
        for (auto& e : fx) {
            for (unsigned k = 0; k < e->getNumInputs(); ++k) {
                if (rng() % 8 != 0)
                    GraphBuilder::link(e, k, fx[rng() % n]);
                if (rng() % 5 == 0)
                    e->input(k).track = IdStamp();
                else if (k > 0 && rng() % 5 == 0)
                    e->input(k).track = e->input(k - 1).track;
            }
        }
        g.graphEvent(chan, 0, 10, fx[0]);

        TidyCase run;
        run.edit = g.edit;
        run.root = fx[0]->getId();
        run.orientation = rng() % 2 ? LeftToRight : BottomToTop;
        run.origin = XY<double>(places[rng() % 4], places[rng() % 4]);
        if (rng() % 3 == 0) {
            run.depth = 0.2502;
            run.sibling = 0.25;
        }
        if (rng() % 4 == 0)
            run.startInput = 0;
        if (rng() % 2) {
            std::vector<std::pair<uint32_t, XY<double>>> starts;
            for (uint32_t i = 1; i <= n; ++i)
                if (rng() % 2)
                    starts.emplace_back(i, XY<double>(places[rng() % 6], places[rng() % 6]));
            run.preset = [starts](EditPosSource& source) {
                for (const auto& [i, p] : starts)
                    source.getPosRecForNode(IdStamp(1, 0, i))->setPos(p.x, p.y, false);
            };
        }
        expectSame(run, "round " + std::to_string(round));
        if (HasFailure())
            return;
    }
}

TEST(TreeTidierSideBySide, TwinNodesAndWalksFromDeepWithin) {
    // Two objects under one id (a node and a stray copy linked in its place somewhere) share a
    // record but not their inputs or tracks; walks start up to four steps below the root, so
    // that the path above them closes cycles.
    std::mt19937 rng(77);
    for (int round = 0; round < 3000; ++round) {
        GraphBuilder g;
        const int chan = g.channel(L"V1");
        const uint32_t n = 3 + rng() % 10;
        std::vector<Zk::Ptr<EffectInstance_opu4h5a4j>> fx;
        for (uint32_t i = 1; i <= n; ++i)
            fx.push_back(g.effect(i, 1 + rng() % 3));
        std::vector<Zk::Ptr<EffectInstance_opu4h5a4j>> twins;
        for (int t = 0; t < 2; ++t) {
            auto twin = Zk::make<EffectInstance_opu4h5a4j>(fx[rng() % n]->getId());
            twin->setNumInputs(rng() % 3);
            for (unsigned k = 0; k < twin->getNumInputs(); ++k)
                twin->input(k).track = rng() % 3 ? g.edit->newTrackId() : IdStamp();
            twins.push_back(twin);
        }
        auto any = [&]() -> Zk::Ptr<FXGraphNodeBase> {
            if (rng() % 6 == 0)
                return twins[rng() % twins.size()];
            return fx[rng() % n];
        };
        for (auto& e : fx)
            for (unsigned k = 0; k < e->getNumInputs(); ++k)
                if (rng() % 6 != 0)
                    GraphBuilder::link(e, k, any());
        for (auto& t : twins)
            for (unsigned k = 0; k < t->getNumInputs(); ++k)
                if (rng() % 2)
                    t->input(k).node = fx[rng() % n];
        g.graphEvent(chan, 0, 10, fx[0]);

        TidyCase run;
        run.edit = g.edit;
        run.root = fx[0]->getId();
        run.orientation = rng() % 2 ? LeftToRight : BottomToTop;
        for (unsigned steps = rng() % 5; steps > 0; --steps)
            run.startPath.push_back(rng() % 3);
        expectSame(run, "round " + std::to_string(round));
        if (HasFailure())
            return;
    }
}
