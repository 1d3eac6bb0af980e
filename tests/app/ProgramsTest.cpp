// The programs run end to end: output on good input, a one-line error and exit code 2 on bad.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <string>
#include <sys/wait.h>

#include "refhost/json/Json.h"

namespace {

struct ProgramRun {
    std::string out;
    int code = -1;
};

ProgramRun run(const std::string& args) {
    ProgramRun r;
    std::string cmd = std::string(NODEDESK_BINARY_DIR) + "/" + args + " 2>&1";
    FILE* p = popen(cmd.c_str(), "r");
    if (!p)
        return r;
    std::array<char, 4096> buf;
    size_t n;
    while ((n = fread(buf.data(), 1, buf.size(), p)) > 0)
        r.out.append(buf.data(), n);
    int status = pclose(p);
    r.code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return r;
}

std::string sample(const char* name) {
    return std::string(NODEDESK_SOURCE_DIR) + "/samples/" + name;
}

} // namespace

TEST(LayoutProgram, PrintsEveryTreeAndNode) {
    ProgramRun r =
        run("nodedesk-layout " + sample("mattes.edit.json") + " --time 2 --orientation LeftToRight");
    ASSERT_EQ(r.code, 0) << r.out;
    json::Value doc;
    json::ParseError pe;
    ASSERT_TRUE(json::parse(r.out, doc, pe)) << pe.message;
    ASSERT_EQ(doc.find("trees")->items().size(), 2u) << "the channel's tree and the orphaned branch";
    const auto& nodes = doc.find("nodes")->items();
    EXPECT_EQ(nodes.size(), 8u);
    const json::Value& root = nodes[0];
    EXPECT_EQ(root.find("id")->asString(), "50.0.1");
    EXPECT_EQ(root.find("x")->asNumber(), 0.0);
    EXPECT_EQ(root.find("y")->asNumber(), 0.0);
    // The second root stands one gap below the first tree, at its left edge.
    const json::Value* second = doc.find("trees")->items()[1].find("extents");
    const json::Value* first = doc.find("trees")->items()[0].find("extents");
    EXPECT_DOUBLE_EQ(second->find("maxY")->asNumber(), first->find("minY")->asNumber() - 0.125);
}

TEST(LayoutProgram, BadInputGivesOneLineAndCodeTwo) {
    for (const std::string& args :
         {std::string("nodedesk-layout"), "nodedesk-layout " + sample("nope.edit.json"),
          "nodedesk-layout " + sample("chain.edit.json") + " --orientation Sideways",
          "nodedesk-layout " + sample("chain.edit.json") + " --time soon",
          "nodedesk-layout " + sample("chain.edit.json") + " --frobnicate"}) {
        ProgramRun r = run(args);
        EXPECT_EQ(r.code, 2) << args;
        EXPECT_EQ(std::count(r.out.begin(), r.out.end(), '\n'), 1) << args << ": " << r.out;
    }
}

TEST(StrmProgram, ReadsTheObjectsOfAnEditFile) {
    ProgramRun r = run("nodedesk-strm " + sample("positions.edit.json"));
    ASSERT_EQ(r.code, 0) << r.out;
    EXPECT_NE(r.out.find("key \"NodePosManager\""), std::string::npos);
    EXPECT_NE(r.out.find("K v1.0 layer 33"), std::string::npos) << "a position record's layer";
    ProgramRun plain = run("nodedesk-strm " + sample("chain.edit.json"));
    EXPECT_EQ(plain.code, 0);
    EXPECT_NE(plain.out.find("no stored objects"), std::string::npos);
    ProgramRun bad = run("nodedesk-strm " + sample("images/sunset.png"));
    EXPECT_EQ(bad.code, 2);
}
