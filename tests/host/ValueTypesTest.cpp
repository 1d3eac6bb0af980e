// The host's small value types: Vector's growth and search results, IdStamp's order and text,
// Zk::Ptr ownership, LightweightString's sharing.
#include <gtest/gtest.h>

#include <map>
#include <string>

#include "host/Cookie.h"
#include "host/IdStamp.h"
#include "host/LightweightString.h"
#include "host/Vector.h"
#include "host/ZkPtr.h"
#include "host/iObject.h"

TEST(Vector, GrowsByDoublingFromFour) {
    Vector<int> v;
    EXPECT_EQ(v.capacity(), 0u);
    v.append(1);
    EXPECT_EQ(v.capacity(), 4u);
    for (int i = 2; i <= 5; ++i)
        v.append(i);
    EXPECT_EQ(v.capacity(), 8u);
    v.resize(33);
    EXPECT_EQ(v.capacity(), 64u) << "8 doubles until it fits 33";
    v.resize(0);
    EXPECT_EQ(v.capacity(), 0u) << "size 0 frees the block";
}

TEST(Vector, FindAddUniqueAndRemove) {
    Vector<int> v;
    unsigned index = 99;
    EXPECT_FALSE(v.find(7, index));
    EXPECT_EQ(index, 0u) << "a miss on an empty vector gives 0";
    v.append(10);
    v.append(20);
    v.append(30);
    EXPECT_FALSE(v.find(7, index));
    EXPECT_EQ(index, 3u) << "a miss gives the count";
    EXPECT_TRUE(v.find(20, index));
    EXPECT_EQ(index, 1u);
    EXPECT_FALSE(v.addUnique(20, index));
    EXPECT_EQ(v.size(), 3u);
    EXPECT_TRUE(v.addUnique(40, index));
    EXPECT_EQ(index, 3u);
    EXPECT_EQ(v[3], 40) << "addUnique inserts at the miss index, the end";

    v.insertAt(5, 0);
    EXPECT_EQ(v[0], 5);
    EXPECT_EQ(v[1], 10);
    EXPECT_FALSE(v.removeAt(17));
    EXPECT_TRUE(v.remove(10));
    EXPECT_FALSE(v.remove(10));
    EXPECT_EQ(v.size(), 4u);
    EXPECT_EQ(v.begin()[4], 0) << "the freed last place is reset to a default value";

    EXPECT_TRUE(v.removeRange(3, 1)) << "an empty range does nothing and still answers true";
    EXPECT_EQ(v.size(), 4u);
    EXPECT_TRUE(v.removeRange(1, 3));
    ASSERT_EQ(v.size(), 2u);
    EXPECT_EQ(v[0], 5);
    EXPECT_EQ(v[1], 40);

    Vector<int> w;
    w.takeFrom(v);
    EXPECT_EQ(w.size(), 2u);
    EXPECT_EQ(v.size(), 0u);
    EXPECT_EQ(v.capacity(), 0u);
}

TEST(IdStamp, TotalOrderTextAndValidity) {
    IdStamp a(1, 2, 3), b(1, 2, 4), c(1, 3, 0), d(2, 0, 0);
    EXPECT_LT(a.compare(b), 0);
    EXPECT_LT(b.compare(c), 0);
    EXPECT_LT(c.compare(d), 0);
    EXPECT_GT(d.compare(a), 0);
    EXPECT_EQ(a.compare(IdStamp(1, 2, 3)), 0);
    EXPECT_LT(IdStamp(0xFFFFFFFF, 0, 0).compare(IdStamp(0xFFFFFFFF, 0, 1)), 0) << "words compare unsigned";

    std::map<IdStamp, int, IdStampLess> m{{d, 4}, {a, 1}, {c, 3}, {b, 2}};
    int expect = 1;
    for (const auto& [k, v] : m)
        EXPECT_EQ(v, expect++);

    EXPECT_FALSE(IdStamp().valid());
    EXPECT_FALSE(IdStamp(0, 0, 0).valid());
    EXPECT_TRUE(IdStamp(0, 0, 1).valid());

    IdStamp big(4294967295u, 0, 17);
    EXPECT_STREQ(big.asString().c_str(), "4294967295.0.17");
    EXPECT_EQ(IdStamp(big.asString().c_str()), big);
    for (const char* bad :
         {"", "1.2", "1.2.3.4", "1..3", "a.b.c", "1.2.3x", "4294967296.0.0", "-1.0.0", " 1.2.3"})
        EXPECT_FALSE(IdStamp(bad).valid()) << "'" << bad << "' is no id";
}

TEST(Cookie, TextRoundTrip) {
    Cookie c(Cookie::EffectGraphKind, IdStamp(5, 0, 1));
    EXPECT_STREQ(c.asString().c_str(), "G5.0.1");
    EXPECT_TRUE(c.isEffectGraph());
    EXPECT_EQ(Cookie::fromString(c.asString()), c);
    EXPECT_STREQ(Cookie().asString().c_str(), "-");
    EXPECT_FALSE(Cookie::fromString("X1.0.1").valid());
    EXPECT_FALSE(Cookie::fromString("G").valid());
}

namespace {
struct Counted : iObject {
    explicit Counted(int* d) : deaths(d) {}
    ~Counted() override { ++*deaths; }
    int* deaths;
};
struct Derived : Counted {
    using Counted::Counted;
};
} // namespace

TEST(ZkPtr, SharedOwnershipEndsAtTheLastRelease) {
    int deaths = 0;
    {
        Zk::Ptr<Derived> d(new Derived(&deaths));
        Zk::Ptr<Counted> base = d;
        EXPECT_EQ(d->refCount(), 2);
        Zk::Ptr<Derived> back = Zk::dynamicCast<Derived>(base);
        EXPECT_EQ(back.get(), d.get());
        d = nullptr;
        back = nullptr;
        EXPECT_EQ(deaths, 0);
    }
    EXPECT_EQ(deaths, 1);
}

TEST(LightweightString, NullEmptySharingAndLiterals) {
    LightweightString<char> null;
    EXPECT_TRUE(null.isNull());
    EXPECT_TRUE(null.empty());
    EXPECT_STREQ(null.c_str(), "");
    EXPECT_TRUE(null == "");

    static const char kText[] = "Video Routing : Zoom";
    LightweightString<char> s(kText);
    EXPECT_TRUE(s == kText);
    LightweightString<char> t = s;
    t += "!";
    EXPECT_STREQ(s.c_str(), kText) << "a change copies before writing";
    EXPECT_STREQ(t.c_str(), "Video Routing : Zoom!");
    EXPECT_STREQ(toUtf8(toWide(String("Caf\xc3\xa9 \xe2\x86\x92"))).c_str(), "Caf\xc3\xa9 \xe2\x86\x92");
}

TEST(Vector, AddingOneOfItsOwnElementsSurvivesGrowth) {
    // Strings own heap memory, so a read of a freed block shows under the sanitizers and as
    // a wrong value otherwise.
    Vector<std::string> v;
    for (int i = 0; i < 4; ++i)
        v.append(std::string(40, static_cast<char>('a' + i)));
    ASSERT_EQ(v.size(), v.capacity()) << "the next append must grow the block";
    v.append(v[0]);
    EXPECT_EQ(v[4], std::string(40, 'a'));
    while (v.size() < v.capacity())
        v.append("x");
    v.insertAt(v[3], 0);
    EXPECT_EQ(v[0], std::string(40, 'd'));
    EXPECT_EQ(v[4], std::string(40, 'd')) << "the rest moved up by one";
}
