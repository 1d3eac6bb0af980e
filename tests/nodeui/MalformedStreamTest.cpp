// Bad bytes: every file of tests/data/malformed gives the status and words it should, every
// prefix of every valid sample fails cleanly, and nodedesk-strm tells a stream from anything else.
#include <gtest/gtest.h>

#include "../support/ProgramRun.h"

#include <cstdio>
#include <string>

#include "host/PStream.h"
#include "host/PStreamObserver.h"
#include "host/StreamClassRegistrar.h"
#include "host/StreamFile.h"
#include "nodeui/NodeUIPosManager.h"
#include "tests/nodeui/StreamTestSupport.h"

namespace {

// Remembers the status of the outermost object.
struct OuterStatus : PStreamObserver {
    void objectBegin(const String&, unsigned) override { ++depth; }
    void layerHeader(const LayerHeader&) override {}
    void objectEnd(int s, unsigned) override {
        if (--depth == 0)
            status = s;
    }
    int depth = 0;
    int status = -1;
};

struct Outcome {
    int status;
    std::string errors;
    std::string log;
    bool built;
};

Outcome readAs(const char* shortPath, const std::string& bytes) {
    const StreamClassRegistrar* cls = StreamClassRegistrar::find(shortPath);
    EXPECT_NE(cls, nullptr) << shortPath;
    LogCapture log;
    StreamFile f(bytes);
    PStream s(&f);
    OuterStatus outer;
    s.observer = &outer;
    Zk::Ptr<Streamable> obj = cls->builder()(s);
    return {outer.status, s.errors.str(), log.all(), static_cast<bool>(obj)};
}

std::string fileBytes(const std::string& relative) {
    StreamFile f;
    std::string error;
    EXPECT_TRUE(f.load(std::string(NODEDESK_SOURCE_DIR) + "/" + relative, error)) << error;
    return f.bytes();
}

TEST(MalformedStreams, EachFileGivesItsStatusAndWords) {
    struct Case {
        const char* file;
        const char* cls;
        int status;
        const char* words; // in the error text, or in the log when `inLog`
        bool inLog;
        bool built;
    };
    const Case cases[] = {
        {"truncated-in-header", "$.T.N.J", 8,
         "Unexpected end-of-file while unpacking Streamable.Taggable.NodeUIManagerBase.NodeUIPosManager, "
         "layer "
         "NodeUIPosManager.",
         false, true},
        {"truncated-in-record", "$.T.N.J", 6,
         "Unexpected end-of-file while unpacking Streamable.NodeUIRecBase.NodeUIPosRec, layer NodeUIPosRec.",
         false, false},
        {"wrong-short-name", "$.T.N.J", 7, "Expected short name 'N' for layer NodeUIManagerBase, got X.",
         false, true},
        {"oversized-major-format1", "$.T.N.J", 6, " Strm1.0 Object has oversized major rev (T). ", false,
         false},
        {"oversized-minor-format1", "$.T.N.J", 6, " Strm1.0 Object has oversized minor rev (T). ", false,
         false},
        {"unknown-format", "$.T.N.J", 6, "Unrecognized version for Streamable base", false, false},
        {"body-reads-too-far", "$.T.N.J", 6,
         "Error: Unpacker read beyond end of chunk while unpacking object "
         "Streamable.NodeUIRecBase.NodeUIPosRec, "
         "layer NodeUIPosRec v1.0, 8 bytes overread.\n",
         false, false},
        {"body-reads-too-little", "$.T.N.J", 3,
         "Warning: Not all object data was read while unpacking object "
         "Streamable.NodeUIRecBase.NodeUIPosRec, "
         "layer NodeUIPosRec v1.0, 8/41 bytes unread.\n",
         true, true},
        {"count-beyond-the-file", "$.T.N.J", 6,
         "Unexpected end-of-file while unpacking Streamable.NodeUIRecBase.NodeUIPosRec, layer NodeUIRecBase.",
         false, false},
        {"factory-gives-nothing", "$.T.N", 3, "Danger Will Robinson! ::createNewNodeRec() returned NULL!\n",
         true, true},
        {"long-names-accepted", "$.T.N.J", 3, "", false, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.file);
        Outcome o = readAs(c.cls, fileBytes(std::string("tests/data/malformed/") + c.file + ".strm"));
        EXPECT_EQ(o.status, c.status);
        EXPECT_EQ(o.built, c.built) << "only status 6 drops the object";
        if (c.inLog) {
            EXPECT_NE(o.log.find(c.words), std::string::npos) << o.log;
            EXPECT_EQ(o.errors, "");
        } else if (*c.words) {
            EXPECT_EQ(o.errors, c.words);
        } else {
            EXPECT_EQ(o.errors, "");
            EXPECT_EQ(o.log, "");
        }
    }
    Outcome junk = readAs("$.T.N.J", fileBytes("tests/data/malformed/not-a-stream.strm"));
    EXPECT_EQ(junk.status, 8) << "a length larger than the file reads as the end";
}

TEST(MalformedStreams, EveryPrefixOfEverySampleFailsCleanly) {
    for (const char* seed : {"empty", "one-record", "two-records", "format1"}) {
        const std::string bytes = fileBytes(std::string("fuzz/seeds/posmanager/") + seed + ".strm");
        Outcome whole = readAs("$.T.N.J", bytes);
        EXPECT_EQ(whole.status, 3) << seed << whole.errors;
        EXPECT_EQ(whole.log, "") << seed;
        for (std::size_t n = 0; n < bytes.size(); ++n) {
            Outcome o = readAs("$.T.N.J", bytes.substr(0, n));
            EXPECT_TRUE(o.status != 3 || !o.errors.empty() || !o.log.empty())
                << seed << ": a prefix of " << n << " bytes read as whole";
        }
    }
}

int run(const std::string& args, std::string& out) {
    ProgramRun r = runProgram("nodedesk-strm " + args);
    out += r.out;
    return r.code;
}

TEST(StreamTool, PrintsChainsAndRefusesWhatIsNoStream) {
    const std::string dir = std::string(NODEDESK_SOURCE_DIR);
    std::string out;
    ASSERT_EQ(run(dir + "/tests/data/malformed/not-a-stream.strm", out), 2);
    EXPECT_EQ(std::count(out.begin(), out.end(), '\n'), 1) << out;

    out.clear();
    ASSERT_EQ(run(dir + "/fuzz/seeds/posmanager/two-records.strm", out), 0) << out;
    EXPECT_NE(out.find("      N v1.0 layer 206 chunk 221 at 34 (format 2)\n"), std::string::npos) << out;
    EXPECT_NE(out.find("              K v1.0 layer 33 chunk 33 at 207 (format 2)\n"), std::string::npos)
        << out;

    out.clear();
    EXPECT_EQ(run(dir + "/tests/data/malformed/wrong-short-name.strm", out), 1);
    EXPECT_NE(out.find("Expected short name 'N' for layer NodeUIManagerBase, got X."), std::string::npos)
        << out;
}

} // namespace
