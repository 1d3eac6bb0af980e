// Finding records by id: whatever happens to the lists, findRec gives what a walk of the list
// gives, the first record of the id.
#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "host/PStream.h"
#include "host/StreamFile.h"
#include "nodeui/NodeUIPosManager.h"
#include "nodeui/NodeUIPosRec.h"
#include "tests/nodeui/NodeUITestSupport.h"

namespace {

NodeUIRecBase* scan(const NodeUIPosManager& m, const IdStamp& id) {
    for (NodeUIRecBase* r = m.firstRec(); r; r = m.nextRec(r))
        if (r->getNodeId() == id)
            return r;
    return nullptr;
}

NodeUIRecBase* nth(const NodeUIPosManager& m, unsigned k) {
    NodeUIRecBase* r = m.firstRec();
    while (r && k--)
        r = m.nextRec(r);
    return r;
}

Zk::Ptr<NodeUIPosManager> reread(const NodeUIPosManager& m) {
    StreamFile out;
    PStream w(&out);
    w << m;
    StreamFile in(out.bytes());
    PStream r(&in);
    return Zk::dynamicCast<NodeUIPosManager>(NodeUIPosManager::STRM_L_NodeUIPosManager_builder(r));
}

} // namespace

TEST(NodeUIManagerIndex, FindsWhatAWalkFindsThroughEveryChange) {
    // Two managers of one edit under random changes: records made, deleted through the manager
    // and behind its back, renamed into duplicates, taken over by the other manager, and whole
    // managers read back from their bytes.
    EditPtr edit = makeEdit(1, 12);
    std::mt19937 rng(11);
    Zk::Ptr<NodeUIPosManager> managers[2] = {Zk::Ptr<NodeUIPosManager>(new NodeUIPosManager(edit)),
                                             Zk::Ptr<NodeUIPosManager>(new NodeUIPosManager(edit))};
    std::vector<Zk::Ptr<NodeUIPosManager>> retired;
    for (int step = 0; step < 3000; ++step) {
        NodeUIPosManager& m = *managers[rng() % 2];
        const unsigned op = rng() % 20;
        NodeUIRecBase* some = m.numRecs() ? nth(m, static_cast<unsigned>(rng() % m.numRecs())) : nullptr;
        if (op < 8) {
            m.getRec(node(1 + rng() % 12), edit->cookie());
        } else if (op < 11) {
            m.deleteRec(some);
        } else if (op < 15) {
            if (some)
                some->setNodeId(node(1 + rng() % 12));
        } else if (op < 17) {
            delete some;
        } else if (op < 18) {
            NodeUIPosManager& other = *managers[rng() % 2];
            m = other;
        } else if (op < 19) {
            Zk::Ptr<NodeUIPosManager>& slot = managers[&m == managers[0].get() ? 0 : 1];
            Zk::Ptr<NodeUIPosManager> back = reread(m);
            ASSERT_TRUE(back);
            // A record taken over by another manager still names the manager that made it, which
            // must therefore outlive it.
            retired.push_back(slot);
            slot = back;
        } else {
            m.findRec(node(1 + rng() % 12));
        }
        for (const auto& each : managers)
            for (uint32_t i = 1; i <= 13; ++i)
                ASSERT_EQ(each->findRec(node(i)), scan(*each, node(i))) << "step " << step << ", node " << i;
    }
}

TEST(NodeUIManagerIndex, TheEarlierOfTwoRecordsOfOneIdIsFound) {
    EditPtr edit = makeEdit(2, 3);
    Zk::Ptr<NodeUIPosManager> m = NodeUIPosManager::getManagerFor(edit);
    NodeUIPosRec* a = m->getRec(node(1), edit->cookie());
    NodeUIPosRec* b = m->getRec(node(2), edit->cookie());
    b->setNodeId(node(1));
    EXPECT_EQ(m->findRec(node(1)), a);
    EXPECT_EQ(m->getRec(node(1), edit->cookie()), a) << "no third record";
    m->deleteRec(a);
    EXPECT_EQ(m->findRec(node(1)), b) << "the later one comes first once the earlier has gone";
    EXPECT_EQ(m->findRec(node(2)), nullptr);
    EXPECT_EQ(m->numRecs(), 1u);
}
