// The tools' position source: one record per node of the edit, kept where it was made while the
// source grows, and none for an id the edit does not hold.
#include "refhost/edit/EditPosSource.h"

#include <gtest/gtest.h>

#include <vector>

#include "refhost/edit/EditGenerator.h"

TEST(EditPosSource, OneLastingRecordPerNodeOfTheEdit) {
    GeneratorOptions o;
    o.seed = 3;
    o.nodes = 5000;
    EditPtr edit = generateEdit(o);
    EditPosSource source(edit, VidRouting::Orientations::BottomToTop);
    EXPECT_EQ(source.getOrientation(), VidRouting::Orientations::BottomToTop);

    // Records are asked for in an order unlike that of their ids, across many growths of the
    // table, and each keeps its address and its position.
    std::vector<IdStamp> ids;
    for (const auto& [id, node] : edit->nodes())
        ids.push_back(id);
    ASSERT_GT(ids.size(), 4000u);
    std::vector<NodeUIPosRec*> first;
    for (size_t k = 0; k < ids.size(); ++k) {
        const IdStamp& id = ids[(k * 7919) % ids.size()];
        NodeUIPosRec* rec = source.getPosRecForNode(id);
        ASSERT_NE(rec, nullptr);
        rec->setPos(static_cast<double>(k), -static_cast<double>(k), false);
        first.push_back(rec);
    }
    ASSERT_EQ(source.records().size(), ids.size()) << "7919 is prime to the count: every id once";
    for (size_t k = 0; k < ids.size(); ++k) {
        const IdStamp& id = ids[(k * 7919) % ids.size()];
        EXPECT_EQ(source.getPosRecForNode(id), first[k]);
        EXPECT_EQ(source.records()[k].first, id) << "in the order asked for";
        EXPECT_EQ(source.records()[k].second, first[k]);
        EXPECT_EQ(first[k]->x(), static_cast<double>(k));
    }

    // Ids that no node of the edit has get nothing, and nothing is kept for them.
    EXPECT_EQ(source.getPosRecForNode(IdStamp(999, 0, 1)), nullptr);
    EXPECT_EQ(source.getPosRecForNode(IdStamp()), nullptr);
    EXPECT_EQ(source.records().size(), ids.size());
}

TEST(EditPosSource, WithoutAnEditHoldsNothing) {
    EditPosSource source(EditPtr(), VidRouting::Orientations::LeftToRight);
    EXPECT_EQ(source.getPosRecForNode(IdStamp(1, 0, 1)), nullptr);
    EXPECT_TRUE(source.records().empty());
}
