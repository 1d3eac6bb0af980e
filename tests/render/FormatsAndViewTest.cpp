// Video formats and fitting one picture shape into another; the view transform.
#include <gtest/gtest.h>

#include "host/CurrentProject.h"
#include "host/Log.h"
#include "refhost/render/module/SurfacePixels.h"
#include "refhost/render/module/ViewTransform.h"
#include "tests/render/RenderTestSupport.h"

using namespace rendertest;

namespace {

TEST(VideoFormats, FindAndFit) {
    DigitalVideoFormatInfo info;
    ASSERT_TRUE(DigitalVideoFormats::findByUID(DigitalVideoFormats::k1080pFormatUID, info));
    EXPECT_EQ(info.width, 1920);
    EXPECT_EQ(info.height, 1080);
    EXPECT_DOUBLE_EQ(info.aspect, 16.0 / 9.0);
    ASSERT_TRUE(DigitalVideoFormats::findByUID(DigitalVideoFormats::kThumbnailFormatUID, info));
    EXPECT_DOUBLE_EQ(info.aspect, 16.0 / 9.0);
    DigitalVideoFormatInfo untouched = info;
    EXPECT_FALSE(DigitalVideoFormats::findByUID(0, info));
    EXPECT_FALSE(DigitalVideoFormats::findByUID(0x12345678, info));
    EXPECT_EQ(info.uid, untouched.uid) << "left as it was";

    const auto sq = DigitalVideoFormats::makeSquarePixelFormat(400, 300);
    EXPECT_DOUBLE_EQ(sq.aspect, 4.0 / 3.0);
    EXPECT_EQ(DigitalVideoFormats::makeSquarePixelFormat(10, 0).aspect, 0.0);

    Zk::Box<double> src, dst;
    // 16:9 into a 4:3 box: full width, bars above and below.
    DigitalVideoFormats::convertVideo(DigitalVideoFormats::makeSquarePixelFormat(160, 90), sq, src, dst);
    EXPECT_EQ(src, (Zk::Box<double>{0, 0, 160, 90}));
    EXPECT_DOUBLE_EQ(dst.x1, 0);
    EXPECT_DOUBLE_EQ(dst.x2, 400);
    EXPECT_DOUBLE_EQ(dst.height(), 225);
    EXPECT_DOUBLE_EQ(dst.y1, 37.5);
    // 4:3 into a 16:9 box: full height, centred across.
    DigitalVideoFormats::convertVideo(sq, DigitalVideoFormats::makeSquarePixelFormat(160, 90), src, dst);
    EXPECT_DOUBLE_EQ(dst.height(), 90);
    EXPECT_DOUBLE_EQ(dst.width(), 120);
    EXPECT_DOUBLE_EQ(dst.x1, 20);
    // A format of non-square pixels shows its displayed shape: 720 x 576 at 4:3 fills a 4:3 box.
    ASSERT_TRUE(DigitalVideoFormats::findByUID(0x30353736, info)); // "0576"
    DigitalVideoFormats::convertVideo(info, sq, src, dst);
    EXPECT_EQ(src, (Zk::Box<double>{0, 0, 720, 576}));
    EXPECT_EQ(dst, (Zk::Box<double>{0, 0, 400, 300}));
    // Nothing to fit.
    DigitalVideoFormats::convertVideo(DigitalVideoFormats::makeSquarePixelFormat(0, 0), sq, src, dst);
    EXPECT_EQ(dst, Zk::Box<double>{});
}

Rgba transformed(const std::string& name, float r, float g, float b) {
    OIIO::ImageBuf buf = RenderPixels::blank(4, 4, r, g, b, 1.f);
    ViewTransform::instance().apply(name, buf);
    auto s = RenderPixels::toSurface(buf);
    return at(*s, 1, 1);
}

TEST(ViewTransform, DisplaysViewsAndSpaces) {
    auto& vt = ViewTransform::instance();
    EXPECT_FALSE(vt.displayViews().empty());
    for (const auto& dv : vt.displayViews())
        EXPECT_TRUE(vt.knows(dv)) << dv;
    for (const auto& cs : vt.colourSpaces())
        EXPECT_TRUE(vt.knows(cs)) << cs;

    // Out to the sRGB display without tone mapping is the working space itself.
    Rgba p = transformed("sRGB - Display/Un-tone-mapped", 0.2f, 0.5f, 0.8f);
    EXPECT_NEAR(p.r, 51, 2);
    EXPECT_NEAR(p.g, 128, 2);
    EXPECT_NEAR(p.b, 204, 2);
    // The tone-mapped view darkens mid grey and keeps grey grey.
    p = transformed("sRGB - Display/ACES 1.0 - SDR Video", 0.5f, 0.5f, 0.5f);
    EXPECT_LT(p.r, 128);
    EXPECT_NEAR(p.r, p.g, 2);
    EXPECT_NEAR(p.g, p.b, 2);
    // A log encoding lifts the darks.
    p = transformed("ACEScct", 0.05f, 0.05f, 0.05f);
    EXPECT_GT(p.r, 13 + 10);
}

TEST(ViewTransform, UnknownNameLeavesPixelsAndLogsOnce) {
    std::vector<std::string> log;
    setLogSink([&](const std::string& line) { log.push_back(line); });
    for (const char* bad : {"No such view", "sRGB - Display/No such view", "/", ""}) {
        Rgba p = transformed(bad, 0.2f, 0.5f, 0.8f);
        EXPECT_EQ(p.r, 51) << bad;
        EXPECT_EQ(p.b, 204) << bad;
    }
    transformed("No such view", 0.1f, 0.1f, 0.1f);
    setLogSink(nullptr);
    int lines = 0;
    for (const auto& l : log)
        lines += l.find("\"No such view\"") != std::string::npos;
    EXPECT_EQ(lines, 1);
}

TEST(ViewTransform, StillsFollowTheProjectsSetting) {
    GraphBuilder g;
    int v1 = g.channel(L"V1");
    g.graphEvent(v1, 0, 10, flat(g, 1, 0.05, 0.05, 0.05));
    const int plain = at(*still(g.edit, v1, 1), 2, 2).r;
    Zk::CurrentProject::setViewLUT("ACEScct", true);
    const int viewed = at(*still(g.edit, v1, 1), 2, 2).r;
    Zk::CurrentProject::setViewLUT("ACEScct", false);
    EXPECT_EQ(plain, 13);
    EXPECT_GT(viewed, plain + 10);
    EXPECT_EQ(at(*still(g.edit, v1, 1), 2, 2).r, plain) << "switched off again";
}

} // namespace
