// The layered stream format: layer headers, the writer's sizes, every failure of the reader,
// format 1 and its variable-width integers, names and the table of classes.
#include <gtest/gtest.h>

#include "host/DynamicIntegralStorage.h"
#include "host/PStream.h"
#include "host/StreamClassRegistrar.h"
#include "host/StreamFile.h"
#include "host/StreamableLayer.h"
#include "host/Taggable.h"
#include "tests/nodeui/StreamTestSupport.h"

namespace {

using St = StreamableTraitsBase;

// A layer whose body can be made to misbehave: write a newer or older revision, write more,
// read more, or fail.
class Probe : public Taggable {
public:
    Probe() = default;
    explicit Probe(BuilderType b) : Taggable(b) {}
    Probe(BuilderType b, const Probe& o) : Taggable(b, o), a(o.a), b(o.b) {}
    using Taggable::clone;

    uint32_t a = 0;
    double b = 0.0;

    static inline unsigned writeMinor = 1;     // minor 0 leaves out `b`
    static inline unsigned extraBytes = 0;     // written after the fields, as a newer revision would
    static inline unsigned readTooFar = 0;     // bytes read past the fields
    static inline bool ignoreRevision = false; // read `b` whatever the revision
    static inline bool failPack = false;       // the body puts the stream in error

    static void reset() {
        writeMinor = 1;
        extraBytes = 0;
        readTooFar = 0;
        ignoreRevision = false;
        failPack = false;
    }

    STRM_DECLARE_LAYER(Probe, Taggable);

private:
    void pack(PStream& s) const {
        revisionMinor(static_cast<unsigned char>(writeMinor));
        s.file->setUnsignedLong(a);
        if (writeMinor >= 1)
            s.file->setDouble(b);
        for (unsigned i = 0; i < extraBytes; ++i)
            s.file->setCookedChar('x');
        if (failPack)
            s.errors << "cannot write";
    }
    void unpack(PStream& s) {
        s.file->getUnsignedLong(a);
        if (a == 0xDEAD) {
            s.errors << "dead beef";
            return;
        }
        if (revisionMinor() >= 1 || ignoreRevision)
            s.file->getDouble(b);
        std::string skip;
        s.file->getBytes(skip, readTooFar);
    }
};

class ProbeChild : public Probe {
public:
    ProbeChild() = default;
    explicit ProbeChild(BuilderType b) : Probe(b) {}
    ProbeChild(BuilderType b, const ProbeChild& o) : Probe(b, o), c(o.c) {}
    using Taggable::clone;

    unsigned char c = 0;

    STRM_DECLARE_LAYER(ProbeChild, Probe);

private:
    void pack(PStream& s) const { s.file->setCookedChar(static_cast<char>(c)); }
    void unpack(PStream& s) { s.file->getUnsignedChar(c); }
};

STRM_DEFINE_LAYER(Probe, "P");
STRM_DEFINE_LAYER(ProbeChild, "C");

std::string packed(const Streamable& obj) {
    StreamFile f;
    PStream s(&f);
    EXPECT_EQ(obj.STRM_hierarchyPack(s), St::statusPacked);
    EXPECT_TRUE(s.errors.empty()) << s.errors.c_str();
    return f.bytes();
}

struct Read {
    St::eStatus status;
    std::string errors;
    unsigned position;
};

Read unpackInto(Streamable& obj, const std::string& bytes) {
    StreamFile f(bytes);
    PStream s(&f);
    St::eStatus st = obj.STRM_hierarchyUnpack(s);
    return {st, s.errors.str(), f.position()};
}

ProbeChild sample() {
    ProbeChild p;
    p.setTagTypeId("probe");
    p.a = 0x01020304;
    p.b = 2.5;
    p.c = 9;
    return p;
}

class StreamLayer : public ::testing::Test {
protected:
    void SetUp() override { Probe::reset(); }
    void TearDown() override { Probe::reset(); }
};

TEST_F(StreamLayer, WriterLaysOutHeadersAndSeeksBackForSizes) {
    std::string bytes = packed(sample());
    Bytes want;
    // Layer size counts the own body; chunk size runs from the same start to the end of the
    // derived layers. "T" body: string "probe" (9). "P" body: 4 + 8. "C" body: 1.
    const unsigned cHeader = 5 + 2 + 8, pHeader = 5 + 2 + 8, tHeader = 5 + 2 + 8;
    want.header("$", 2, 0, 0, tHeader + 9 + pHeader + 12 + cHeader + 1);
    want.header("T", 1, 0, 9, 9 + pHeader + 12 + cHeader + 1).str("probe");
    want.header("P", 1, 1, 12, 12 + cHeader + 1).u32(0x01020304).f64(2.5);
    want.header("C", 1, 0, 1, 1).u8(9);
    EXPECT_EQ(bytes, want.bytes()) << "root written as 2.0, each layer 1.0 unless its body says otherwise";

    ProbeChild back(Streamable::buildForUnpack);
    LogCapture log;
    Read r = unpackInto(back, bytes);
    EXPECT_EQ(r.status, St::statusUnpacked);
    EXPECT_EQ(r.errors, "");
    EXPECT_EQ(r.position, bytes.size());
    EXPECT_TRUE(log.lines.empty()) << log.all();
    EXPECT_EQ(back.tagTypeId(), "probe");
    EXPECT_EQ(back.a, 0x01020304u);
    EXPECT_EQ(back.b, 2.5);
    EXPECT_EQ(back.c, 9);
    EXPECT_EQ(back.Probe::revisionMinor(), 1);
    EXPECT_EQ(back.Streamable::revisionMajor(), 1) << "an empty root body leaves the object's revision alone";

    // Packing the read object again gives the same bytes.
    EXPECT_EQ(packed(back), bytes);
}

TEST_F(StreamLayer, WriterPassesFailureBackAndLeavesPlaceholders) {
    // The layer after the failing body is still written whole; every layer above it returns
    // at once with the header it wrote first: placeholders for the sizes, revision 1.0 even
    // where the body changes it (P 1.1, the root 2.0).
    Probe::failPack = true;
    StreamFile f;
    PStream s(&f);
    EXPECT_EQ(sample().STRM_hierarchyPack(s), St::statusFailed);
    EXPECT_EQ(s.errors.str(), "cannot write");
    Bytes want;
    want.header("$", 1, 0, 0xFFFFFFFF, 0xFFFFFFFF);
    want.header("T", 1, 0, 0xFFFFFFFF, 0xFFFFFFFF).str("probe");
    want.header("P", 1, 0, 0xFFFFFFFF, 0xFFFFFFFF).u32(0x01020304).f64(2.5);
    want.header("C", 1, 0, 1, 1).u8(9);
    EXPECT_EQ(f.bytes(), want.bytes());
    EXPECT_EQ(f.position(), f.size());

    // Read back, the root's header as first written says format 1, in which its placeholders
    // give a layer size of 0xFFFFFFFF after 12 bytes of sizes. The end wraps round to one byte
    // before the body: the root layer is an overread and the object is dropped.
    LogCapture log;
    ProbeChild back(Streamable::buildForUnpack);
    Read r = unpackInto(back, f.bytes());
    EXPECT_EQ(r.status, St::statusFailed);
    EXPECT_EQ(r.errors, "Error: Unpacker read beyond end of chunk while unpacking object "
                        "Streamable.Taggable.(anonymous namespace)::Probe.(anonymous namespace)::ProbeChild, "
                        "layer Streamable v1.0, 1 bytes overread.\n");
    EXPECT_EQ(r.position, 7u + 6 + 6) << "no seek: at the root's body";
    EXPECT_TRUE(log.lines.empty()) << log.all();
    StreamFile g(f.bytes());
    PStream t(&g);
    EXPECT_EQ(ProbeChild::STRM_L_ProbeChild_builder(t), nullptr);
}

TEST_F(StreamLayer, NamesAndTableOfClasses) {
    EXPECT_EQ(ProbeChild::layerName(), "(anonymous namespace)::ProbeChild");
    EXPECT_EQ(Streamable::layerName(), "Streamable");
    EXPECT_EQ(Taggable::layerName(), "Taggable");
    ProbeChild p;
    EXPECT_EQ(p.hierarchyName(false, true), "$.T.P.C");
    EXPECT_EQ(ProbeChild::subHierarchyName(false, true), "$.T.P.C");
    EXPECT_EQ(p.hierarchyName(false, false), ProbeChild::subHierarchyName(false, false));
    const Streamable& asBase = p;
    EXPECT_EQ(asBase.hierarchyName(true, true), "$.T.P.C") << "the dynamic class decides";
    EXPECT_EQ(Taggable::subHierarchyName(false, false), "Streamable.Taggable");

    const StreamClassRegistrar* byShort = StreamClassRegistrar::find("$.T.P.C");
    ASSERT_NE(byShort, nullptr);
    EXPECT_EQ(byShort, StreamClassRegistrar::find(ProbeChild::subHierarchyName(false, false)));
    EXPECT_EQ(byShort->builder(), &ProbeChild::STRM_L_ProbeChild_builder);
    EXPECT_EQ(StreamClassRegistrar::find("$.T.Nope"), nullptr);

    StreamFile f(packed(sample()));
    PStream s(&f);
    Zk::Ptr<Streamable> built = byShort->builder()(s);
    auto* child = dynamic_cast<ProbeChild*>(built.get());
    ASSERT_NE(child, nullptr);
    EXPECT_EQ(child->c, 9);

    // clone copies by the clone constructor; assign copies only from the same class.
    Zk::Ptr<Streamable> copy = sample().clone(Streamable::buildForClone);
    ASSERT_NE(dynamic_cast<ProbeChild*>(copy.get()), nullptr);
    EXPECT_EQ(dynamic_cast<ProbeChild*>(copy.get())->a, 0x01020304u);
    Probe target;
    Taggable other;
    target.assign(&other);
    EXPECT_EQ(target.a, 0u);
    ProbeChild source = sample();
    target.assign(&source);
    EXPECT_EQ(target.a, 0x01020304u);
}

TEST_F(StreamLayer, FailureTable) {
    LogCapture log;
    const std::string good = packed(sample());

    { // wrong short name: status 7, at chunkEnd, builder keeps what it has
        std::string bytes = good;
        std::size_t at = bytes.find(Bytes().str("P").bytes());
        ASSERT_NE(at, std::string::npos);
        bytes[at + 4] = 'Q';
        ProbeChild back(Streamable::buildForUnpack);
        Read r = unpackInto(back, bytes);
        EXPECT_EQ(r.status, St::statusWrongLayer);
        EXPECT_EQ(r.errors, "Expected short name 'P' for layer (anonymous namespace)::Probe, got Q.");
        EXPECT_EQ(r.position, bytes.size()) << "the chunk of P runs to the end of the object";
        EXPECT_EQ(back.tagTypeId(), "probe") << "layers before the wrong one were read";

        StreamFile f(bytes);
        PStream s(&f);
        EXPECT_NE(ProbeChild::STRM_L_ProbeChild_builder(s), nullptr) << "status 7 keeps the object";
    }
    { // the body set an error: status 6 at chunkEnd, builder drops the object
        ProbeChild p = sample();
        p.a = 0xDEAD;
        std::string bytes = packed(p);
        ProbeChild back(Streamable::buildForUnpack);
        Read r = unpackInto(back, bytes);
        EXPECT_EQ(r.status, St::statusFailed);
        EXPECT_EQ(r.errors, "dead beef");
        EXPECT_EQ(r.position, bytes.size());
        StreamFile f(bytes);
        PStream s(&f);
        EXPECT_EQ(ProbeChild::STRM_L_ProbeChild_builder(s), nullptr);
    }
    { // body reads too far: status 6, no seek
        Probe::readTooFar = 3;
        ProbeChild back(Streamable::buildForUnpack);
        Read r = unpackInto(back, good);
        EXPECT_EQ(r.status, St::statusFailed);
        EXPECT_EQ(r.errors,
                  "Error: Unpacker read beyond end of chunk while unpacking object "
                  "Streamable.Taggable.(anonymous namespace)::Probe.(anonymous namespace)::ProbeChild, "
                  "layer (anonymous namespace)::Probe v1.1, 3 bytes overread.\n");
        std::size_t pEnd = good.size() - 16;
        EXPECT_EQ(r.position, pEnd + 3) << "left where the body stopped";
        Probe::readTooFar = 0;
    }
    { // body reads too little: a warning only, status 3, at layerEnd
        Probe::extraBytes = 5;
        std::string bytes = packed(sample());
        Probe::extraBytes = 0;
        log.lines.clear();
        ProbeChild back(Streamable::buildForUnpack);
        Read r = unpackInto(back, bytes);
        EXPECT_EQ(r.status, St::statusUnpacked);
        EXPECT_EQ(r.errors, "");
        EXPECT_EQ(back.c, 9) << "the derived layer is read in step after the skipped bytes";
        ASSERT_EQ(log.lines.size(), 1u);
        EXPECT_EQ(log.lines[0],
                  "Warning: Not all object data was read while unpacking object "
                  "Streamable.Taggable.(anonymous namespace)::Probe.(anonymous namespace)::ProbeChild, "
                  "layer (anonymous namespace)::Probe v1.1, 5/17 bytes unread.\n");
    }
    { // unknown format in the root's major revision
        std::string bytes = good;
        bytes[5] = 3;
        ProbeChild back(Streamable::buildForUnpack);
        Read r = unpackInto(back, bytes);
        EXPECT_EQ(r.status, St::statusFailed);
        EXPECT_EQ(r.errors, "Unrecognized version for Streamable base");
        EXPECT_EQ(r.position, 7u) << "no seek: right after the revisions";
    }
    { // file cut inside a header: the missing sizes are 0xFFFFFFFF
        std::string bytes = good.substr(0, 15 + 15 + 9 + 5 + 2 + 3);
        ProbeChild back(Streamable::buildForUnpack);
        Read r = unpackInto(back, bytes);
        EXPECT_EQ(r.status, St::statusEndOfFile);
        EXPECT_EQ(r.errors, "Unexpected end-of-file while unpacking Streamable.Taggable.(anonymous "
                            "namespace)::Probe.(anonymous namespace)::ProbeChild, layer (anonymous "
                            "namespace)::Probe.");
        EXPECT_EQ(r.position, bytes.size());
        StreamFile f(bytes);
        PStream s(&f);
        EXPECT_NE(ProbeChild::STRM_L_ProbeChild_builder(s), nullptr) << "status 8 keeps the object";
    }
}

TEST_F(StreamLayer, HeaderEdgeCases) {
    LogCapture log;
    { // a layer size of 0 returns at once, whatever the name, and leaves the revision alone
        Bytes b;
        b.header("$", 2, 0, 0, 0).header("whatever", 7, 7, 0, 0);
        Taggable t(Streamable::buildForUnpack);
        Read r = unpackInto(t, b.bytes());
        EXPECT_EQ(r.status, St::statusUnpacked);
        EXPECT_EQ(r.errors, "");
        EXPECT_EQ(t.Taggable::revisionMajor(), 1);
        EXPECT_EQ(t.Taggable::revisionMinor(), 0);
    }
    { // a file ending exactly at a header with both sizes 0 is fine
        Bytes b;
        b.header("$", 2, 0, 0, 0);
        Streamable root(Streamable::buildForUnpack);
        Read r = unpackInto(root, b.bytes());
        EXPECT_EQ(r.status, St::statusUnpacked);
        EXPECT_EQ(r.errors, "");
    }
    { // an empty short name with a body: not read, a warning, then on at layerEnd
        Bytes b;
        b.header("$", 2, 0, 0, 30).header("", 1, 0, 6, 6).str("ab").header("P", 1, 1, 12, 12).u32(7).f64(1.0);
        Probe p(Streamable::buildForUnpack);
        Read r = unpackInto(p, b.bytes());
        EXPECT_EQ(r.status, St::statusUnpacked);
        EXPECT_EQ(p.tagTypeId(), "") << "the body was skipped";
        EXPECT_EQ(p.a, 7u);
        ASSERT_EQ(log.lines.size(), 1u);
        EXPECT_NE(log.lines[0].find("layer Taggable v1.0, 6/6 bytes unread."), std::string::npos)
            << log.lines[0];
        log.lines.clear();
    }
    { // the long name in place of the short one is accepted
        Bytes b;
        b.header("Streamable", 2, 0, 0, 0).header("Taggable", 1, 0, 5, 5).str("x");
        b.header(Probe::layerName().str(), 1, 0, 4, 4).u32(11);
        Probe p(Streamable::buildForUnpack);
        Read r = unpackInto(p, b.bytes());
        EXPECT_EQ(r.status, St::statusUnpacked) << r.errors;
        EXPECT_EQ(p.tagTypeId(), "x");
        EXPECT_EQ(p.a, 11u);
        EXPECT_EQ(p.Probe::revisionMinor(), 0) << "the revision of the header is stored";
    }
    { // a stream already in error reads no body
        Bytes b;
        b.header("$", 2, 0, 0, 0).header("T", 1, 0, 5, 5).str("x");
        StreamFile f(b.bytes());
        PStream s(&f);
        s.errors << "earlier";
        Taggable t(Streamable::buildForUnpack);
        EXPECT_EQ(t.STRM_hierarchyUnpack(s), St::statusUnpacked);
        EXPECT_EQ(t.tagTypeId(), "");
        EXPECT_EQ(f.position(), b.size());
        log.lines.clear();
    }
}

TEST_F(StreamLayer, OlderAndNewerRevisions) {
    LogCapture log;
    // An older writer (minor 0) left `b` out; the reader asks the revision and reads less.
    Probe::writeMinor = 0;
    ProbeChild old = sample();
    std::string bytes = packed(old);
    Probe::writeMinor = 1;
    ProbeChild back(Streamable::buildForUnpack);
    back.b = -1.0;
    Read r = unpackInto(back, bytes);
    EXPECT_EQ(r.status, St::statusUnpacked);
    EXPECT_EQ(back.b, -1.0) << "a field of a later revision keeps its value";
    EXPECT_EQ(back.c, 9);
    EXPECT_TRUE(log.lines.empty());

    // A reader that ignores the revision overruns into the next layer.
    Probe::ignoreRevision = true;
    ProbeChild naive(Streamable::buildForUnpack);
    r = unpackInto(naive, bytes);
    EXPECT_EQ(r.status, St::statusFailed);
    EXPECT_NE(r.errors.find("layer (anonymous namespace)::Probe v1.0, 8 bytes overread."), std::string::npos)
        << r.errors;

    // A newer writer (minor 2) wrote more than this reader knows: warned, then back in step.
    Probe::ignoreRevision = false;
    Probe::writeMinor = 2;
    Probe::extraBytes = 3;
    bytes = packed(sample());
    Probe::reset();
    ProbeChild newer(Streamable::buildForUnpack);
    r = unpackInto(newer, bytes);
    EXPECT_EQ(r.status, St::statusUnpacked);
    EXPECT_EQ(newer.b, 2.5);
    EXPECT_EQ(newer.c, 9);
    EXPECT_EQ(newer.Probe::revisionMinor(), 2);
    ASSERT_EQ(log.lines.size(), 1u);
    EXPECT_NE(log.lines[0].find("v1.2, 3/15 bytes unread"), std::string::npos) << log.lines[0];
}

TEST(DynamicIntegralStorage, WidthsAtTheThresholds) {
    auto bytesOf = [](auto storage) {
        StreamFile f;
        PStream s(&f);
        storage.write(s);
        return f.bytes();
    };
    using Rev = DynamicIntegralStorage<unsigned char, unsigned short>;
    using Size = DynamicIntegralStorage<unsigned short, unsigned int>;
    EXPECT_EQ(bytesOf(Rev(254)), Bytes().u8(254).bytes());
    EXPECT_EQ(bytesOf(Rev(255)), Bytes().u8(255).u16(255).bytes());
    EXPECT_EQ(bytesOf(Rev(300)), Bytes().u8(255).u16(300).bytes());
    EXPECT_EQ(bytesOf(Size(65534)), Bytes().u16(65534).bytes());
    EXPECT_EQ(bytesOf(Size(65535)), Bytes().u16(65535).u32(65535).bytes());
    EXPECT_EQ(bytesOf(Size(70000)), Bytes().u16(65535).u32(70000).bytes());

    for (unsigned v : {0u, 254u, 255u, 256u, 65534u, 65535u, 70000u, 0xFFFFFFFFu}) {
        StreamFile f(bytesOf(Size(v)));
        PStream s(&f);
        Size back(1);
        s >> back;
        EXPECT_EQ(back.value, v);
        EXPECT_TRUE(f.eof());
        if (v <= 0xFFFF) {
            StreamFile g(bytesOf(Rev(static_cast<unsigned short>(v))));
            PStream t(&g);
            Rev r;
            t >> r;
            EXPECT_EQ(r.value, v);
        }
    }
    // A storage cut after its escape keeps its value.
    StreamFile cut(Bytes().u16(65535).u16(1).bytes());
    PStream s(&cut);
    Size back(0xFFFFFFFF);
    s >> back;
    EXPECT_EQ(back.value, 0xFFFFFFFFu);
    EXPECT_TRUE(cut.eof());
}

TEST_F(StreamLayer, FormatOne) {
    LogCapture log;
    // The root says major 1: every layer after it uses the variable-width fields.
    auto rev = [](Bytes& b, unsigned v) {
        if (v < 255)
            b.u8(v);
        else
            b.u8(255).u16(v);
    };
    auto size = [](Bytes& b, unsigned v) {
        if (v < 65535)
            b.u16(v);
        else
            b.u16(65535).u32(v);
    };
    auto file = [&](unsigned pMajor, unsigned pMinor, unsigned pLayer) {
        Bytes b;
        b.str("$").u8(1).u8(0);
        size(b, 0);
        size(b, 0);
        b.str("T");
        rev(b, 1);
        rev(b, 0);
        size(b, 4);
        size(b, 4);
        b.u32(0);
        b.str("P");
        rev(b, pMajor);
        rev(b, pMinor);
        size(b, pLayer);
        size(b, pLayer);
        b.u32(5).f64(4.5);
        return b.bytes();
    };
    {
        Probe p(Streamable::buildForUnpack);
        Read r = unpackInto(p, file(1, 1, 12));
        EXPECT_EQ(r.status, St::statusUnpacked) << r.errors;
        EXPECT_EQ(p.a, 5u);
        EXPECT_EQ(p.b, 4.5);
    }
    {
        Probe p(Streamable::buildForUnpack);
        Read r = unpackInto(p, file(256, 1, 12));
        EXPECT_EQ(r.status, St::statusFailed);
        EXPECT_EQ(r.errors, " Strm1.0 Object has oversized major rev (P). ");
    }
    {
        Probe p(Streamable::buildForUnpack);
        Read r = unpackInto(p, file(1, 300, 12));
        EXPECT_EQ(r.status, St::statusFailed);
        EXPECT_EQ(r.errors, " Strm1.0 Object has oversized minor rev (P). ");
        EXPECT_EQ(p.a, 0u);
    }
    { // a layer size of 70000 takes the escape and 4 bytes; the reader is warned of the rest
        Probe p(Streamable::buildForUnpack);
        std::string bytes = file(1, 1, 70000) + std::string(70000 - 12, '\0');
        Read r = unpackInto(p, bytes);
        EXPECT_EQ(r.status, St::statusUnpacked) << r.errors;
        EXPECT_EQ(r.position, bytes.size());
        ASSERT_EQ(log.lines.size(), 1u);
        EXPECT_NE(log.lines[0].find("69988/70000 bytes unread"), std::string::npos) << log.lines[0];
    }
}

TEST_F(StreamLayer, EveryPrefixFailsCleanly) {
    LogCapture log;
    const std::string good = packed(sample());
    for (std::size_t n = 0; n < good.size(); ++n) {
        ProbeChild back(Streamable::buildForUnpack);
        StreamFile f(good.substr(0, n));
        PStream s(&f);
        log.lines.clear();
        St::eStatus st = back.STRM_hierarchyUnpack(s);
        bool shortRead = !log.lines.empty();
        EXPECT_TRUE(st != St::statusUnpacked || shortRead || !s.errors.empty())
            << "prefix of " << n << " bytes read as complete";
    }
}

TEST(PStreamStrings, LengthIsCheckedBeforeAnything) {
    StreamFile f;
    PStream w(&f);
    w << String("") << String("abc");
    EXPECT_EQ(f.bytes(), Bytes().str("").str("abc").bytes());

    // A length that claims more than the file holds reads nothing and ends the file.
    StreamFile huge(Bytes().u32(0xFFFFFFFF).raw("abc").bytes());
    PStream s(&huge);
    String out("keep");
    s >> out;
    EXPECT_EQ(out, "keep");
    EXPECT_TRUE(huge.eof());
}

} // namespace
