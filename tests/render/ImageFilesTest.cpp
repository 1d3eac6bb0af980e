// Image files into surfaces, scaling, and the files behind image clips.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "host/ImageConverter.h"
#include "host/Log.h"
#include "host/MaterialManager.h"
#include "host/VobManager.h"
#include "host/ZkImageCache.h"
#include "refhost/render/module/ImageFileCache.h"
#include "tests/render/RenderTestSupport.h"

using namespace rendertest;

namespace {

const std::string kMalformed = NODEDESK_SOURCE_DIR "/tests/data/malformed/";

TEST(ImageFiles, ReadsKeepsAndNoticesChanges) {
    auto& cache = ImageFileCache::instance();
    cache.clear();
    auto& api = ZkImage::Cache::instance();
    auto checker = api.loadImage(L"images/checker.png", 0x42475241, 0, 0);
    ASSERT_TRUE(checker) << "a relative name is found among the samples";
    EXPECT_EQ(checker->width(), 64);
    EXPECT_EQ(checker->height(), 64);
    EXPECT_EQ(at(*checker, 0, 0).a, 255);
    const unsigned reads = cache.reads();
    EXPECT_EQ(api.loadImage(L"images/checker.png", 0x42475241, 0, 0), checker) << "kept";
    EXPECT_EQ(cache.reads(), reads);

    auto small = api.loadImage(L"images/checker.png", 0x42475241, 16, 8);
    ASSERT_TRUE(small);
    EXPECT_EQ(small->width(), 16);
    EXPECT_EQ(small->height(), 8);

    // A file written anew is read again.
    const std::string copy = std::string(NODEDESK_BINARY_DIR) + "/render-copy.png";
    std::filesystem::copy_file(NODEDESK_SOURCE_DIR "/samples/images/sunset.png", copy,
                               std::filesystem::copy_options::overwrite_existing);
    auto first = api.loadImage(toWide(String(copy.c_str())), 0x42475241, 0, 0);
    ASSERT_TRUE(first);
    EXPECT_EQ(first->width(), 160);
    std::filesystem::copy_file(NODEDESK_SOURCE_DIR "/samples/images/checker.png", copy,
                               std::filesystem::copy_options::overwrite_existing);
    auto second = api.loadImage(toWide(String(copy.c_str())), 0x42475241, 0, 0);
    ASSERT_TRUE(second);
    EXPECT_EQ(second->width(), 64);

    // The format is told by the first bytes, not by the name.
    const std::string named = std::string(NODEDESK_BINARY_DIR) + "/render-png-named.jpg";
    std::filesystem::copy_file(NODEDESK_SOURCE_DIR "/samples/images/checker.png", named,
                               std::filesystem::copy_options::overwrite_existing);
    EXPECT_STREQ(ImageFileCache::formatOf(named), "png");
    auto renamed = ImageFileCache::readFile(named);
    ASSERT_TRUE(renamed);
    EXPECT_EQ(renamed->width(), 64);
    EXPECT_EQ(ImageFileCache::formatOf(kMalformed + "image-text.jpg"), nullptr);
    std::filesystem::remove(copy);
    std::filesystem::remove(named);
}

TEST(ImageFiles, MissingAndMalformedFilesGiveNull) {
    std::vector<std::string> log;
    setLogSink([&](const std::string& line) { log.push_back(line); });
    auto& api = ZkImage::Cache::instance();
    EXPECT_FALSE(api.loadImage(L"", 0x42475241, 0, 0));
    EXPECT_FALSE(api.loadImage(L"/no/such/folder/x.png", 0x42475241, 0, 0));
    EXPECT_FALSE(api.loadImage(L"images", 0x42475241, 0, 0)) << "a folder";
    EXPECT_FALSE(api.loadImage(L"images/checker.png", 0x12345678, 0, 0)) << "a data format not made";
    EXPECT_FALSE(api.loadImage(L"images/checker.png", 0x42475241, -1, 4));
    for (const char* bad : {"image-truncated.png", "image-empty.png", "image-text.jpg",
                            "image-huge-dimensions.png", "image-short-pixels.png"}) {
        const std::string path = kMalformed + bad;
        EXPECT_FALSE(ImageFileCache::readFile(path)) << bad;
        EXPECT_FALSE(api.loadImage(toWide(String(path.c_str())), 0x42475241, 0, 0)) << bad;
    }
    const std::string text = kMalformed + "image-text.jpg";
    const unsigned reads = ImageFileCache::instance().reads();
    EXPECT_FALSE(api.loadImage(toWide(String(text.c_str())), 0x42475241, 0, 0));
    EXPECT_EQ(ImageFileCache::instance().reads(), reads)
        << "a failure is not read again while the file stays";
    setLogSink(nullptr);
    EXPECT_FALSE(log.empty()) << "failures are told to the log, not to a dialogue";
}

TEST(ImageFiles, ResizeFiltersAndRefusesNoSize) {
    Zk::Image::Surface flatSurface(10, 10, 0xff336699u);
    flatSurface.setFormatUID(DigitalVideoFormats::k1080pFormatUID);
    auto big = ImageConverter::resize(flatSurface, 33, 17);
    ASSERT_TRUE(big);
    EXPECT_EQ(big->width(), 33);
    EXPECT_EQ(big->height(), 17);
    EXPECT_EQ(big->pixel(0, 0), 0xff336699u);
    EXPECT_EQ(big->pixel(32, 16), 0xff336699u);
    EXPECT_EQ(big->formatUID(), 0u) << "a scaled picture no longer has the format's size";

    // Halving a one-pixel checkerboard gives its average.
    Zk::Image::Surface checks(8, 8);
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 8; ++x)
            checks.setPixel(x, y, (x + y) % 2 ? 0xffffffffu : 0xff000000u);
    auto half = ImageConverter::resize(checks, 4, 4);
    ASSERT_TRUE(half);
    EXPECT_NEAR(at(*half, 1, 1).r, 128, 3);

    EXPECT_FALSE(ImageConverter::resize(flatSurface, 0, 10));
    EXPECT_FALSE(ImageConverter::resize(flatSurface, 10, -1));
    auto fromEmpty = ImageConverter::resize(Zk::Image::Surface(0, 0), 4, 4);
    ASSERT_TRUE(fromEmpty);
    EXPECT_EQ(at(*fromEmpty, 0, 0).a, 0);
}

TEST(ImageFiles, FileForImageClipSearchesOpenEdits) {
    VobManager::instance().reset();
    GraphBuilder a, b;
    EditMaterial clip;
    clip.cookie = Cookie(Cookie::MaterialKind, IdStamp(7, 0, 1));
    clip.source = "image";
    clip.file = "images/sunset.png";
    EditMaterial bars;
    bars.cookie = Cookie(Cookie::MaterialKind, IdStamp(7, 0, 2));
    b.edit->materials().push_back(bars);
    b.edit->materials().push_back(clip);
    a.edit->setCookie(Cookie(Cookie::EditKind, IdStamp(70, 0, 1)));
    b.edit->setCookie(Cookie(Cookie::EditKind, IdStamp(70, 0, 2)));

    EXPECT_TRUE(MaterialManager::findFileForImageClip(clip.cookie).empty()) << "no edit open yet";
    VobManager::instance().registerEdit(a.edit);
    VobManager::instance().registerEdit(b.edit);
    EXPECT_EQ(MaterialManager::findFileForImageClip(clip.cookie), WString(L"images/sunset.png"));
    EXPECT_TRUE(MaterialManager::findFileForImageClip(bars.cookie).empty()) << "not an image";
    EXPECT_TRUE(
        MaterialManager::findFileForImageClip(Cookie(Cookie::MaterialKind, IdStamp(9, 9, 9))).empty());
    EXPECT_TRUE(MaterialManager::findFileForImageClip(Cookie()).empty());

    // A material node of an image clip without a file of its own renders the clip's file.
    int v1 = b.channel(L"V1");
    auto node = Zk::make<MaterialUsageNode>(IdStamp(1, 0, 1), clip.cookie);
    node->setSource("image");
    b.edit->addNode(node);
    b.materialEvent(v1, 0, 10, node);
    auto s = still(b.edit, v1, 1, 160, 90);
    ASSERT_TRUE(s);
    auto direct = ZkImage::Cache::instance().loadImage(L"images/sunset.png", 0x42475241, 0, 0);
    EXPECT_EQ(at(*s, 80, 45).r, at(*direct, 80, 45).r);

    VobManager::instance().closeEdit(b.edit);
    EXPECT_TRUE(MaterialManager::findFileForImageClip(clip.cookie).empty()) << "closed";
    VobManager::instance().reset();
}

} // namespace
