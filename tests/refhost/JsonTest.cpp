// The JSON model: faults told by place and expectation, values placed, the writer's text read back
// exactly; and the Base64 that carries stored objects inside it.
#include "refhost/json/Json.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "refhost/core/Base64.h"
#include "refhost/json/MemberSink.h"

namespace {
std::string fault(const std::string& text) {
    json::Value v;
    json::ParseError e;
    if (json::parse(text, v, e))
        return "parsed";
    return std::to_string(e.line) + ":" + std::to_string(e.column) + ": " + e.message;
}
} // namespace

TEST(Json, FaultsAreToldByPlaceAndExpectation) {
    struct Case {
        std::string text;
        const char* expect;
    };
    const Case cases[] = {
        {"{\"a\" 1}", "1:6: expected ':' after a member name"},
        {"{\"a\": 1,}", "1:9: expected a member name in double quotes"},
        {"[1 2]", "1:4: expected ',' or ']' after an array item"},
        {"[1,", "1:4: expected a value, found the end of the text"},
        {"{} {}", "1:4: expected the end of the document"},
        {"\"a\nb\"", "1:3: expected '\"' to close the string"},
        {"\"a\tb\"", "1:3: control character inside a string"},
        {"\"a\\qb\"", "1:3: unknown escape in a string"},
        {"\"\\u12g4\"", "1:2: expected four hexadecimal digits after \\u"},
        {"\"\\ud800x\"", "1:2: expected the second half of a surrogate pair"},
        {"\"\\ud800\\ud800\"", "1:2: expected the second half of a surrogate pair"},
        {"[\"ok\", \"\\udc00\"]", "1:15: expected the first half of a surrogate pair before its second"},
        {"\"\xC3\x28\"", "1:2: expected UTF-8 text in a string"},
        {"\"\xED\xA0\x80\"", "1:2: expected UTF-8 text in a string"},
        {"[1e400]", "1:2: number out of range"},
        {"[1.]", "1:4: expected a digit after the decimal point"},
        {"[1e+]", "1:5: expected a digit in the exponent"},
        {"[-]", "1:3: expected a value"},
        {"{\n  \"a\": [\n    tru\n  ]}", "3:5: expected a value"},
        // A NUL byte ends nothing: what follows the document is still looked at.
        {std::string("{}\0{}", 5), "1:3: expected the end of the document"},
        {std::string("[\"a\0\"]", 6), "1:4: expected '\"' to close the string"},
        {" \r\n\t", "2:2: expected a value, found the end of the text"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(fault(c.text), c.expect) << c.text;

    std::string deep(json::kMaxDepth, '[');
    EXPECT_EQ(fault(deep + "]"), "1:202: expected ',' or ']' after an array item")
        << "as deep as allowed is read";
    EXPECT_EQ(fault(deep + "{"), "1:201: nesting is deeper than 200 levels");
}

TEST(Json, ValuesKnowWhereTheyBegin) {
    json::Value doc;
    json::ParseError e;
    ASSERT_TRUE(
        json::parse("{\"a\": [1, true,\n  null, \"s\\n\"],\n \"b\": {\"c\": -2.5e1}, \"a\": 7}", doc, e))
        << e.message;
    const json::Value* a = &doc.members()[0].second;
    ASSERT_EQ(a->items().size(), 4u);
    EXPECT_EQ(std::make_pair(a->line, a->column), std::make_pair(1, 7));
    EXPECT_EQ(std::make_pair(a->items()[1].line, a->items()[1].column), std::make_pair(1, 11));
    EXPECT_EQ(std::make_pair(a->items()[2].line, a->items()[2].column), std::make_pair(2, 3));
    EXPECT_EQ(a->items()[3].asString(), "s\n");
    EXPECT_EQ(std::make_pair(a->items()[3].line, a->items()[3].column), std::make_pair(2, 9));
    const json::Value* c = doc.find("b")->find("c");
    EXPECT_EQ(c->asNumber(), -25.0);
    EXPECT_EQ(std::make_pair(c->line, c->column), std::make_pair(3, 13));
    EXPECT_EQ(doc.find("a")->asNumber(), 7.0) << "a repeated name reads as its last value";
}

namespace {
// Keeps what it is told, as "key@line:column" marks, streaming the members named `streamed`.
struct Recorder : json::MemberSink {
    std::string streamed;
    std::vector<std::string> told;
    json::Value::Items items;
    size_t stopAfter = SIZE_MAX;

    bool streamsItems(const std::string& key) override { return key == streamed; }
    bool item(const std::string& key, json::Value v) override {
        told.push_back(key + "[]@" + std::to_string(v.line) + ":" + std::to_string(v.column));
        items.push_back(std::move(v));
        return told.size() < stopAfter;
    }
    bool member(std::string key, json::Value v) override {
        told.push_back(
            key + "@" + std::to_string(v.line) + ":" + std::to_string(v.column) + " " +
            (v.isArray() ? std::to_string(v.items().size()) + " items" : json::write(v).substr(0, 1)));
        return told.size() < stopAfter;
    }
};
} // namespace

TEST(Json, MembersComeInTextOrderWithStreamedItemsOneByOne) {
    const std::string text = "{\"a\": 1,\n \"big\": [{\"x\": [1, 2]},\n   [3], 4],\n \"small\": [5, 6],"
                             " \"a\": {\"big\": [7]}}";
    Recorder r;
    r.streamed = "big";
    json::ParseError e;
    ASSERT_TRUE(json::parseMembers(text, r, e)) << e.message;
    const std::vector<std::string> expect{"a@1:7 1",         "big[]@2:10",         "big[]@3:4", "big[]@3:9",
                                          "big@2:9 0 items", "small@4:11 2 items", "a@4:24 {"};
    EXPECT_EQ(r.told, expect)
        << "only a top-level member of that name streams, its items placed as parse places them";
    json::Value whole;
    ASSERT_TRUE(json::parse(text, whole, e));
    json::Value streamedItems = json::Value::array();
    streamedItems.setItems(r.items);
    const json::Value* big = &whole.members()[1].second;
    EXPECT_EQ(json::write(streamedItems), json::write(*big));

    // The sink can stop the read; that is no fault of the text.
    Recorder stopper;
    stopper.streamed = "big";
    stopper.stopAfter = 2;
    EXPECT_FALSE(json::parseMembers(text, stopper, e));
    EXPECT_EQ(stopper.told.size(), 2u);
    EXPECT_TRUE(e.message.empty());
    EXPECT_EQ(std::make_pair(e.line, e.column), std::make_pair(2, 22)) << "where the first item ends";
}

TEST(Json, MemberReadsFaultAsTheWholeReadDoes) {
    // Faults after members were told, inside a streamed array, in nesting, and past the end.
    const char* texts[] = {"{\"a\": 1, \"big\": [1, 2,", "{\"big\": [1, {\"x\": tru}]}",
                           "{\"a\": [1] \"b\": 2}", "{\"big\": []} x", "{\"a\": \"\\udc00\"}"};
    for (const char* text : texts) {
        Recorder r;
        r.streamed = "big";
        json::ParseError members;
        EXPECT_FALSE(json::parseMembers(text, r, members)) << text;
        EXPECT_EQ(std::to_string(members.line) + ":" + std::to_string(members.column) + ": " +
                      members.message,
                  fault(text))
            << text;
    }
    std::string deep = "{\"big\": " + std::string(json::kMaxDepth, '[');
    Recorder r;
    r.streamed = "big";
    json::ParseError e;
    EXPECT_FALSE(json::parseMembers(deep, r, e));
    EXPECT_NE(e.message.find("nesting is deeper"), std::string::npos);
    for (const char* top : {"[1]", "3", "\"s\"", "null"}) {
        Recorder t;
        EXPECT_FALSE(json::parseMembers(top, t, e)) << top;
        EXPECT_EQ(e.message, "expected an object at the top of the document") << top;
        EXPECT_TRUE(t.told.empty());
    }
}

TEST(Json, WrittenTextReadsBackToTheSameValues) {
    const double numbers[] = {0.0,
                              3.0,
                              -17.0,
                              0.1,
                              1.0 / 3.0,
                              1e300,
                              5e-324,
                              -2.5e-7,
                              9007199254740993.0,
                              1e21,
                              std::numeric_limits<double>::max()};
    json::Value doc = json::Value::object();
    json::Value& list = doc.set("numbers", json::Value::array());
    for (double d : numbers)
        list.push(json::Value::number(d));
    doc.set("text", json::Value::string(std::string("q\"\\/\x01\x1f\n\t\xC3\xA9", 10)));
    doc.set("nothing", json::Value());
    doc.set("infinite", json::Value::number(std::numeric_limits<double>::infinity()));

    const std::string text = json::write(doc);
    EXPECT_EQ(json::write(json::Value::number(3.0)), "3\n") << "whole numbers are written as such";
    EXPECT_EQ(json::write(json::Value::number(0.1)), "0.1\n");
    EXPECT_NE(text.find("\"infinite\": null"), std::string::npos) << "JSON has no infinity";
    json::Value back;
    json::ParseError e;
    ASSERT_TRUE(json::parse(text, back, e)) << e.message << "\n" << text;
    ASSERT_EQ(back.find("numbers")->items().size(), std::size(numbers));
    for (size_t i = 0; i < std::size(numbers); ++i)
        EXPECT_EQ(back.find("numbers")->items()[i].asNumber(), numbers[i]) << i;
    EXPECT_EQ(back.find("text")->asString(), doc.find("text")->asString());
    EXPECT_TRUE(back.find("nothing")->isNull());
    EXPECT_EQ(json::write(back), text);
}

TEST(Base64, RoundTripsEveryTailAndRefusesWhatIsNotWhole) {
    std::string bytes;
    for (int n = 0; n < 8; ++n) {
        std::string text = base64Encode(bytes);
        EXPECT_EQ(text.size(), (bytes.size() + 2) / 3 * 4);
        std::string back = "stale";
        ASSERT_TRUE(base64Decode(text, back)) << text;
        EXPECT_EQ(back, bytes);
        bytes.push_back(static_cast<char>(0xF0 + n * 7));
    }
    EXPECT_EQ(base64Encode("nodedesk"), "bm9kZWRlc2s=");
    std::string out;
    for (const char* bad :
         {"bm9kZWRlc2s", "bm9k ZWR", "bm9k@WRl", "QQ==QQ==", "A===", "=AAA", "bm9kZWRlc2s\n"})
        EXPECT_FALSE(base64Decode(bad, out)) << bad;
}

// A zero written with an exponent, however large or small, reads as zero of its sign: the exact
// reading of numbers takes a zero significand down a path of its own.
TEST(Json, ZerosWithExponentsReadAsZero) {
    json::Value doc;
    json::ParseError e;
    ASSERT_TRUE(json::parse("[0e93, 0.000e300, -0e-400, 0E+0, 0.0e-5]", doc, e)) << e.message;
    ASSERT_EQ(doc.items().size(), 5u);
    for (const json::Value& v : doc.items())
        EXPECT_EQ(v.asNumber(), 0.0);
    EXPECT_TRUE(std::signbit(doc.items()[2].asNumber()));
    EXPECT_FALSE(std::signbit(doc.items()[0].asNumber()));
}
