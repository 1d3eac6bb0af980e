// Preferences and saved layouts: round trips, absent keys and malformed text.
#include <gtest/gtest.h>

#include <fstream>

#include "host/EditorPreferences.h"
#include "host/PersistableXY.h"
#include "host/configb.h"

TEST(Preferences, RoundTripsAndDefaults) {
    ASSERT_NE(EditorPreferences::configDir().view().find("test-config"), std::string_view::npos)
        << "tests must not touch the user's preferences";
    EditorPreferences& p = prefs();
    p.setPreference("Video Routing : Zoom", 0.3125);
    p.setPreference("Video Routing : Templates", false);
    p.setPreference("Effect graph tool size", XY<int>(640, -480));
    p.setPreference("Video Routing : Orientation", "LeftToRight");
    p.setPreference("count/with slash", 12);
    p.sync();
    EXPECT_DOUBLE_EQ(p.getPreference("Video Routing : Zoom", 0.75), 0.3125);
    EXPECT_FALSE(p.getPreference("Video Routing : Templates", true));
    EXPECT_EQ(p.getPreference("Effect graph tool size", XY<int>(1, 1)), XY<int>(640, -480));
    EXPECT_EQ(p.getPreference("Video Routing : Orientation", "BottomToTop"), "LeftToRight");
    EXPECT_EQ(p.getPreference("count/with slash", 0), 12);
    EXPECT_EQ(p.getPreference("never set", 42), 42);
    EXPECT_EQ(p.getPreference("never set", XY<int>(-1234, -1234)), XY<int>(-1234, -1234));
    EXPECT_EQ(p.getPreference("Video Routing : Orientation", 5), 5)
        << "text that isn't a number gives the default";
    EXPECT_TRUE(p.getPreference("Video Routing : Orientation", true)) << "nor is it a bool";
    p.setPreference("Video Routing : Position", "(12;13)");
    EXPECT_EQ(p.getPreference("Video Routing : Position", XY<int>(-1234, -1234)), XY<int>(-1234, -1234));
}

TEST(Preferences, PointTextForm) {
    XY<int> v;
    EXPECT_EQ(PersistableXY::toString(XY<int>(36, -25)), "(36,-25)");
    EXPECT_TRUE(PersistableXY::parse(" ( 7 , 8 ) ", v));
    EXPECT_EQ(v, XY<int>(7, 8));
    for (const char* bad : {"", "()", "(1)", "(1,)", "(,2)", "(1,2", "1,2)", "(1,2,3)", "(a,b)",
                            "(99999999999,1)", "(1 2,3)"}) {
        XY<int> keep(5, 5);
        EXPECT_FALSE(PersistableXY::parse(bad, keep)) << bad;
        EXPECT_EQ(keep, XY<int>(5, 5)) << bad;
    }
}

TEST(Preferences, ConfigIntIsClampedAndDefaulted) {
    prefs().filePath(); // makes the folder
    std::ofstream(std::string(EditorPreferences::configDir().c_str()) + "/config.ini")
        << "[General]\nmax_click_separation=500\nbig=99999\nword=abc\n";
    EXPECT_EQ(config_int("max_click_separation", 200, -2147483647 - 1, 2147483647), 500);
    EXPECT_EQ(config_int("big", 1, 0, 100), 100);
    EXPECT_EQ(config_int("word", 3, 0, 100), 3);
    EXPECT_EQ(config_int("absent", 200, 0, 1000), 200);
}

TEST(SavedLayout, TypedKeysRoundTripThroughText) {
    configb c;
    EXPECT_TRUE(c.set("EDIT_COOKIE", Cookie(Cookie::EditKind, IdStamp(1, 0, 7))));
    c.set("GROUPID", String("group \"one\"\n\\end"));
    c.set("CURRENT_TIME", 12.345678901234567);
    c.set("VIEW_ZOOM", 0.75);
    c.set("AUTO_POSITION", 1);
    c.set("VOB_GROUP_ID", 7u);
    c.set("POS", XY<int>(-3, 4));
    c.set("FLAG", true);
    EXPECT_FALSE(c.set("BAD=KEY", 1));
    EXPECT_FALSE(c.set(" padded", 1));

    configb back;
    String err;
    ASSERT_TRUE(configb::fromText(c.toText(), back, err)) << err.c_str();
    EXPECT_TRUE(back == c);
    String group;
    EXPECT_EQ(back.in("GROUPID", group), 0);
    EXPECT_EQ(group, "group \"one\"\n\\end");
    double t = 0;
    EXPECT_EQ(back.in("CURRENT_TIME", t), 0);
    EXPECT_EQ(t, 12.345678901234567) << "doubles keep every bit";
    unsigned id = 0;
    EXPECT_EQ(back.in("VOB_GROUP_ID", id), 0);
    EXPECT_EQ(id, 7u);

    double zoom = 9.0;
    EXPECT_EQ(back.in("MISSING", zoom), -1);
    EXPECT_EQ(zoom, 9.0) << "a missing key leaves the value";
    int fromDouble = 5;
    EXPECT_EQ(back.in("VIEW_ZOOM", fromDouble), -1) << "0.75 is not an int";
    EXPECT_EQ(fromDouble, 5);
    double fromInt = 0;
    EXPECT_EQ(back.in("AUTO_POSITION", fromInt), 0);
    EXPECT_EQ(fromInt, 1.0);
    String notString("keep");
    EXPECT_EQ(back.in("AUTO_POSITION", notString), -1);
}

TEST(SavedLayout, MalformedTextGivesAnErrorAndAnEmptyRecord) {
    const char* bad[] = {
        "NOEQUALS\n",
        "=i:1\n",
        "K=1\n",
        "K=x:1\n",
        "K=i:1.5\n",
        "K=i:99999999999999999999\n",
        "K=u:-1\n",
        "K=d:nan\n",
        "K=d:1e999\n",
        "K=b:yes\n",
        "K=s:\"unterminated\n",
        "K=s:\"bad \\q escape\"\n",
        "K=s:\"trailing\\\"\n",
        "K=s:\"a\"b\"\n",
        "K=s:\"\\x4\"\n",
        "K=c:Z1.2.3\n",
        "K=p:(1,2\n",
        "A=i:1\nA=i:2\n",
        "GOOD=i:1\n\x01=i:2\n",
    };
    for (const char* text : bad) {
        configb out;
        out.set("STALE", 1);
        String err;
        EXPECT_FALSE(configb::fromText(text, out, err)) << text;
        EXPECT_TRUE(out.empty()) << text;
        EXPECT_NE(err.view().find("line"), std::string_view::npos) << text;
    }
    configb out;
    String err;
    EXPECT_TRUE(configb::fromText("# comment\r\n\r\nK=i:-5\r\nS=s:\"\\x41\\t\"", out, err)) << err.c_str();
    int k = 0;
    EXPECT_EQ(out.in("K", k), 0);
    EXPECT_EQ(k, -5);
    String s;
    out.in("S", s);
    EXPECT_EQ(s, "A\t");
    EXPECT_TRUE(configb::fromText("", out, err));
    EXPECT_TRUE(out.empty());
}
