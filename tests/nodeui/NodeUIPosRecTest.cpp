// Position records: moving, their updates, the anchor, the copy quirk, "K" round trips, and an
// edit saved, loaded and saved again.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "host/PStream.h"
#include "host/StreamFile.h"
#include "nodeui/NodeUIPosManager.h"
#include "nodeui/NodeUIPosRec.h"
#include "refhost/core/Base64.h"
#include "refhost/edit/EditFile.h"
#include "refhost/stream/ChainShape.h"
#include "refhost/stream/EditObjectStore.h"
#include "tests/nodeui/NodeUITestSupport.h"
#include "tests/nodeui/StreamTestSupport.h"

namespace {

TEST(NodeUIPosRec, SetPosUpdatesOnceOrNotAtAll) {
    NodeUIPosRec r;
    RecUpdates updates;
    updates.registerWith(&r);
    ServerWatch wx, wy;
    wx.registerWith(&r.xServer());
    wy.registerWith(&r.yServer());

    r.setPos(0, 0, true);
    EXPECT_EQ(updates.count, 0) << "the same position does nothing";
    EXPECT_TRUE(wx.values.empty());

    r.setPos(1, 2, false);
    EXPECT_EQ(r.x(), 1.0);
    EXPECT_EQ(r.y(), 2.0);
    EXPECT_EQ(updates.count, 0) << "notify false sends no nodeRecUpdate";
    EXPECT_EQ(wx.values, std::vector<double>{1.0});
    EXPECT_EQ(wy.values, std::vector<double>{2.0}) << "clients of the servers still hear";

    r.setPos(XY<double>(3, 2), true);
    EXPECT_EQ(updates.count, 1) << "one update for the whole move";
    r.setPos(3, 2, true);
    EXPECT_EQ(updates.count, 1);

    const double nan = std::nan("");
    r.setPos(nan, 2, true);
    EXPECT_TRUE(std::isnan(r.x()));
    EXPECT_EQ(updates.count, 2);
    r.setPos(nan, 2, true);
    EXPECT_EQ(updates.count, 3) << "a NaN never equals, so it is always stored";

    // A change made on a server directly gives one update per server.
    r.xServer() = 5.0;
    r.yServer() = 6.0;
    EXPECT_EQ(updates.count, 5);
    ++r.disabled_;
    r.xServer() = 7.0;
    EXPECT_EQ(updates.count, 5) << "silent while disabled_ is raised";
    --r.disabled_;

    updates.registerWith(nullptr);
    r.setPos(0, 0, true);
    EXPECT_EQ(updates.count, 5);
}

namespace {

// Rounds every x to whole units and refuses negative ones.
struct WholeUnits : ValManagerBase<double> {
    bool requestValChange(ValServer<double>*, double& value) override {
        if (value < 0)
            return false;
        value = std::round(value);
        return true;
    }
    void releaseServer(ValServer<double>*) override {}
    using ValManagerBase<double>::setManagerFor;
};

} // namespace

TEST(NodeUIPosRec, AManagedServerStillHasTheLastWord) {
    // Nobody but the record listens to its servers here; the manager must be asked all the same.
    WholeUnits m; // outlives the record, whose server lets go of it on the way out
    NodeUIPosRec r;
    m.setManagerFor(&r.xServer());
    r.setPos(2.4, 1.5, false);
    EXPECT_EQ(r.x(), 2.0);
    EXPECT_EQ(r.y(), 1.5);
    r.setPos(-3.0, 7.0, false);
    EXPECT_EQ(r.x(), 2.0) << "refused";
    EXPECT_EQ(r.y(), 7.0);
}

TEST(NodeUIPosRec, ServersHandedOutLateBehaveAsIfWatchedFromTheStart) {
    EditPtr edit = makeEdit(21, 1);
    Zk::Ptr<NodeUIPosManager> m = NodeUIPosManager::getManagerFor(edit);
    NodeUIPosRec* r = m->getRec(node(1), edit->cookie(), 2, 3);
    RecUpdates updates;
    updates.registerWith(r);
    r->setPos(4, 5, false);
    EXPECT_EQ(updates.count, 0);
    ServerWatch wx;
    wx.registerWith(&r->xServer());
    EXPECT_EQ(r->numServers(), 2u) << "the record watches both of its servers";
    r->xServer() = 6.0;
    EXPECT_EQ(updates.count, 1) << "the record hears its server";
    EXPECT_EQ(wx.values, std::vector<double>{6.0});
    r->setPos(7, 8, true);
    EXPECT_EQ(updates.count, 2) << "one update for the move, the servers' own kept quiet";
    EXPECT_EQ(wx.values, (std::vector<double>{6.0, 7.0}));

    // A record that let go of a server it handed out registers with it again when it is read.
    StreamFile f;
    PStream w(&f);
    w << *r;
    NodeUIPosRec back;
    EXPECT_TRUE(back.deregisterFrom(&back.xServer()));
    EXPECT_EQ(back.numServers(), 1u);
    StreamFile g(f.bytes());
    PStream s(&g);
    s >> back;
    EXPECT_FALSE(s.inError()) << s.errors.c_str();
    EXPECT_EQ(back.numServers(), 2u);
    EXPECT_EQ(back.x(), 7.0);
}

TEST(NodeUIPosRec, AnchorAndFirstPosition) {
    EditPtr edit = makeEdit(20, 2);
    Zk::Ptr<NodeUIPosManager> m = NodeUIPosManager::getManagerFor(edit);
    NodeUIPosRec* a = m->getRec(node(1), edit->cookie(), 0, 0);
    EXPECT_TRUE(a->hasAnchor()) << "the anchor is set even at the origin";
    EXPECT_EQ(a->x(), 0.0);
    NodeUIPosRec* b = m->getRec(node(2), edit->cookie(), 3, -4);
    EXPECT_EQ(b->x(), 3.0);
    EXPECT_EQ(b->y(), -4.0);
    EXPECT_EQ(b->anchorX(), 3.0);
    EXPECT_EQ(b->anchorY(), -4.0);
    EXPECT_EQ(m->getRec(node(2), edit->cookie(), 9, 9), b);
    EXPECT_EQ(b->x(), 3.0) << "an existing record ignores the position";

    NodeUIPosRec plain;
    plain.setAnchor(1, 1);
    EXPECT_TRUE(plain.hasAnchor());
}

TEST(NodeUIPosRec, AssignCopiesYIntoX) {
    NodeUIPosRec from;
    from.setPos(3, 7, false);
    from.setAnchor(1, 2);
    from.visitMark_ = 4;
    NodeUIPosRec to;
    RecUpdates updates;
    updates.registerWith(&to);
    ServerWatch wx, wy;
    wx.registerWith(&to.xServer());
    wy.registerWith(&to.yServer());
    to.assign(&from);
    EXPECT_EQ(to.x(), 7.0) << "x takes the other record's y, as the format's owners always did";
    EXPECT_EQ(to.y(), 7.0);
    EXPECT_EQ(to.anchorX(), 1.0);
    EXPECT_EQ(to.anchorY(), 2.0);
    EXPECT_TRUE(to.hasAnchor());
    EXPECT_EQ(to.visitMark_, 4);
    EXPECT_EQ(updates.count, 0);
    EXPECT_TRUE(wx.values.empty() && wy.values.empty()) << "the copy is written in place, heard by no one";
    Streamable other;
    to.assign(&other);
    EXPECT_EQ(to.x(), 7.0) << "another class is ignored";

    // The quirk holds for a record assigned to itself as well.
    NodeUIPosRec self;
    self.setPos(3, 7, false);
    const NodeUIPosRec& alias = self;
    self = alias;
    EXPECT_EQ(self.x(), 7.0);
}

TEST(NodeUIPosRec, RoundTripThroughK) {
    NodeUIPosRec r;
    r.setPos(-1.5, 1e9, false);
    r.setAnchor(0.25, -0.125);
    r.visitMark_ = 3;
    StreamFile f;
    PStream w(&f);
    w << r;
    NodeUIPosRec back;
    RecUpdates updates;
    updates.registerWith(&back);
    StreamFile g(f.bytes());
    PStream s(&g);
    s >> back;
    EXPECT_FALSE(s.inError()) << s.errors.c_str();
    EXPECT_EQ(back.x(), -1.5);
    EXPECT_EQ(back.y(), 1e9);
    EXPECT_EQ(back.anchorX(), 0.25);
    EXPECT_EQ(back.anchorY(), -0.125);
    EXPECT_TRUE(back.hasAnchor());
    EXPECT_EQ(back.visitMark_, 0) << "the mark is not saved";
    EXPECT_EQ(updates.count, 2) << "reading assigns both servers, each heard";

    // Any byte other than 0 is a set anchor; the servers stay watched after a read.
    std::string bytes = f.bytes();
    bytes.back() = 5;
    NodeUIPosRec odd;
    StreamFile h(bytes);
    PStream t(&h);
    t >> odd;
    EXPECT_TRUE(odd.hasAnchor());
    RecUpdates oddUpdates;
    oddUpdates.registerWith(&odd);
    odd.xServer() = 1.0;
    EXPECT_EQ(oddUpdates.count, 1);
}

TEST(EditObjects, SaveLoadSaveIsByteForByte) {
    const std::string path = std::string(NODEDESK_SOURCE_DIR) + "/samples/chain.edit.json";
    std::string error;
    std::string first, store;
    {
        EditPtr edit = EditFile::open(path, error);
        ASSERT_TRUE(edit) << error;
        Zk::Ptr<NodeUIPosManager> m = NodeUIPosManager::getManagerFor(edit);
        m->getRec(IdStamp(10, 0, 1), edit->cookie(), 0.5, -0.25);
        m->getRec(IdStamp(10, 0, 2), edit->cookie())->setPos(1.0 / 3, 2, false);
        m->getRec(IdStamp(10, 0, 77), edit->cookie()); // no such node: not saved
        first = EditFile::saveToText(*edit);
        store = packEditObjects(*edit);
        EXPECT_EQ(m->numRecs(), 2u);
    }
    EditPtr again(new Edit);
    ASSERT_TRUE(EditFile::loadFromText(first, "first", *again, error)) << error;
    Zk::Ptr<NodeUIPosManager> m = NodeUIPosManager::getManagerFor(again);
    ASSERT_TRUE(m);
    ASSERT_EQ(m->numRecs(), 2u);
    EXPECT_EQ(m->findRec(IdStamp(10, 0, 2))->x(), 1.0 / 3);
    EXPECT_EQ(EditFile::saveToText(*again), first);

    // The store of all objects gives the same bytes again too.
    EditPtr third = makeEdit(1, 0);
    ASSERT_TRUE(unpackEditObjects(*third, store, error)) << error;
    EXPECT_EQ(packEditObjects(*third), store);
    EXPECT_FALSE(unpackEditObjects(*third, store.substr(0, store.size() - 1), error));
    EXPECT_FALSE(error.empty());
}

// The offsets of the headers of an object's top chain, all in format 2.
std::vector<size_t> headerOffsets(const std::string& bytes) {
    auto u32 = [&](size_t at) {
        uint32_t v = 0;
        for (int i = 3; i >= 0; --i)
            v = (v << 8) | static_cast<unsigned char>(bytes[at + static_cast<size_t>(i)]);
        return v;
    };
    std::vector<size_t> out;
    for (size_t at = 0; at + 4 <= bytes.size();) {
        out.push_back(at);
        const size_t body = at + 4 + u32(at) + 10;
        at = body + u32(body - 8);
    }
    return out;
}

std::string storedManager(EditPtr& edit) {
    edit = makeEdit(1, 2);
    Zk::Ptr<NodeUIPosManager> m = NodeUIPosManager::getManagerFor(edit);
    m->getRec(node(1), edit->cookie(), 0.5, -0.25);
    m->getRec(node(2), edit->cookie(), 1.5, 2.0);
    return packEditObject(*edit, "NodePosManager");
}

TEST(EditObjects, ALayerFromANewerRevisionCostsOnlyItself) {
    EditPtr edit;
    std::string bytes = storedManager(edit);
    // A later revision derives one more class: its layer follows "J" inside every chunk.
    Bytes extra;
    extra.header("Z", 1, 0, 8, 8).f64(42.0);
    for (size_t at : headerOffsets(bytes)) {
        const size_t chunkField = at + 4 + static_cast<unsigned char>(bytes[at]) + 6;
        uint32_t chunk = 0;
        std::memcpy(&chunk, &bytes[chunkField], 4);
        chunk += static_cast<uint32_t>(extra.size());
        std::memcpy(&bytes[chunkField], &chunk, 4);
    }
    bytes += extra.bytes();
    ASSERT_EQ(ChainShape(bytes).shortPath(), "$.T.N.J.Z");
    ASSERT_TRUE(ChainShape(bytes).complete());

    std::string text = "{\"objects\": {\"NodePosManager\": \"" + base64Encode(bytes) + "\"}}";
    EditPtr loaded(new Edit);
    std::string error;
    ASSERT_TRUE(EditFile::loadFromText(text, "newer.json", *loaded, error)) << error;
    auto m = Zk::dynamicCast<NodeUIPosManager>(loaded->openObjectInternal("NodePosManager"));
    ASSERT_TRUE(m) << "read as the class its key names";
    EXPECT_EQ(m->numRecs(), 2u);
    ASSERT_TRUE(m->findRec(node(2)));
    EXPECT_EQ(m->findRec(node(2))->y(), 2.0);
}

TEST(EditObjects, AnObjectCutBeforeItsLastLayerKeepsItsClassAndRecords) {
    EditPtr edit;
    const std::string bytes = storedManager(edit);
    const std::vector<size_t> headers = headerOffsets(bytes);
    ASSERT_EQ(headers.size(), 4u) << "$, T, N, J";
    const std::string cut = bytes.substr(0, headers.back() + 3);

    EditPtr into = makeEdit(1, 0);
    std::string error;
    LogCapture log;
    ASSERT_TRUE(unpackEditObject(*into, "NodePosManager", cut, error)) << error;
    auto m = Zk::dynamicCast<NodeUIPosManager>(into->openObjectInternal("NodePosManager"));
    ASSERT_TRUE(m) << "not a base class whose reader drops the records";
    EXPECT_EQ(m->numRecs(), 2u);
    EXPECT_NE(log.all().find("Unexpected end-of-file"), std::string::npos) << log.all();
}

} // namespace
