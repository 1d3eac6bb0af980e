// Strip colours by effect family and by material, and recoloured icons.
#include <gtest/gtest.h>

#include "host/IconCache.h"
#include "host/Resources.h"
#include "host/StripColourManager.h"

TEST(StripColours, FamiliesShareAColourAndDifferFromEachOther) {
    const Colour blur = StripColourManager::getTypeColour("PixShader:Blur:gaussian.fx");
    EXPECT_EQ(blur, StripColourManager::getTypeColour("PixShader:Blur:box.fx")) << "one colour per family";
    EXPECT_NE(blur, StripColourManager::getTypeColour("PixShader:Colour:correct.fx"));
    EXPECT_EQ(StripColourManager::getTypeColour("PixShader:Mattes:flatcol.fx"),
              StripColourManager::getTypeColour("PixShader:Mattes:gradients:linear.fx"));
    EXPECT_NE(StripColourManager::getTypeColour(""), blur) << "an unknown tag gets the default";

    const Cookie a(Cookie::MaterialKind, IdStamp(1, 0, 1)), b(Cookie::MaterialKind, IdStamp(1, 0, 2));
    EXPECT_EQ(StripColourManager::getColourFor(a), StripColourManager::getColourFor(a))
        << "stable for a clip";
    EXPECT_NE(StripColourManager::getColourFor(a), StripColourManager::getColourFor(b));
}

TEST(IconCache, RecolouredIconsKeepTheirShapeAndTakeTheColour) {
    const String path = getIconPath("close.png");
    Icon plain = IconCache::loadIcon(path);
    ASSERT_TRUE(plain.valid()) << path.c_str();
    Icon red = IconCache::createRecolouredIcon(path, Colour(1, 0, 0));
    ASSERT_TRUE(red.valid());
    ASSERT_EQ(red.width, plain.width);
    ASSERT_EQ(red.pixels->size(), plain.pixels->size());
    bool sawOpaque = false;
    for (size_t i = 0; i < red.pixels->size(); ++i) {
        const uint32_t p = (*red.pixels)[i];
        EXPECT_EQ(p >> 24, (*plain.pixels)[i] >> 24) << "coverage is kept at pixel " << i;
        if (p >> 24) {
            sawOpaque = true;
            EXPECT_EQ(p & 0xFFFF, 0u) << "no green or blue in a red icon";
        }
    }
    EXPECT_TRUE(sawOpaque);
    EXPECT_EQ(IconCache::createRecolouredIcon(path, Colour(1, 0, 0)).pixels, red.pixels) << "made once";
    EXPECT_FALSE(IconCache::loadIcon("/no/such/icon.png").valid());
}
