// SPDX-License-Identifier: MIT
#include "platform/graphics/UIImage.h"

#include "tests/platform/graphics/Painting.h"

#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {
namespace {

std::span<const std::byte> bytesOf(const std::string& text)
{
    return std::as_bytes(std::span(text.data(), text.size()));
}

UIImage checkers()
{
    return painted({6, 4}, 2, [](CGContext& c) {
        c.fill(CGRect::make(0, 0, 3, 4), UIColor::red());
        c.fill(CGRect::make(3, 0, 3, 2), UIColor(0, 0, 1, 0.5));
    });
}

class UIImageFileTests : public testing::Test {
protected:
    std::string path(const char* name) const { return folder_.path(name); }
    std::ptrdiff_t fileCount() const { return folder_.fileCount(); }

    ::tests::TemporaryDirectory folder_;
};

TEST(UIImageTests, aCutPictureIsAPictureOrAnErrorAndOtherDataIsCorrupt)
{
    auto png = checkers().pngData();
    for (std::size_t length = 0; length < png.size(); length += 9) {
        auto cut = UIImage::fromData(bytesOf(png).first(length));
        if (cut)
            EXPECT_EQ(cut->pixelWidth(), 12);
        else
            EXPECT_EQ(cut.error().bridged().domain(), NSCocoaErrorDomain);
    }
    EXPECT_FALSE(UIImage::fromData(bytesOf(png).first(20)).has_value());
    for (std::string data :
         {"", "hello", "<svg xmlns='http://www.w3.org/2000/svg' width='1' height='1'/>", "\x89PNG\r\n"}) {
        auto image = UIImage::fromData(bytesOf(data));
        ASSERT_FALSE(image.has_value()) << data;
        EXPECT_EQ(image.error().bridged().code(), static_cast<long>(NSCocoaError::fileReadCorruptFile));
    }
}

TEST(UIImageTests, aFewBytesThatPromiseTooManyPixelsAreRefusedBeforeDecoding)
{
    auto bomb = checkers().pngData();
    // The header's width and height, and the checksum over it.
    bomb.replace(16, 8, std::string("\0\0\xEA\x60\0\0\xEA\x60", 8));
    std::uint32_t checksum = 0xFFFFFFFF;
    for (std::size_t i = 12; i < 29; ++i) {
        checksum ^= static_cast<unsigned char>(bomb[i]);
        for (int bit = 0; bit < 8; ++bit)
            checksum = checksum >> 1 ^ (checksum & 1 ? 0xEDB88320 : 0);
    }
    for (int i = 0; i < 4; ++i)
        bomb[static_cast<std::size_t>(29 + i)] = static_cast<char>(~checksum >> (24 - 8 * i));
    auto image = UIImage::fromData(bytesOf(bomb));
    ASSERT_FALSE(image.has_value());
    EXPECT_EQ(image.error().bridged().code(), static_cast<long>(NSCocoaError::fileReadTooLarge));
}

TEST(UIImageTests, sizesThatCannotBePaintedAreErrors)
{
    constexpr auto nan = std::numeric_limits<double>::quiet_NaN();
    constexpr auto infinity = std::numeric_limits<double>::infinity();
    for (auto [size, scale] : {std::pair(CGSize{0, 5}, 1.0),
                               {{5, -1}, 1},
                               {{nan, 5}, 1},
                               {{5, infinity}, 1},
                               {{5, 5}, 0},
                               {{5, 5}, nan},
                               {{1e9, 1}, 1},
                               {{30'000, 30'000}, 1}})
        EXPECT_FALSE(makeImage(size, scale, [&](CGContext&) { ADD_FAILURE(); }).has_value());
    EXPECT_EQ(painted({2.2, 1}, 1, [](CGContext&) { }).pixelWidth(), 3) << "a part of a pixel counts as one";
}

TEST(UIImageTests, pixelsGivenAreThePixelsSeen)
{
    const unsigned char rgba[]{255, 0, 0, 255, 0, 255, 0, 128};
    auto image = UIImage::fromPixels(std::as_bytes(std::span(rgba)), 2, 1);
    EXPECT_TRUE(hasColor(image, 0, 0, UIColor::red()));
    EXPECT_TRUE(hasColor(image, 1, 0, UIColor(0, 1, 0, 128 / 255.0)));
    EXPECT_TRUE(UIImage::fromPixels({}, 0, 0).isEmpty());
}

TEST_F(UIImageFileTests, aWrittenPictureIsReadBackAndNothingElseIsLeft)
{
    ASSERT_TRUE(checkers().writePNG(path("a.png")).has_value());
    ASSERT_TRUE(checkers().writePNG(path("a.png")).has_value()) << "over the first one";
    EXPECT_EQ(fileCount(), 1);
    auto read = UIImage::fromFile(path("a.png"), 2);
    ASSERT_TRUE(read.has_value());
    EXPECT_EQ(read->size(), (CGSize{6, 4}));
    EXPECT_TRUE(hasColor(*read, 1, 1, UIColor::red()));
    EXPECT_TRUE(hasColor(*read, 7, 1, UIColor(0, 0, 1, 0.5)));
    EXPECT_EQ(alphaAt(*read, 7, 6), 0);
}

TEST_F(UIImageFileTests, aFailedWriteLeavesWhatWasThere)
{
    std::filesystem::create_directory(path("taken.png"));
    EXPECT_FALSE(checkers().writePNG(path("taken.png")).has_value());
    EXPECT_EQ(fileCount(), 1) << "the file beside it is gone again";
    auto nowhere = checkers().writePNG(path("missing/a.png"));
    ASSERT_FALSE(nowhere.has_value());
    EXPECT_EQ(nowhere.error().bridged().domain(), NSPOSIXErrorDomain);
    EXPECT_EQ(nowhere.error().bridged().code(), ENOENT);
    EXPECT_FALSE(UIImage().writePNG(path("b.png")).has_value());
}

TEST_F(UIImageFileTests, whatCannotBeReadIsAnErrorThatNamesTheFile)
{
    std::ofstream(path("text.png")) << "no picture";
    ASSERT_EQ(::mkfifo(path("pipe.png").c_str(), 0600), 0);
    using enum NSCocoaError;
    for (auto [name, code] : {std::pair("missing.png", fileReadNoSuchFile),
                              {"text.png", fileReadCorruptFile},
                              {"pipe.png", fileReadUnknown},
                              {".", fileReadUnknown}}) {
        auto image = UIImage::fromFile(path(name));
        ASSERT_FALSE(image.has_value()) << name;
        auto& error = image.error().bridged();
        EXPECT_EQ(error.code(), static_cast<long>(code)) << name;
        EXPECT_EQ(error.userInfo().at(std::string(NSFilePathErrorKey)), name);
    }
}

} // namespace
} // namespace platform
