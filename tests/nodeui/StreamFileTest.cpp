// The in-memory stream file: little-endian values, writing at the end and over what is there,
// gaps, short reads, and the bytes it gives back whatever room it keeps for writing.
#include <gtest/gtest.h>

#include <string>

#include "host/StreamFile.h"

namespace {

std::string pattern(std::size_t n, char seed) {
    std::string s(n, '\0');
    for (std::size_t i = 0; i < n; ++i)
        s[i] = static_cast<char>(seed + i * 7);
    return s;
}

TEST(StreamFile, ValuesAreLittleEndianAndReadBack) {
    StreamFile f;
    f.setCookedChar('x');
    f.setUnsignedShort(0x1234);
    f.setUnsignedLong(0xA1B2C3D4u);
    f.setDouble(-2.5);
    const std::string expected =
        std::string("x\x34\x12\xD4\xC3\xB2\xA1", 7) + std::string("\0\0\0\0\0\0\x04\xC0", 8);
    EXPECT_EQ(f.bytes(), expected);
    EXPECT_EQ(f.size(), 15u);

    StreamFile r(f.bytes());
    char c = 0;
    unsigned short s = 0;
    unsigned l = 0;
    double d = 0;
    EXPECT_TRUE(r.getCookedChar(c) && r.getUnsignedShort(s) && r.getUnsignedLong(l) && r.getDouble(d));
    EXPECT_EQ(c, 'x');
    EXPECT_EQ(s, 0x1234);
    EXPECT_EQ(l, 0xA1B2C3D4u);
    EXPECT_EQ(d, -2.5);
    EXPECT_TRUE(r.eof());
}

TEST(StreamFile, WritesOfEverySizeAtTheEndAndInPlace) {
    // Every length up to past the short-copy sizes, appended, then each rewritten in place with
    // other bytes, as a layer header is.
    StreamFile f;
    std::string expected;
    for (std::size_t n = 0; n <= 40; ++n) {
        const std::string p = pattern(n, static_cast<char>(n));
        f.setBytes(p.data(), p.size());
        expected += p;
    }
    EXPECT_EQ(f.bytes(), expected);
    unsigned at = 0;
    for (std::size_t n = 0; n <= 40; ++n) {
        const std::string p = pattern(n, static_cast<char>(100 + n));
        f.position(at);
        f.setBytes(p.data(), p.size());
        expected.replace(at, n, p);
        at += static_cast<unsigned>(n);
    }
    EXPECT_EQ(f.position(), expected.size());
    EXPECT_EQ(f.bytes(), expected) << "rewriting in place leaves the size alone";
}

TEST(StreamFile, WritesAcrossTheEndAndBeyondIt) {
    StreamFile f;
    f.setBytes("abcdef", 6);
    f.position(4);
    f.setBytes("XYZ", 3);
    EXPECT_EQ(f.bytes(), "abcdXYZ") << "a write over the end overwrites, then extends";
    f.position(10);
    EXPECT_TRUE(f.eof());
    EXPECT_EQ(f.remaining(), 0u);
    f.setCookedChar('!');
    EXPECT_EQ(f.bytes(), std::string("abcdXYZ\0\0\0!", 11)) << "a gap is filled with zeros";

    // Taking the bytes and writing on, far past the room first made, and with room reserved.
    const std::string big = pattern(5000, 3);
    f.setBytes(big.data(), big.size());
    f.reserve(100000);
    f.setBytes(big.data(), big.size());
    EXPECT_EQ(f.bytes(), std::string("abcdXYZ\0\0\0!", 11) + big + big);
    EXPECT_EQ(f.size(), 11u + 10000u);
    f.position(20000);
    f.setCookedChar('?');
    EXPECT_EQ(f.size(), 20001u);
    EXPECT_EQ(f.bytes().substr(10011, 9989), std::string(9989, '\0'))
        << "the gap reads as zeros, whatever room was kept";
}

TEST(StreamFile, ShortReadsMoveToTheEndAndLeaveTheirArgument) {
    StreamFile f(std::string("\x01\x02\x03", 3));
    unsigned l = 7;
    EXPECT_FALSE(f.getUnsignedLong(l));
    EXPECT_EQ(l, 7u);
    EXPECT_EQ(f.position(), 3u);
    EXPECT_TRUE(f.eof());

    f.position(1);
    unsigned short s = 0;
    EXPECT_TRUE(f.getUnsignedShort(s));
    EXPECT_EQ(s, 0x0302);
    double d = 1.0;
    EXPECT_FALSE(f.getDouble(d));
    EXPECT_EQ(d, 1.0);

    f.position(50);
    unsigned char c = 9;
    EXPECT_FALSE(f.getUnsignedChar(c));
    EXPECT_EQ(c, 9);
    EXPECT_EQ(f.position(), 50u) << "a position beyond the end stays where it is";
    std::string out = "kept";
    EXPECT_FALSE(f.getBytes(out, 1));
    EXPECT_EQ(out, "kept");

    // A file being written keeps room past its end; reading stops at the end all the same.
    StreamFile w;
    w.setBytes("abcde", 5);
    w.position(2);
    EXPECT_FALSE(w.getUnsignedLong(l));
    EXPECT_EQ(w.position(), 5u);
    w.position(1);
    EXPECT_FALSE(w.getBytes(out, 5));
    EXPECT_EQ(w.position(), 5u);
    EXPECT_TRUE(w.eof());
}

} // namespace
