// SPDX-License-Identifier: MIT
#include "platform/graphics/DeferredImage.h"

#include <gtest/gtest.h>

#include <QtCore/QBuffer>
#include <QtGui/QImage>

using namespace platform;

namespace {

std::span<const std::byte> bytes(const std::string& data)
{
    return std::as_bytes(std::span(data.data(), data.size()));
}

// Red on the left half, blue on the right one.
std::string picture(int width, int height, const char* format)
{
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            image.setPixel(x, y, x < width / 2 ? 0xffff0000 : 0xff0000ff);
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format, 95);
    return data.toStdString();
}

// A JPEG whose metadata turns it by a quarter clockwise.
std::string onItsSide(std::string jpeg)
{
    const std::string orientation("\xff\xe1\0\x22"
                                  "Exif\0\0MM\0*\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0\x06\0\0\0\0\0\0",
                                  36);
    return jpeg.insert(2, orientation);
}

// A file of one icon, which it says has 16 by 16 pixels.
std::string icon(const std::string& png)
{
    std::string head("\0\0\1\0\1\0\x10\x10\0\0\1\0\x20\0", 14);
    for (auto number : {png.size(), std::size_t(22)})
        for (int shift = 0; shift < 32; shift += 8)
            head += static_cast<char>(number >> shift & 255);
    return head + png;
}

TEST(DecodeImageTests, APictureComesWithAsManyPixelsAsSufficeAndLiesAsLargeAsTheWhole)
{
    struct Case {
        const char* name;
        std::string data;
        std::optional<PixelSize> sufficient;
        PixelSize full;
        PixelSize decoded;
    };
    const auto jpeg = picture(800, 400, "JPEG");
    const auto png = picture(800, 400, "PNG");
    const Case cases[] = {
        {"all of it", png, std::nullopt, {800, 400}, {800, 400}},
        {"a quarter, PNG", png, PixelSize{200, 100}, {800, 400}, {200, 100}},
        {"a quarter, JPEG", jpeg, PixelSize{200, 100}, {800, 400}, {200, 100}},
        {"the axis that needs more decides", jpeg, PixelSize{200, 200}, {800, 400}, {400, 200}},
        {"nearly all is all", jpeg, PixelSize{700, 1}, {800, 400}, {800, 400}},
        {"never more than there is", jpeg, PixelSize{9000, 9000}, {800, 400}, {800, 400}},
        {"none at all is one", jpeg, PixelSize{0, -5}, {800, 400}, {2, 1}},
        {"turned upright", onItsSide(jpeg), PixelSize{100, 200}, {400, 800}, {100, 200}},
        {"a GIF, which Qt does not write, is not at hand; a bitmap",
         picture(80, 40, "BMP"),
         PixelSize{20, 10},
         {80, 40},
         {20, 10}},
    };
    for (const auto& test : cases) {
        auto decoded = decodeImage(bytes(test.data), {.scale = 2, .sufficientSize = test.sufficient});
        ASSERT_TRUE(decoded) << test.name;
        EXPECT_EQ(decoded->fullSize, test.full) << test.name;
        EXPECT_EQ((PixelSize{decoded->image.pixelWidth(), decoded->image.pixelHeight()}), test.decoded)
            << test.name;
        EXPECT_NEAR(decoded->image.size().width, test.full.width / 2.0, 0.01) << test.name;
        EXPECT_NEAR(decoded->image.size().height, test.full.height / 2.0,
                    test.full.height / 2.0 / test.decoded.height)
            << test.name;
        EXPECT_EQ(imagePixelSize(bytes(test.data)), test.full) << test.name;
    }
    EXPECT_TRUE(decodeImage(bytes(icon(png))));
    auto turned = decodeImage(bytes(onItsSide(jpeg)), {.sufficientSize = PixelSize{100, 200}});
    EXPECT_GT(turned->image.pixel(50, 20).components().red, 0.8) << "what was left is above";
    EXPECT_GT(turned->image.pixel(50, 180).components().blue, 0.8);
}

TEST(DecodeImageTests, WhatClaimsTooMuchIsRefusedByItsHeadAndWhatIsBrokenIsRefused)
{
    // 60,000 by 60,000, of which a hundred bytes are there.
    const std::string bomb("\211\120\116\107\015\012\032\012\000\000\000\015\111\110\104\122\000\000\352\140"
                           "\000\000\352\140\010\002\000\000\000\017\260\342\025\000\000\000\014\111\104\101"
                           "\124\170\234\143\140\240\075\000\000\000\144\000\001\206\144\074\065",
                           57);
    const auto png = picture(80, 40, "PNG");
    struct Case {
        const char* name;
        std::string data;
        long long limit;
        NSCocoaError expected;
    };
    const Case cases[] = {
        {"nothing", "", 1000, NSCocoaError::fileReadCorruptFile},
        {"text", "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>", 1000,
         NSCocoaError::fileReadCorruptFile},
        {"half a picture's head", png.substr(0, 20), 1000, NSCocoaError::fileReadCorruptFile},
        {"one pixel more than the limit", png, 80 * 40 - 1, NSCocoaError::fileReadTooLarge},
        {"more in an icon than it says", icon(png), 80 * 40 - 1, NSCocoaError::fileReadTooLarge},
        {"a bomb in an icon", icon(bomb), 64 << 20, NSCocoaError::fileReadTooLarge},
        {"a bomb that would be small when it is shown", bomb, 64 << 20, NSCocoaError::fileReadTooLarge},
    };
    for (const auto& test : cases) {
        auto decoded = decodeImage(bytes(test.data),
                                   {.sufficientSize = PixelSize{10, 10}, .maximumPixelCount = test.limit});
        ASSERT_FALSE(decoded) << test.name;
        EXPECT_EQ(decoded.error().bridged(), NSError(test.expected)) << test.name;
    }
}

TEST(DecodeImageTests, ADeferredPictureIsLaidOutFirstAndDecodedOnceForItsPlace)
{
    struct Case {
        const char* name;
        std::string data;
        std::optional<NSCocoaError> refusal; // at once
        std::optional<PixelSize> decoded;    // nothing: it is damaged
    };
    const auto png = picture(800, 400, "PNG");
    const auto bitmap = picture(800, 400, "BMP");
    auto crooked = png;
    crooked[png.size() / 2] ^= 0x55;
    const Case cases[] = {
        {"PNG", png, std::nullopt, PixelSize{200, 100}},
        {"JPEG, on its side", onItsSide(picture(400, 800, "JPEG")), std::nullopt, PixelSize{200, 100}},
        {"bitmap", bitmap, std::nullopt, PixelSize{200, 100}},
        {"damaged within", crooked, std::nullopt, std::nullopt},
        {"half a picture", png.substr(0, png.size() / 2), NSCocoaError::fileReadCorruptFile, {}},
        {"a chunk that is longer than all", std::string(png).replace(33, 4, "\xff\xff\xff\xff"),
         NSCocoaError::fileReadCorruptFile, std::nullopt},
        {"nothing", "", NSCocoaError::fileReadCorruptFile, std::nullopt},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.name);
        auto made = DeferredImage::make(std::make_shared<const std::string>(test.data), {.scale = 2});
        ASSERT_EQ(made.has_value(), !test.refusal);
        if (test.refusal) {
            EXPECT_EQ(made.error().bridged(), NSError(*test.refusal));
            continue;
        }
        auto& deferred = **made;
        EXPECT_EQ(deferred.image().size(), (CGSize{400, 200})) << "though nothing is decoded";
        deferred.setSufficientSize(PixelSize{200, 100});
        std::optional<PixelSize> other;
        std::thread thread([&] { other = deferred.decode(); });
        EXPECT_EQ(deferred.decode(), test.decoded);
        thread.join();
        EXPECT_EQ(other, test.decoded);
        deferred.setSufficientSize(std::nullopt);
        EXPECT_EQ(deferred.decode(), test.decoded) << "that comes too late";
        EXPECT_EQ(deferred.image().size(), (CGSize{400, 200}));
    }
}

} // namespace
