// Text forms of the layout direction, and how the view's preference reads them.
#include "nodeui/Orientation.h"

#include <gtest/gtest.h>

#include "host/EditorPreferences.h"

using VidRouting::Orientations::BottomToTop;
using VidRouting::Orientations::LeftToRight;
using VidRouting::Orientations::Orientation;

TEST(Orientation, TextFormsBothWays) {
    EXPECT_STREQ(orientationToString(LeftToRight).c_str(), "LeftToRight");
    EXPECT_STREQ(orientationToString(BottomToTop).c_str(), "BottomToTop");
    EXPECT_STREQ(orientationToString(static_cast<Orientation>(2)).c_str(), "") << "out of range: empty";
    EXPECT_STREQ(orientationToString(static_cast<Orientation>(-1)).c_str(), "");
    EXPECT_EQ(orientationFromString("BottomToTop"), BottomToTop);
    EXPECT_EQ(orientationFromString("LeftToRight"), LeftToRight);
    for (const char* other : {"", "bottomtotop", "BottomToTop ", "Sideways"})
        EXPECT_EQ(orientationFromString(other), LeftToRight) << "'" << other << "' reads as LeftToRight";
}

TEST(Orientation, MissingPreferenceIsBottomToTop) {
    const String key = "Video Routing : Orientation (test of the default)";
    prefs().removePreference(key);
    EXPECT_EQ(orientationFromString(prefs().getPreference(key, kOrientationPrefDefault)), BottomToTop);
    prefs().setPreference(key, orientationToString(LeftToRight));
    EXPECT_EQ(orientationFromString(prefs().getPreference(key, kOrientationPrefDefault)), LeftToRight);
    prefs().removePreference(key);
}
