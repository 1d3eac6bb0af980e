// The node UI manager and its records: messages, deletion order, sweeps of dead records, the
// bytes of "N" and "L", copying, and the table of classes.
#include <gtest/gtest.h>

#include "host/PStream.h"
#include "host/StreamClassRegistrar.h"
#include "host/StreamFile.h"
#include "nodeui/NodeUIPosManager.h"
#include "nodeui/NodeUIPosRec.h"
#include "tests/nodeui/NodeUITestSupport.h"
#include "tests/nodeui/StreamTestSupport.h"

namespace {

std::string packed(const Streamable& obj) {
    StreamFile f;
    PStream s(&f);
    obj.STRM_hierarchyPack(s);
    EXPECT_FALSE(s.inError()) << s.errors.c_str();
    return f.bytes();
}

Zk::Ptr<NodeUIPosManager> unpackManager(const std::string& bytes, std::string* errors = nullptr) {
    StreamFile f(bytes);
    PStream s(&f);
    Zk::Ptr<Streamable> obj = NodeUIPosManager::STRM_L_NodeUIPosManager_builder(s);
    if (errors)
        *errors = s.errors.str();
    return Zk::dynamicCast<NodeUIPosManager>(obj);
}

// The whole chain of an empty position manager, by hand.
Bytes emptyManagerBytes() {
    Bytes b;
    b.header("$", 2, 0, 0, 15 + 4 + 15 + 4 + 15);
    b.header("T", 1, 0, 4, 4 + 15 + 4 + 15).str("");
    b.header("N", 1, 0, 4, 4 + 15).u32(0);
    b.header("J", 1, 0, 0, 0);
    return b;
}

TEST(NodeUIManager, MessagesAndDeletionOrder) {
    EditPtr edit = makeEdit(1, 3);
    Zk::Ptr<NodeUIPosManager> m = NodeUIPosManager::getManagerFor(edit);
    ASSERT_TRUE(m);
    EXPECT_EQ(NodeUIPosManager::getManagerFor(edit), m) << "one manager per edit, kept under its key";
    EXPECT_EQ(edit->openObjectInternal("NodePosManager").get(), static_cast<Taggable*>(m.get()));
    EXPECT_FALSE(NodeUIPosManager::getManagerFor(EditPtr()));

    ManagerEvents client;
    client.registerWith(m.get());
    edit->setDirty(false);
    NodeUIPosRec* a = m->getRec(node(1), edit->cookie());
    NodeUIPosRec* b = m->getRec(node(2), edit->cookie());
    EXPECT_EQ(m->getRec(node(1), edit->cookie()), a) << "found, not made again";
    EXPECT_TRUE(edit->isDirty());
    ASSERT_EQ(client.events.size(), 2u);
    EXPECT_EQ(client.events[0].what, "added");
    EXPECT_EQ(client.events[0].rec, a) << "the address travels as text and is scanned back";
    EXPECT_EQ(client.events[1].rec, b);

    m->sendGeneralUpdateNotification("hello");
    ASSERT_EQ(client.events.size(), 3u);
    EXPECT_EQ(client.events[2].what, "general:hello");

    client.events.clear();
    EXPECT_TRUE(m->deleteRec(a));
    ASSERT_EQ(client.events.size(), 1u);
    EXPECT_EQ(client.events[0].what, "deleted");
    EXPECT_EQ(client.events[0].rec, a);
    EXPECT_EQ(client.events[0].idAtTheTime, node(1)) << "the record was alive when the client heard";
    EXPECT_EQ(m->findRec(node(1)), nullptr);
    EXPECT_EQ(m->numRecs(), 1u);

    NodeUIPosRec stranger;
    EXPECT_FALSE(m->deleteRec(&stranger));
    EXPECT_EQ(client.events.size(), 1u);

    // Raised disables silence all three kinds, and nothing is queued.
    ++m->disabled_;
    ++m->disabled_;
    NodeUIPosRec* c = m->getRec(node(3), edit->cookie());
    m->sendGeneralUpdateNotification("quiet");
    m->deleteRec(c);
    --m->disabled_;
    m->sendGeneralUpdateNotification("still quiet");
    --m->disabled_;
    EXPECT_EQ(client.events.size(), 1u) << "nested disables";
    m->sendGeneralUpdateNotification("back");
    EXPECT_EQ(client.events.back().what, "general:back");

    client.registerWith(nullptr);
    m->sendGeneralUpdateNotification("gone");
    EXPECT_EQ(client.events.back().what, "general:back");
}

TEST(NodeUIManager, EmptyManagerBytesAndCopies) {
    EditPtr edit = makeEdit(2, 0);
    Zk::Ptr<NodeUIPosManager> m = NodeUIPosManager::getManagerFor(edit);
    EXPECT_EQ(packed(*m), emptyManagerBytes().bytes()) << "count 0 and an empty J layer";
    EXPECT_EQ(m->hierarchyName(false, true), "$.T.N.J");
    EXPECT_EQ(m->hierarchyName(false, false), "Streamable.Taggable.NodeUIManagerBase.NodeUIPosManager");
    EXPECT_NE(StreamClassRegistrar::find("$.T.N.J"), nullptr);
    EXPECT_NE(StreamClassRegistrar::find("$.L.K"), nullptr);

    m->getRec(node(1), Cookie());
    Zk::Ptr<Streamable> copy = m->clone(Streamable::buildForClone);
    auto* cm = dynamic_cast<NodeUIPosManager*>(copy.get());
    ASSERT_NE(cm, nullptr);
    EXPECT_EQ(cm->numRecs(), 0u) << "a clone is empty";
    EXPECT_FALSE(cm->getEditH());

    // The manager's assignment hands the records themselves over.
    NodeUIPosRec* r = m->findRec(node(1));
    NodeUIPosManager* target = cm;
    *target = *m;
    EXPECT_EQ(target->findRec(node(1)), r);
    EXPECT_EQ(m->numRecs(), 0u);
}

TEST(NodeUIManager, DeadRecordsAreSweptSilentlyOnPackAndSetEdit) {
    EditPtr edit = makeEdit(3, 3);
    Zk::Ptr<NodeUIPosManager> m = NodeUIPosManager::getManagerFor(edit);
    m->getRec(node(1), edit->cookie());
    m->getRec(node(2), edit->cookie());
    m->getRec(node(3), Cookie(Cookie::EditKind, IdStamp(1, 0, 99))); // its host edit is not open
    ManagerEvents client;
    client.registerWith(m.get());

    edit->removeNode(node(2));
    EXPECT_EQ(m->numRecs(), 3u) << "a record whose node went stays until the next sweep";
    std::string bytes = packed(*m);
    EXPECT_EQ(m->numRecs(), 1u);
    EXPECT_TRUE(client.events.empty()) << "the sweep sends nothing";
    EXPECT_EQ(packed(*m), bytes) << "a pack that swept writes what a pack of the survivors writes";
    Zk::Ptr<NodeUIPosManager> back = unpackManager(bytes);
    ASSERT_TRUE(back);
    EXPECT_EQ(back->numRecs(), 1u);
    EXPECT_NE(back->findRec(node(1)), nullptr);

    // A manager read from a file meets its edit once: dead records go then.
    m->getRec(node(3), Cookie(Cookie::EditKind, IdStamp(1, 0, 99)));
    EditPtr other = makeEdit(4, 0);
    ++m->disabled_;
    std::string withDead;
    {
        // Pack while the dead host is open, so the record is saved.
        EditPtr host = makeEdit(99, 3);
        withDead = packed(*m);
    }
    --m->disabled_;
    Zk::Ptr<NodeUIPosManager> loaded = unpackManager(withDead);
    ASSERT_TRUE(loaded);
    EXPECT_EQ(loaded->numRecs(), 2u);
    EXPECT_FALSE(loaded->getEditH());
    other->bindObjectToEdit(Zk::Ptr<Taggable>(loaded.get()), "NodePosManager");
    ManagerEvents loadedClient;
    loadedClient.registerWith(loaded.get());
    EXPECT_EQ(NodeUIPosManager::getManagerFor(other), loaded);
    EXPECT_EQ(loaded->getEditH().get(), other.get());
    EXPECT_EQ(loaded->numRecs(), 1u) << "the record of the closed host edit went at setEdit";
    EXPECT_TRUE(loadedClient.events.empty());
    EXPECT_EQ(NodeUIPosManager::getManagerFor(edit), m) << "setEdit a second time changes nothing";
    EXPECT_EQ(m->getEditH().get(), edit.get());
}

TEST(NodeUIManager, RecordsOfInterleavedHostEditsKeepTheirOwn) {
    // Records of two live host edits and a closed one, interleaved: the sweep and the cookies
    // written follow each record, not the record before it.
    EditPtr a = makeEdit(6, 6);
    EditPtr b = makeEdit(7, 6);
    const Cookie closed(Cookie::EditKind, IdStamp(1, 0, 98));
    Zk::Ptr<NodeUIPosManager> m = NodeUIPosManager::getManagerFor(a);
    m->getRec(node(1), a->cookie());
    m->getRec(node(2), b->cookie());
    m->getRec(node(3), closed);
    m->getRec(node(4), b->cookie());
    m->getRec(node(5), a->cookie());
    b->removeNode(node(4));
    const std::string bytes = packed(*m);
    ASSERT_EQ(m->numRecs(), 3u);
    Zk::Ptr<NodeUIPosManager> back = unpackManager(bytes);
    ASSERT_TRUE(back);
    ASSERT_EQ(back->numRecs(), 3u);
    EXPECT_EQ(back->findRec(node(1))->getHostEditCookie(), a->cookie());
    EXPECT_EQ(back->findRec(node(2))->getHostEditCookie(), b->cookie());
    EXPECT_EQ(back->findRec(node(5))->getHostEditCookie(), a->cookie());
    EXPECT_EQ(packed(*back), bytes) << "read and written again, byte for byte";
}

TEST(NodeUIManager, RecordLayerAndRevisions) {
    EditPtr edit = makeEdit(5, 2);
    Zk::Ptr<NodeUIPosManager> m = NodeUIPosManager::getManagerFor(edit);
    NodeUIPosRec* r = m->getRec(node(2), edit->cookie());
    std::string rec = packed(*r);
    Bytes want;
    const std::string cookie = "E1.0.5";
    const unsigned lBody = 1 + 12 + 4 + cookie.size(), kBody = 33;
    want.header("$", 2, 0, 0, 15 + lBody + 15 + kBody);
    want.header("L", 1, 1, lBody, lBody + 15 + kBody).u8(2).u32(10).u32(0).u32(2).str(cookie);
    want.header("K", 1, 0, kBody, kBody).f64(0).f64(0).f64(0).f64(0).u8(0);
    EXPECT_EQ(rec, want.bytes());

    // An "L" of revision 1.0 has no host edit: the default cookie, read as 1.1 from then on.
    Bytes old;
    old.header("$", 2, 0, 0, 15 + 13 + 15 + kBody);
    old.header("L", 1, 0, 13, 13 + 15 + kBody).u8(2).u32(10).u32(0).u32(1);
    old.header("K", 1, 0, kBody, kBody).f64(1).f64(2).f64(0).f64(0).u8(0);
    NodeUIPosRec back;
    StreamFile f(old.bytes());
    PStream s(&f);
    EXPECT_EQ(back.STRM_hierarchyUnpack(s), StreamableTraitsBase::statusUnpacked) << s.errors.c_str();
    EXPECT_EQ(back.getNodeId(), node(1));
    EXPECT_EQ(back.getHostEditCookie(), Cookie());
    EXPECT_EQ(back.NodeUIRecBase::revisionMinor(), 1);
    EXPECT_EQ(back.x(), 1.0);

    // Stamp version 1 is the short form.
    Bytes v1;
    v1.header("$", 2, 0, 0, 15 + 9 + 4).header("L", 1, 0, 9, 9).u8(1).u16(7).u16(8).u32(9);
    NodeUIPosRec shortStamp;
    StreamFile g(v1.bytes());
    PStream t(&g);
    shortStamp.STRM_hierarchyUnpack(t);
    EXPECT_EQ(shortStamp.getNodeId(), IdStamp(7, 8, 9));

    // clone copies the L part and gives fresh servers; operator= of the base copies id and cookie.
    r->setPos(4, 5, false);
    Zk::Ptr<Streamable> c = r->clone(Streamable::buildForClone);
    auto* cr = dynamic_cast<NodeUIPosRec*>(c.get());
    ASSERT_NE(cr, nullptr);
    EXPECT_EQ(cr->getNodeId(), node(2));
    EXPECT_EQ(cr->getHostEditCookie(), edit->cookie());
    EXPECT_EQ(cr->x(), 0.0);
}

TEST(NodeUIManager, DuplicatesAndFactoryWithoutRecords) {
    LogCapture log;
    // Two records of one node, by hand: findRec gives the earlier.
    auto recBytes = [](uint32_t id, double x) {
        Bytes b;
        const std::string cookie = "-";
        const unsigned lBody = 1 + 12 + 4 + 1;
        b.header("$", 2, 0, 0, 15 + lBody + 15 + 33);
        b.header("L", 1, 1, lBody, lBody + 15 + 33).u8(2).u32(10).u32(0).u32(id).str(cookie);
        b.header("K", 1, 0, 33, 33).f64(x).f64(0).f64(0).f64(0).u8(0);
        return b.bytes();
    };
    std::string body = Bytes().u32(2).bytes() + recBytes(1, 1.0) + recBytes(1, 2.0);
    const unsigned n = body.size();
    Bytes b;
    b.header("$", 2, 0, 0, 15 + 4 + 15 + n + 15);
    b.header("T", 1, 0, 4, 4 + 15 + n + 15).str("");
    b.header("N", 1, 0, n, n + 15).raw(body);
    b.header("J", 1, 0, 0, 0);
    Zk::Ptr<NodeUIPosManager> m = unpackManager(b.bytes());
    ASSERT_TRUE(m);
    EXPECT_EQ(m->numRecs(), 2u);
    EXPECT_EQ(m->findRec(node(1))->x(), 1.0);

    // The base manager makes no records: each round says so and reads nothing.
    const StreamClassRegistrar* base = StreamClassRegistrar::find("$.T.N");
    ASSERT_NE(base, nullptr);
    Bytes nb;
    nb.header("$", 2, 0, 0, 15 + 4 + 15 + n).header("T", 1, 0, 4, 4 + 15 + n).str("");
    nb.header("N", 1, 0, n, n).raw(body);
    StreamFile f(nb.bytes());
    PStream s(&f);
    Zk::Ptr<Streamable> obj = base->builder()(s);
    EXPECT_NE(obj, nullptr);
    ASSERT_EQ(log.lines.size(), 3u) << log.all();
    EXPECT_EQ(log.lines[0], "Danger Will Robinson! ::createNewNodeRec() returned NULL!\n");
    EXPECT_EQ(log.lines[1], log.lines[0]);
    EXPECT_NE(log.lines[2].find("bytes unread"), std::string::npos) << "the records stay unread";
}

} // namespace
