// The programs run end to end: output on good input, a one-line error and exit code 2 on bad.
#include <gtest/gtest.h>

#include "../support/ProgramRun.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string>
#include <sys/wait.h>

#include "refhost/json/Json.h"

namespace {

ProgramRun run(const std::string& args, const std::string& env = std::string()) {
    return runProgram(args, env);
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

TEST(LayoutProgram, ListsInputLinksAndWritesPinnedDot) {
    ProgramRun r = run("nodedesk-layout " + sample("multitrack.edit.json") + " --time 1");
    ASSERT_EQ(r.code, 0) << r.out;
    json::Value doc;
    json::ParseError pe;
    ASSERT_TRUE(json::parse(r.out, doc, pe)) << pe.message;
    const json::Value& mix = doc.find("nodes")->items()[0];
    ASSERT_EQ(mix.find("id")->asString(), "20.0.1");
    const auto& inputs = mix.find("inputs")->items();
    ASSERT_EQ(inputs.size(), 3u);
    EXPECT_EQ(inputs[0].asString(), "20.0.2") << "V2's graph, taken in on its track";
    EXPECT_EQ(inputs[1].asString(), "21.0.2") << "V3's material";
    EXPECT_TRUE(inputs[2].isNull()) << "the open slot";

    ProgramRun dot = run("nodedesk-layout " + sample("multitrack.edit.json") + " --time 1 --format dot");
    ASSERT_EQ(dot.code, 0) << dot.out;
    EXPECT_EQ(dot.out.rfind("digraph", 0), 0u);
    EXPECT_NE(dot.out.find("\"20.0.1\" [label=\"Three-way mix\", pos=\"0,0!\"]"), std::string::npos)
        << dot.out;
    EXPECT_NE(dot.out.find("\"20.0.2\" -> \"20.0.1\""), std::string::npos) << dot.out;
}

TEST(LayoutProgram, LoadsNoImageOrColourLibraries) {
#if defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "sanitizer builds load the render module up front";
#endif
    // The loader tells each library it loads, the render module's among them were it loaded.
    ProgramRun r = run("nodedesk-layout " + sample("mattes.edit.json") + " --time 2", "LD_DEBUG=libs");
    ASSERT_EQ(r.code, 0) << r.out.substr(0, 2000);
    ASSERT_NE(r.out.find("libnodedesk_host.so"), std::string::npos) << "the loader spoke";
    for (const char* lib : {"libnodedesk_render", "libOpenImageIO", "libOpenColorIO"})
        EXPECT_EQ(r.out.find(lib), std::string::npos) << lib;
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

TEST(Programs, HelpIsUsageAndCodeZero) {
    for (const char* program :
         {"nodedesk-layout", "nodedesk-strm", "nodedesk-workbench", "nodedesk-generate"}) {
        ProgramRun r = run(std::string(program) + " --help");
        EXPECT_EQ(r.code, 0) << program << ": " << r.out;
        EXPECT_EQ(r.out.rfind("usage: ", 0), 0u) << program << ": " << r.out;
    }
}

TEST(Programs, BadFlagValuesAndFilesAreRefusedInOneLine) {
    const std::string chain = sample("chain.edit.json");
    for (const std::string& args :
         {"nodedesk-workbench " + chain + " --size 640x480junk", "nodedesk-workbench " + chain + " --time ''",
          "nodedesk-workbench " + chain + " " + chain, "nodedesk-workbench " + chain + " --headless",
          "nodedesk-layout " + chain + " --time ''", std::string("nodedesk-layout /dev/zero"),
          std::string("nodedesk-layout ") + NODEDESK_SOURCE_DIR, "nodedesk-strm " + chain + " " + chain,
          std::string("nodedesk-strm /dev/zero"), std::string("nodedesk-layout"),
          "nodedesk-layout " + sample("nope.edit.json"), "nodedesk-layout " + chain + " --orientation Sideways",
          "nodedesk-layout " + chain + " --time soon", "nodedesk-layout " + chain + " --frobnicate"}) {
        ProgramRun r = run(args, "env QT_QPA_PLATFORM=offscreen");
        EXPECT_EQ(r.code, 2) << args << ": " << r.out;
        EXPECT_EQ(std::count(r.out.begin(), r.out.end(), '\n'), 1) << args << ": " << r.out;
    }
    // With nothing to draw on and no snapshot to write, the window would never be seen.
    ProgramRun r =
        run("nodedesk-workbench " + chain, "env -u DISPLAY -u WAYLAND_DISPLAY QT_QPA_PLATFORM=offscreen");
    EXPECT_EQ(r.code, 2) << r.out;
    EXPECT_NE(r.out.find("no display"), std::string::npos) << r.out;
}

TEST(StrmProgram, PrintsWhatAFileHoldsSafely) {
    auto header = [](const std::string& name, uint32_t layer, uint32_t chunk) {
        std::string h;
        auto u32 = [&](uint32_t v) {
            for (int i = 0; i < 4; ++i)
                h += static_cast<char>((v >> (8 * i)) & 0xFF);
        };
        u32(static_cast<uint32_t>(name.size()));
        h += name;
        h += '\x02';
        h += '\x00';
        u32(layer);
        u32(chunk);
        return h;
    };
    auto write = [](const std::string& name, const std::string& bytes) {
        const std::string path = testing::TempDir() + "/" + name;
        FILE* f = std::fopen(path.c_str(), "wb");
        std::fwrite(bytes.data(), 1, bytes.size(), f);
        std::fclose(f);
        return path;
    };
    // A layer named with a terminal escape, then bytes after the object.
    const std::string escape = "\x1b[2J";
    const std::string named =
        header("$", 0, 4 + escape.size() + 10 + 4) + header(escape, 4, 4) + "abcd" + "tail";
    ProgramRun r = run("nodedesk-strm " + write("escape.strm", named));
    EXPECT_EQ(r.out.find('\x1b'), std::string::npos) << "no control byte reaches the terminal";
    EXPECT_NE(r.out.find("\\x1B[2J"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("4 bytes follow the object"), std::string::npos) << r.out;

    // A root layer that claims more than 2^31 bytes and holds a few.
    const std::string huge = header("$", 0xA7F00000u, 0xA7F00000u) + "some bytes";
    r = run("nodedesk-strm " + write("huge.strm", huge));
    EXPECT_NE(r.out.find("/2817523712 bytes unread"), std::string::npos) << r.out;
    EXPECT_EQ(r.out.find("-1"), std::string::npos) << r.out;
}

TEST(GenerateProgram, WritesTheSameEditForTheSameSeed) {
    const std::string a = testing::TempDir() + "/gen-a.edit.json",
                      b = testing::TempDir() + "/gen-b.edit.json";
    ProgramRun r = run("nodedesk-generate --nodes 40 --seed 5 --shared 0.3 " + a);
    ASSERT_EQ(r.code, 0) << r.out;
    r = run("nodedesk-generate --seed 5 --shared 0.3 --nodes 40 " + b);
    ASSERT_EQ(r.code, 0) << r.out;
    auto slurp = [](const std::string& path) {
        std::string text;
        FILE* f = std::fopen(path.c_str(), "rb");
        for (int c; f && (c = std::fgetc(f)) != EOF;)
            text += static_cast<char>(c);
        if (f)
            std::fclose(f);
        return text;
    };
    EXPECT_FALSE(slurp(a).empty());
    EXPECT_EQ(slurp(a), slurp(b));
    ProgramRun layout = run("nodedesk-layout " + a);
    EXPECT_EQ(layout.code, 0) << layout.out;
    for (const std::string& bad :
         {std::string("--nodes 0 --seed 1 x"), std::string("--nodes 5 --seed -1 x"),
          std::string("--nodes 5 x"), std::string("--nodes 5 --seed 1 --shared 2 x")}) {
        ProgramRun refused = run("nodedesk-generate " + bad);
        EXPECT_EQ(refused.code, 2) << bad;
        EXPECT_EQ(std::count(refused.out.begin(), refused.out.end(), '\n'), 1) << bad << ": " << refused.out;
    }
}
