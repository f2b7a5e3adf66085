// SPDX-License-Identifier: MIT
#include "platform/graphics/SymbolImage.h"

#include "platform/graphics/CGContext.h"
#include "platform/graphics/UIColor.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

namespace {

using namespace platform;

// The opaque share of a picture's pixels.
double inkOf(const UIImage& image)
{
    double ink = 0;
    for (int y = 0; y < image.pixelHeight(); ++y) {
        for (int x = 0; x < image.pixelWidth(); ++x)
            ink += image.pixel(x, y).components().alpha;
    }
    return ink / (image.pixelWidth() * image.pixelHeight());
}

// The same of where two pictures of one size differ, or one and the other in a mirror.
enum class Mirror { none, leftToRight };
double differenceOf(const UIImage& a, const UIImage& b, Mirror mirror)
{
    double difference = 0;
    for (int y = 0; y < a.pixelHeight(); ++y) {
        for (int x = 0; x < a.pixelWidth(); ++x) {
            auto other = mirror == Mirror::none ? x : a.pixelWidth() - 1 - x;
            difference += std::abs(a.pixel(x, y).components().alpha - b.pixel(other, y).components().alpha);
        }
    }
    return difference / (a.pixelWidth() * a.pixelHeight());
}

double weightOf(std::string_view name, FontWeight weight)
{
    return inkOf(symbolImage(name, {.pointSize = 40, .weight = weight}));
}

TEST(SymbolImage, every_component_finds_its_symbols)
{
    std::istringstream names(
        "play.fill pause.fill gobackward.5 goforward.5 xmark checkmark chevron.left chevron.right "
        "chevron.up chevron.down chevron.forward chevron.backward plus minus star star.fill heart "
        "heart.fill bell envelope message photo video camera magnifyingglass trash gear "
        "square.and.arrow.up ellipsis circle circle.fill sparkles bolt.fill leaf.fill flame.fill "
        "music.note speaker.wave.2 speaker.slash folder doc textformat crop scissors "
        "arrow.clockwise info.circle exclamationmark.triangle");
    for (std::string name; names >> name;) {
        SCOPED_TRACE(name);
        ASSERT_TRUE(symbolExists(name));
        auto image = symbolImage(name, {}, 2);
        EXPECT_TRUE(image.isTemplate());
        EXPECT_EQ(image.pixelHeight(), 41) << "1.2 times 17 points, two pixels each";
        EXPECT_GT(inkOf(image), 0.02);
        EXPECT_LT(inkOf(image), 0.85);
        EXPECT_LT(image.pixel(0, 0).components().alpha, 0.1) << "the corner is cut off";
    }
}

TEST(SymbolImage, that_nobody_drew_is_nothing)
{
    for (const auto& name :
         {std::string(), std::string("no.such.symbol"), std::string("../../etc/passwd"), std::string("/"),
          std::string("play.fill\n"), std::string("PLAY.FILL"), std::string(5000, 'a')}) {
        EXPECT_FALSE(symbolExists(name)) << name.substr(0, 20);
        EXPECT_TRUE(symbolImage(name).isEmpty());
        EXPECT_EQ(symbolSize(name, {}), CGSize{});
    }
    for (auto size : {0.0, -5.0, std::nan(""), std::numeric_limits<double>::infinity()})
        EXPECT_TRUE(symbolImage("star", {.pointSize = size}).isEmpty()) << size;
}

TEST(SymbolImage, takes_weight_and_scale_and_turns_round_only_where_it_runs_along_the_text)
{
    for (auto name : {"heart", "gear", "xmark", "gobackward.5"}) {
        auto regular = weightOf(name, FontWeight::regular);
        EXPECT_LT(weightOf(name, FontWeight::ultraLight) * 1.2, regular) << name;
        EXPECT_LT(regular * 1.2, weightOf(name, FontWeight::black)) << name;
    }
    auto height = [](SymbolScale scale) { return symbolSize("star", {.scale = scale}).height; };
    EXPECT_LT(height(SymbolScale::small), height(SymbolScale::medium));
    EXPECT_LT(height(SymbolScale::medium), height(SymbolScale::large));

    const struct {
        std::string_view name;
        bool turns;
    } cases[]{{"chevron.forward", true}, {"speaker.wave.2", true}, {"list.bullet", true},
              {"chevron.right", false},  {"play.fill", false},     {"gobackward.5", false}};
    for (auto& each : cases) {
        auto facing = [&](SymbolDirection direction) {
            return symbolImage(each.name, {.pointSize = 40}, 1, direction);
        };
        auto there = facing(SymbolDirection::leftToRight), back = facing(SymbolDirection::rightToLeft);
        EXPECT_EQ(differenceOf(there, back, Mirror::none) < 0.01, !each.turns) << each.name;
        EXPECT_EQ(differenceOf(there, back, Mirror::leftToRight) < 0.03, each.turns) << each.name;
    }
}

TEST(SymbolImage, is_drawn_sharp_in_the_colour_and_in_the_scale_of_the_context)
{
    auto drawn = makeImage({40, 40}, 3, [](CGContext& context) {
        context.concat(CGAffineTransform::scale(2, 2));
        // A place between pixels.
        drawSymbol(context, "square.fill", CGRect::make(0.1, 0.1, 18, 18), UIColor(0, 1, 0, 0.5));
    });
    ASSERT_TRUE(drawn);
    EXPECT_EQ(drawn->pixel(54, 54), UIColor(0, 1, 0, drawn->pixel(54, 54).components().alpha));
    EXPECT_NEAR(drawn->pixel(54, 54).components().alpha, 0.5, 0.01);
    int soft = 0;
    for (int x = 0; x < 120; ++x) {
        auto alpha = drawn->pixel(x, 54).components().alpha;
        soft += alpha > 0.02 && alpha < 0.48 ? 1 : 0;
    }
    EXPECT_LE(soft, 2) << "a pixel at each edge at most";
}

} // namespace
