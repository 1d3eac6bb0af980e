// The render module: a program that does not link it finds it beside the host library on its first
// still, and gets from it stills, scaled pictures and image files.
#include "refhost/render/RenderModule.h"

#include <gtest/gtest.h>

#include "host/DigitalVideoFormats.h"
#include "host/ImageConverter.h"
#include "host/VidRenderUtils.h"
#include "host/ZkImageCache.h"
#include "tests/support/GraphBuilder.h"

TEST(RenderModule, LoadsOnTheFirstStillAndServesEveryPictureCall) {
    GraphBuilder g;
    const int v1 = g.channel(L"V1");
    auto flat = g.effect(1, 0, "PixShader:Mattes:flatcol.fx");
    flat->setParam("red", 1.0);
    flat->setParam("green", 0.0);
    flat->setParam("blue", 0.0);
    g.graphEvent(v1, 0, 10, flat);
    EditGraphIterator it(g.edit, v1, 1.0, 0);
    ShotVideoMetadata m = g.edit->getVideoMetadata();
    m.width = 32;
    m.height = 18;
    m.formatUID = DigitalVideoFormats::kThumbnailFormatUID;

    Zk::Ptr<Zk::Image::Surface> still =
        Render::VidRenderUtils::renderStill(Render::RenderContextRep(it, m, 0, 0, 1, true), true);
    ASSERT_TRUE(still) << "the module was found and rendered";
    EXPECT_TRUE(RenderModule::loaded());
    EXPECT_EQ(still->pixel(5, 5), 0xFFFF0000u) << "opaque red";
    EXPECT_EQ(still->formatUID(), DigitalVideoFormats::kThumbnailFormatUID);

    // Sizes the host refuses never reach the module.
    m.width = 0;
    EXPECT_FALSE(Render::VidRenderUtils::renderStill(Render::RenderContextRep(it, m, 0, 0, 1, true), true));

    Zk::Ptr<Zk::Image::Surface> half = ImageConverter::resize(*still, 16, 9);
    ASSERT_TRUE(half);
    EXPECT_EQ(half->width(), 16);
    EXPECT_EQ(half->pixel(3, 3), 0xFFFF0000u);
    EXPECT_FALSE(ImageConverter::resize(*still, 0, 9));

    Zk::Ptr<Zk::Image::Surface> file =
        ZkImage::Cache::instance().loadImage(WString(L"images/checker.png"), 0x42475241u, 0, 0);
    ASSERT_TRUE(file) << "a sample image, found in the samples folder";
    EXPECT_GT(file->width(), 0);
}
