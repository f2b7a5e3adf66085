// SPDX-License-Identifier: MIT
#include "tests/platform/avfoundation/ImageGeneratorTesting.h"

#include "platform/avfoundation/AVComposition.h"

using namespace platform;
using namespace tests;

namespace {

// Red, green; blue, white.
std::string fourColors(const std::string& size, const std::string& rest)
{
    return "-f lavfi -i color=red:s=" + size + ":d=0.2,format=gbrp -f lavfi -i color=lime:s=" + size
        + ":d=0.2,format=gbrp -f lavfi -i color=blue:s=" + size
        + ":d=0.2,format=gbrp -f lavfi -i color=white:s=" + size
        + ":d=0.2,format=gbrp -filter_complex \"xstack=inputs=4:layout=0_0|w0_0|0_h0|w0_h0" + rest;
}

std::string nameOf(const UIColor& color)
{
    auto [red, green, blue, alpha] = color.components();
    auto isOn = [](double component) { return component > 0.9; };
    auto isOff = [](double component) { return component < 0.1; };
    if (isOn(red) && isOff(green) && isOff(blue))
        return "r";
    if (isOff(red) && isOn(green) && isOff(blue))
        return "g";
    if (isOff(red) && isOff(green) && isOn(blue))
        return "b";
    return isOn(red) && isOn(green) && isOn(blue) ? "w" : "?";
}

// The colours in the middle of the four quarters, as one reads.
std::string quarters(const UIImage& image)
{
    std::string names;
    for (int y : {1, 3})
        for (int x : {1, 3})
            names += nameOf(image.pixel(image.pixelWidth() * x / 4, image.pixelHeight() * y / 4));
    return names;
}

std::shared_ptr<AVMutableComposition> withTransform(const AVAsset& asset, const CGAffineTransform& transform)
{
    auto composition = std::make_shared<AVMutableComposition>();
    auto track = composition->addMutableTrack(AVMediaType::video, 1);
    EXPECT_TRUE(
        track->insertTimeRange({CMTime::zero(), CMTime(1, 10)}, *asset.tracks().front(), CMTime::zero()));
    track->setPreferredTransform(transform);
    return composition;
}

TEST(AVAssetImageGenerator, turns_and_mirrors_pictures_as_the_track_asks)
{
    auto asset = videoAsset("mp4", fourColors("48x24", "\" -c:v libx264 -qp 4 -pix_fmt yuv444p"));
    const struct {
        const char* name;
        CGAffineTransform transform;
        std::string expected;
        CGSize size;
    } cases[] = {
        {"upright", {}, "rgbw", {96, 48}},
        {"a quarter clockwise", {0, 1, -1, 0, 48, 0}, "brwg", {48, 96}},
        {"upside down", {-1, 0, 0, -1, 96, 48}, "wbgr", {96, 48}},
        {"a quarter back", {0, -1, 1, 0, 0, 96}, "gwrb", {48, 96}},
        {"mirrored", {-1, 0, 0, 1, 96, 0}, "grwb", {96, 48}},
        {"upside down and mirrored", {1, 0, 0, -1, 0, 48}, "bwrg", {96, 48}},
        {"along the falling diagonal", {0, 1, 1, 0, 0, 0}, "rbgw", {48, 96}},
        {"along the rising diagonal", {0, -1, -1, 0, 48, 96}, "wgbr", {48, 96}},
    };
    for (auto& [name, transform, expected, size] : cases) {
        SCOPED_TRACE(name);
        AVAssetImageGenerator generator(withTransform(*asset, transform));
        auto flat = generator.copyCGImage(CMTime::zero());
        ASSERT_TRUE(flat);
        EXPECT_EQ(quarters(*flat), "rgbw") << "only when it is told to";
        generator.setAppliesPreferredTrackTransform(true);
        auto turned = generator.copyCGImage(CMTime::zero());
        ASSERT_TRUE(turned);
        EXPECT_EQ(quarters(*turned), expected);
        EXPECT_EQ(turned->size(), size);
        generator.setMaximumSize({24, 24});
        EXPECT_EQ(quarters(*generator.copyCGImage(CMTime::zero())), expected);
    }
    AVAssetImageGenerator oblique(withTransform(*asset, CGAffineTransform::rotation(0.5)));
    oblique.setAppliesPreferredTrackTransform(true);
    auto image = *oblique.copyCGImage(CMTime::zero());
    EXPECT_EQ(image.size(), (CGSize{107, 88}));
    EXPECT_EQ(image.pixel(1, 1).components().alpha, 0) << "its corners are empty";
    EXPECT_EQ(nameOf(image.pixel(40, 25)), "r");
}

TEST(AVAssetImageGenerator, fits_pictures_within_the_maximum_size_in_their_proportions)
{
    auto wide = videoAsset("mp4", fourColors("32x24", ",setsar=2/1\" -c:v libx264 -qp 4 -pix_fmt yuv444p"));
    auto narrow = videoAsset("mkv", fourColors("32x24", ",setsar=1/2\" -c:v libx264 -qp 4 -pix_fmt yuv444p"));
    const struct {
        std::shared_ptr<AVAsset> asset;
        CGSize maximum, expected;
    } cases[] = {
        {wide, {0, 0}, {128, 48}},     {wide, {64, 64}, {64, 24}},   {wide, {500, 12}, {32, 12}},
        {wide, {500, 500}, {128, 48}}, {wide, {64, 0}, {64, 24}},    {wide, {0, 12}, {32, 12}},
        {wide, {-64, -1}, {128, 48}},  {wide, {0.5, 0}, {1, 1}},     {wide, {64.9, 0}, {64, 24}},
        {narrow, {0, 0}, {32, 48}},    {narrow, {16, 16}, {11, 16}}, {narrow, {std::nan(""), 24}, {16, 24}},
    };
    for (auto& [asset, maximum, expected] : cases) {
        AVAssetImageGenerator generator(asset);
        generator.setMaximumSize(maximum);
        auto image = generator.copyCGImage(CMTime::zero());
        ASSERT_TRUE(image);
        EXPECT_EQ(image->pixelWidth(), expected.width) << maximum.width << " x " << maximum.height;
        EXPECT_EQ(image->pixelHeight(), expected.height) << maximum.width << " x " << maximum.height;
        EXPECT_TRUE(expected.height < 2 || quarters(*image) == "rgbw");
    }
}

TEST(AVAssetImageGenerator, shows_the_colours_that_were_meant)
{
    // One colour in RGB, or the luma alone, encoded as the arguments say.
    auto filled = [](std::string color, std::string filter, std::string arguments) {
        return "-f lavfi -i color=" + color + ":s=64x64:d=0.2,format=gbrp -vf \"" + filter + "\" "
            + arguments;
    };
    auto grey = [](int luma, std::string transfer) {
        auto level = std::to_string(luma);
        return "-f lavfi -i color=s=64x64:d=0.2 -vf \"format=yuv420p10,geq=lum=" + level
            + ":cb=512:cr=512\" -c:v libx265 -x265-params "
              "log-level=none:qp=1:colorprim=bt2020:colormatrix=bt2020nc:transfer="
            + transfer;
    };
    auto tagged = [](std::string matrix, std::string range) {
        return "-c:v libx264 -qp 1 -colorspace " + matrix + " -color_range " + range;
    };
    const struct {
        const char* name;
        std::string arguments;
        double red, green, blue; // of 255
    } cases[] = {
        {"BT.709",
         filled("0xC86432", "scale=out_color_matrix=bt709:out_range=tv,format=yuv420p",
                tagged("bt709", "tv")),
         200, 100, 50},
        {"BT.601",
         filled("0xC86432", "scale=out_color_matrix=bt601:out_range=tv,format=yuv420p",
                tagged("smpte170m", "tv")),
         200, 100, 50},
        {"BT.709 in full range",
         filled("0xC86432", "scale=out_color_matrix=bt709:out_range=pc,format=yuv420p",
                tagged("bt709", "pc")),
         200, 100, 50},
        {"small and untagged",
         filled("0xC86432", "scale=out_color_matrix=bt601:out_range=tv,format=yuv420p", "-c:v libx264 -qp 1"),
         200, 100, 50},
        {"ten bits",
         filled("0xC86432", "scale=out_color_matrix=bt709:out_range=tv,format=yuv420p10",
                "-c:v libx265 -x265-params log-level=none:qp=1 -colorspace bt709 -color_range tv"),
         200, 100, 50},
        {"a wide gamut",
         filled("0x808080", "scale=out_color_matrix=bt709:out_range=tv,format=yuv420p",
                tagged("bt709", "tv") + " -color_primaries smpte432"),
         128, 128, 128},
        {"PQ, a tenth of white", grey(378, "smpte2084"), 89, 89, 89},
        {"PQ, black", grey(64, "smpte2084"), 0, 0, 0},
        {"PQ, 203 cd/m2, made a little darker to leave room", grey(573, "smpte2084"), 228, 228, 228},
        {"PQ, 1000 cd/m2", grey(723, "smpte2084"), 255, 255, 255},
        {"PQ, more than anything has", grey(940, "smpte2084"), 255, 255, 255},
        {"HLG, 75 %, the white of paper", grey(721, "arib-std-b67"), 228, 228, 228},
        {"HLG, its greatest", grey(940, "arib-std-b67"), 255, 255, 255},
    };
    for (auto& [name, arguments, red, green, blue] : cases) {
        SCOPED_TRACE(name);
        for (double side : {0.0, 16.0}) {
            AVAssetImageGenerator generator(videoAsset("mkv", arguments));
            generator.setMaximumSize({side, side});
            auto image = generator.copyCGImage(CMTime::zero());
            ASSERT_TRUE(image);
            auto color = image->pixel(image->pixelWidth() / 2, image->pixelHeight() / 2).components();
            EXPECT_NEAR(color.red * 255, red, 3);
            EXPECT_NEAR(color.green * 255, green, 3);
            EXPECT_NEAR(color.blue * 255, blue, 3);
        }
    }
}

TEST(AVAssetImageGenerator, lays_tracks_together_as_the_composition_says)
{
    auto asset = videoAsset("mp4", fourColors("48x24", "\" -c:v libx264 -qp 4 -pix_fmt yuv444p"));
    auto media = withTransform(*asset, {});
    auto above = media->addMutableTrack(AVMediaType::video, 2);
    ASSERT_TRUE(
        above->insertTimeRange({CMTime::zero(), CMTime(1, 10)}, *asset->tracks().front(), CMTime::zero()));
    AVVideoCompositionLayerInstruction top(*above), bottom(*media->tracks().front());
    bottom.setTransform(CGAffineTransform::translation(0, 48), CMTime::zero());
    top.setTransform(CGAffineTransform::scale(0.5, 0.5), CMTime::zero());
    top.setOpacityRamp(0, 1, {CMTime::zero(), CMTime(1, 10)});
    AVVideoComposition composition{.renderSize = {96, 96}, .frameDuration = CMTime(1, 20)};
    composition.instructions = {{.timeRange = {CMTime::zero(), CMTime(9, 100)},
                                 .layerInstructions = {top, bottom},
                                 .backgroundColor = UIColor::green()}};
    AVAssetImageGenerator generator(media);
    generator.setAppliesPreferredTrackTransform(true);
    generator.setVideoComposition(composition);
    CMTime actual;
    auto image = generator.copyCGImage(CMTime(8, 100), &actual);
    ASSERT_TRUE(image) << image.error().localizedDescription();
    EXPECT_EQ(actual, CMTime(1, 20)) << "the composition's own frame";
    EXPECT_EQ(image->size(), (CGSize{96, 96}));
    EXPECT_EQ(nameOf(image->pixel(80, 24)), "g") << "nothing lies there";
    EXPECT_EQ(nameOf(image->pixel(20, 60)) + nameOf(image->pixel(70, 85)), "rw");
    auto mixed = image->pixel(12, 6).components();
    EXPECT_NEAR(mixed.red, 0.5, 0.03) << "half of the red on top";
    EXPECT_NEAR(mixed.green, 0.5, 0.03) << "half of the green beneath";
    EXPECT_EQ(nameOf(generator.copyCGImage(CMTime::zero())->pixel(12, 6)), "g") << "not seen yet";

    generator.setMaximumSize({48, 24});
    EXPECT_EQ(generator.copyCGImage(CMTime::zero())->size(), (CGSize{24, 24}));
    generator.setVideoComposition(
        AVVideoComposition::propertiesOf(*withTransform(*asset, {0, 1, -1, 0, 48, 0})));
    EXPECT_EQ(generator.videoComposition()->renderSize, (CGSize{48, 96}));

    const auto invalid = Error(AVError::invalidVideoComposition);
    generator.setVideoComposition(composition);
    for (int fault = 0; fault < 3; ++fault) {
        auto wrong = composition;
        if (fault == 0)
            wrong.renderSize.width = 0;
        else if (fault == 1)
            wrong.frameDuration = CMTime::zero();
        else
            wrong.instructions.front().timeRange.duration = CMTime::zero();
        generator.setVideoComposition(wrong);
        auto failed = generator.copyCGImage(CMTime::zero());
        ASSERT_FALSE(failed) << fault;
        EXPECT_EQ(failed.error(), invalid);
    }
}

} // namespace
