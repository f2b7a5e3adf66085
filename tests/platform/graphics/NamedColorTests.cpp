// SPDX-License-Identifier: MIT
#include "platform/foundation/Bundle.h"
#include "platform/foundation/Logger.h"
#include "platform/graphics/ColorSet.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

std::string entry(std::string_view components, std::string_view appearances = {},
                  std::string_view space = "srgb", std::string_view more = {})
{
    std::string text = R"({"idiom": "universal", )" + std::string(more);
    if (!appearances.empty())
        text += R"("appearances": [)" + std::string(appearances) + "], ";
    return text + R"("color": {"color-space": ")" + std::string(space) + R"(", "components": {)"
        + std::string(components) + "}}}";
}

std::string rgb(std::string red, std::string green, std::string blue, std::string alpha = "1.000")
{
    return R"("red": ")" + red + R"(", "green": ")" + green + R"(", "blue": ")" + blue + R"(", "alpha": ")"
        + alpha + '"';
}

std::string file(std::initializer_list<std::string> entries)
{
    std::string text;
    for (const auto& each : entries)
        text += (text.empty() ? "" : ",") + each;
    return R"({"colors": [)" + text + R"(], "info": {"version": 1}})";
}

constexpr std::string_view darkOnly = R"({"appearance": "luminosity", "value": "dark"})";
constexpr std::string_view strongOnly = R"({"appearance": "contrast", "value": "high"})";

TEST(NamedColorTests, componentsAreReadInEveryFormAndSpaceThatCataloguesUse)
{
    struct Case {
        std::string_view name;
        std::string entry;
        ColorComponents expected;
    };
    const Case cases[]{
        {"fractions", entry(rgb("0.200", "0.4", "1.000", "0.500")), {0.2, 0.4, 1, 0.5}},
        {"parts of 255", entry(rgb("51", "102", "255", "128")), {0.2, 0.4, 1, 128 / 255.0}},
        {"hexadecimal", entry(rgb("0x33", "0X66", "0xff", "0x80")), {0.2, 0.4, 1, 128 / 255.0}},
        {"mixed; one part of 255, and opaque", entry(rgb("1", "0", "0x0", "1")), {1 / 255.0, 0, 0, 1}},
        {"a colour both spaces have", entry(rgb("0.5", "0.5", "0.5"), {}, "display-p3"), {0.5, 0.5, 0.5, 1}},
        {"the red of the wider space",
         entry(rgb("1.0", "0.0", "0.0"), {}, "display-p3"),
         {1.0930, -0.2267, -0.1501, 1}},
        {"past the ends", entry(rgb("1.25", "-0.5", "0.0"), {}, "extended-srgb"), {1.25, -0.5, 0, 1}},
        {"grey", entry(R"("white": "0.25", "alpha": "1.0")", {}, "gray-gamma-22"), {0.25, 0.25, 0.25, 1}},
    };
    for (const auto& each : cases) {
        auto color = parseColorSet(file({each.entry}));
        ASSERT_TRUE(color) << each.name << ": " << color.error().localizedDescription();
        EXPECT_FALSE(color->isDynamic()) << each.name;
        auto [red, green, blue, alpha] = color->components();
        EXPECT_NEAR(red, each.expected.red, 0.001) << each.name;
        EXPECT_NEAR(green, each.expected.green, 0.001) << each.name;
        EXPECT_NEAR(blue, each.expected.blue, 0.001) << each.name;
        EXPECT_NEAR(alpha, each.expected.alpha, 0.001) << each.name;
    }
}

TEST(NamedColorTests, anAppearanceWithoutAnEntryTakesTheNearest)
{
    std::string any = entry(rgb("1.0", "0.0", "0.0")), dark = entry(rgb("0.0", "1.0", "0.0"), darkOnly),
                strong = entry(rgb("0.0", "0.0", "1.0"), strongOnly),
                darkStrong =
                    entry(rgb("1.0", "1.0", "1.0"), std::string(darkOnly) + "," + std::string(strongOnly)),
                phone = R"({"idiom": "phone", "color": {}})";
    auto wide = entry(rgb("0.0", "0.0", "0.0"), {}, "srgb", R"("display-gamut": "display-P3", )");
    auto red = UIColor::red(), green = UIColor::green(), blue = UIColor::blue(), white = UIColor::white();
    EXPECT_EQ(parseColorSet(file({any})), red);
    EXPECT_EQ(parseColorSet(file({dark, phone, wide, any})), UIColor::dynamic(red, green, red, green));
    EXPECT_EQ(parseColorSet(file({any, strong})), UIColor::dynamic(red, red, blue, blue));
    EXPECT_EQ(parseColorSet(file({any, dark, strong})), UIColor::dynamic(red, green, blue, green))
        << "dark stays dark with high contrast";
    EXPECT_EQ(parseColorSet(file({any, dark, strong, darkStrong})),
              UIColor::dynamic(red, green, blue, white));
}

TEST(NamedColorTests, damagedTextGivesNothingAndSaysWhy)
{
    auto good = file({entry(rgb("1.0", "0.0", "0.0")), entry(rgb("0.0", "0.0", "0.0"), darkOnly)});
    for (std::size_t length = 0; length < good.size(); ++length)
        EXPECT_FALSE(parseColorSet(good.substr(0, length))) << "cut at " << length;
    for (auto bad : {"256", "0x100", "0x", "", "1.5", "-0.5", "nan", "inf", "1,0", "0.5 ", "0.5x"}) {
        auto color = parseColorSet(file({entry(rgb(bad, "0.0", "0.0"))}));
        ASSERT_FALSE(color) << bad;
        EXPECT_NE(color.error().bridged().localizedFailureReason().find("red"), std::string::npos) << bad;
    }
    EXPECT_FALSE(parseColorSet(file({}))) << "no colour at all";
    EXPECT_FALSE(parseColorSet(file({entry(rgb("1.0", "0.0", "0.0"), darkOnly)}))) << "nothing for light";
    EXPECT_FALSE(parseColorSet(file({entry(rgb("1.0", "0.0", "0.0"), {}, "lab")}))) << "an unknown space";
    EXPECT_FALSE(parseColorSet(file({entry(R"("red": 1.0, "green": 0, "blue": 0, "alpha": 1)")})))
        << "components are texts";
    EXPECT_FALSE(parseColorSet(std::string(100'000, '['))) << "nesting without end";
}

TEST(NamedColorTests, aBundleGivesItsColorsAndLogsADamagedOneOnce)
{
    tests::TemporaryDirectory directory;
    directory.write("Colors.xcassets/accent.colorset/Contents.json",
                    file({entry(rgb("1.0", "0.0", "0.0")), entry(rgb("0.0", "1.0", "0.0"), darkOnly)}));
    directory.write("Assets.xcassets/group/inner.colorset/Contents.json",
                    file({entry(rgb("0", "0", "255"))}));
    directory.write("Colors.xcassets/broken.colorset/Contents.json", "{");
    directory.write("Colors.xcassets/large.colorset/Contents.json", std::string(70'000, ' ') + "{}");
    directory.write("outside.colorset/Contents.json", file({entry(rgb("0", "0", "255"))}));
    auto bundle = *Bundle::open(directory.url());
    std::vector<std::string> log;
    LogCapture capture([&](const LogRecord& record) { log.emplace_back(record.message); });

    EXPECT_EQ(UIColor::named("accent", *bundle), UIColor::dynamic(UIColor::red(), UIColor::green()));
    EXPECT_EQ(UIColor::named("accent", *bundle, ColorAppearance{.isDark = true}), UIColor::green());
    EXPECT_EQ(UIColor::named("group/inner", *bundle), UIColor::blue());
    EXPECT_FALSE(UIColor::named("absent", *bundle));
    EXPECT_FALSE(UIColor::named("../outside", *bundle)) << "a name does not lead out of the catalogue";
    EXPECT_TRUE(log.empty());
    EXPECT_FALSE(UIColor::named("broken", *bundle));
    ASSERT_EQ(log.size(), 1U);
    EXPECT_NE(log[0].find("broken.colorset"), std::string::npos);
    EXPECT_EQ(log[0].find(directory.path()), std::string::npos) << "no more than the last component";
    EXPECT_FALSE(UIColor::named("large", *bundle));
    EXPECT_EQ(log.size(), 2U);
}

} // namespace
} // namespace platform
