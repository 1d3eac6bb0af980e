// Edit files: the samples load and round-trip; faults are told by place and leave the edit alone.
#include "refhost/edit/EditFile.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "refhost/edit/EditGenerator.h"

namespace {
std::string sample(const char* name) {
    return std::string(NODEDESK_SOURCE_DIR) + "/samples/" + name;
}
} // namespace

TEST(EditFile, EverySampleLoadsAndRoundTrips) {
    int seen = 0;
    for (const auto& entry :
         std::filesystem::directory_iterator(std::string(NODEDESK_SOURCE_DIR) + "/samples")) {
        if (entry.path().string().find(".edit.json") == std::string::npos)
            continue;
        ++seen;
        std::string error;
        EditPtr e = EditFile::open(entry.path().string(), error);
        ASSERT_TRUE(e) << error;
        std::string once = EditFile::saveToText(*e);
        Edit again;
        ASSERT_TRUE(EditFile::loadFromText(once, "again", again, error)) << error;
        EXPECT_EQ(EditFile::saveToText(again), once) << entry.path() << " round-trips";
    }
    EXPECT_GE(seen, 6);
}

TEST(EditFile, FaultsNameFileLineAndWhatWasExpected) {
    struct Case {
        const char* text;
        const char* expect;
    };
    const Case cases[] = {
        {"", "t.json:1:1: expected a value, found the end of the text"},
        {"{\n  \"channels\": [,]\n}", "t.json:2:16: expected a value"},
        {"{\"name\": \"x\" \"end\": 3}", "t.json:1:14: expected ',' or '}' after an object member"},
        {"[1, 2]", "t.json:1:1: expected an object at the top of an edit file"},
        {"{\"channels\": [{\"id\": \"1.2\"}]}", "t.json:1:22: expected an id such as \"1.0.7\" for \"id\""},
        {"{\"channels\": [{\"id\": \"1.0.1\", \"type\": \"smell\"}]}",
         "t.json:1:39: expected a channel type of video or audio"},
        {"{\"channels\": [{\"id\": \"1.0.1\", \"events\": [{\"start\": 3, \"end\": 1, \"black\": true}]}]}",
         "t.json:1:62: expected an event's end after its start"},
        {"{\"nodes\": [{\"id\": \"5.0.1\", \"tag\": \"T\", \"inputs\": [{\"node\": \"9.9.9\"}]}]}",
         "t.json:1:51: node 9.9.9 is not defined"},
        {"{\"nodes\": [{\"id\": \"5.0.1\", \"tag\": \"T\", \"inputs\": [{\"track\": \"7.0.1\"}]}]}",
         "t.json:1:61: track 7.0.1 is neither a channel of the edit nor an internal track (0.1.n)"},
        {"{\"start\": 20, \"channels\": [{\"id\": \"1.0.1\", \"events\": [{\"start\": 0, \"end\": 5, "
         "\"black\": true}]}]}",
         "t.json:1:11: expected the end of the edit at or after its start"},
        {"{\"objects\": {\"NodePosManager\": \"@@@\"}}",
         "t.json:1:32: expected base64 text for object \"NodePosManager\""},
        {"{\"name\": \"a\\udcffb\"}", "t.json:1:18: expected the first half of a surrogate pair before its second"},
    };
    for (const auto& c : cases) {
        Edit e;
        e.setName(L"untouched");
        std::string error;
        EXPECT_FALSE(EditFile::loadFromText(c.text, "t.json", e, error)) << c.text;
        EXPECT_EQ(error, c.expect) << c.text;
        EXPECT_EQ(e.name(), WString(L"untouched")) << "a failed load leaves the edit as it was";
    }
    std::string error;
    EXPECT_FALSE(EditFile::open(sample("no-such.edit.json"), error));
    EXPECT_NE(error.find("cannot be opened"), std::string::npos);
    Edit e;
    EXPECT_TRUE(EditFile::loadFromText("{\"name\": \"a\\ud83d\\ude00b\"}", "t.json", e, error)) << error;
    EXPECT_EQ(toUtf8(e.name()).str(), "a\xF0\x9F\x98\x80"
                                      "b") << "a whole pair is one character";
}

TEST(EditFile, SaveReplacesTheFileWhole) {
    std::string error;
    EditPtr e = EditFile::open(sample("chain.edit.json"), error);
    ASSERT_TRUE(e) << error;
    std::string path = std::string(NODEDESK_BINARY_DIR) + "/saved.edit.json";
    ASSERT_TRUE(EditFile::save(*e, path, error)) << error;
    Edit back;
    ASSERT_TRUE(EditFile::load(path, back, error)) << error;
    EXPECT_EQ(back.nodes().size(), e->nodes().size());
    EXPECT_FALSE(std::filesystem::exists(path + ".tmp"));
}

TEST(EditFile, OnlyRegularFilesWithinTheLimitAreRead) {
    std::string error;
    Edit e;
    EXPECT_FALSE(EditFile::load("/dev/zero", e, error));
    EXPECT_EQ(error, "/dev/zero: not a regular file");
    EXPECT_FALSE(EditFile::open(NODEDESK_SOURCE_DIR, error));
    EXPECT_NE(error.find("not a regular file"), std::string::npos) << error;

    // A sparse file one byte over the limit is refused by its size, before a byte is read.
    const std::string big = std::string(NODEDESK_BINARY_DIR) + "/too-big.edit.json";
    {
        std::ofstream f(big, std::ios::binary | std::ios::trunc);
        f << "{}";
    }
    std::filesystem::resize_file(big, EditFile::kMaxFileBytes + 1);
    EXPECT_FALSE(EditFile::open(big, error));
    EXPECT_NE(error.find("more than the 268435456"), std::string::npos) << error;
    std::filesystem::resize_file(big, 2);
    EXPECT_TRUE(EditFile::open(big, error)) << error;
    std::filesystem::remove(big);
}

namespace {
// What a read gives: its error, or the edit as saved text.
std::string readBy(bool whole, const std::string& text) {
    Edit e;
    std::string error;
    const bool ok = whole ? EditFile::loadWholeFromText(text, "t.json", e, error)
                          : EditFile::loadFromText(text, "t.json", e, error);
    return ok ? EditFile::saveToText(e) : "error " + error;
}
} // namespace

TEST(EditFile, ReadingAsItGoesGivesWhatReadingWholeGives) {
    std::vector<std::string> texts;
    for (const char* name :
         {"showcase.edit.json", "positions.edit.json", "shared.edit.json", "audio.edit.json"}) {
        std::ifstream f(sample(name), std::ios::binary);
        texts.emplace_back(std::istreambuf_iterator<char>(f), std::istreambuf_iterator<char>());
        ASSERT_GT(texts.back().size(), 100u) << name;
    }
    GeneratorOptions options;
    options.nodes = 400;
    options.sharedLinks = 0.3;
    texts.push_back(EditFile::saveToText(*generateEdit(options)));

    const std::string mat = "\"materials\": [{\"cookie\": \"M1.0.1\", \"name\": \"m\"}]";
    const std::string nodes =
        "\"nodes\": [{\"id\": \"1.0.1\", \"tag\": \"T\", \"inputs\": [{\"node\": \"1.0.2\"}, {}]},"
        " {\"id\": \"1.0.2\", \"kind\": \"material\", \"material\": \"M1.0.1\"}]";
    const std::string chans =
        "\"channels\": [{\"id\": \"2.0.1\", \"events\": [{\"start\": 0, \"end\": 4, \"graph\": "
        "\"1.0.1\"}, {\"start\": 4, \"end\": 6, \"material\": \"M1.0.1\"}]}]";
    // Members in the writer's order and in orders the read cannot follow as it goes.
    texts.push_back("{" + mat + ", " + nodes + ", " + chans + "}");
    texts.push_back("{" + chans + ", " + mat + ", " + nodes + ", \"end\": 9}");
    texts.push_back("{" + nodes + ", " + mat + ", " + chans + "}");
    texts.push_back("{" + mat + ", " + nodes + ", \"name\": \"late\", " + chans + "}");
    texts.push_back("{" + mat + ", " + nodes + ", " + chans + ", \"nodes\": []}");
    texts.push_back("{\"nodes\": [], " + mat + ", " + nodes + "}");
    texts.push_back("{" + mat + ", \"nodes\": {}}");
    // Faults: the first in the read's order is told, whatever stands first in the text.
    texts.push_back("{" + mat + ", \"nodes\": [{\"id\": \"1.0.1\"}], \"format\": \"other\"}");
    texts.push_back("{" + mat + ", \"nodes\": [{\"id\": \"1.0.1\"}], " + chans + ", ]");
    texts.push_back(
        "{\"nodes\": [{\"id\": \"1.0.1\", \"tag\": \"T\", \"inputs\": [{\"node\": \"9.0.9\"}]}], " + chans +
        "}");
    texts.push_back("{" + mat + ", " + nodes + ", \"start\": 8, \"end\": 2}");
    texts.push_back("{" + mat + ", " + nodes + ", \"objects\": {\"X\": \"@\"}}");
    texts.push_back("{\"nodes\": [{\"id\": \"1.0.1\", \"kind\": \"compound\", \"edit\": {\"nodes\": "
                    "[{\"id\": \"1.0.1\"}]}}]}");
    texts.push_back("[" + nodes.substr(9) + "]");

    for (size_t i = 0; i < texts.size(); ++i) {
        const std::string whole = readBy(true, texts[i]);
        EXPECT_EQ(readBy(false, texts[i]), whole) << "text " << i << ": " << texts[i].substr(0, 200);
    }
}
