// SPDX-License-Identifier: MIT
#include "kit/theme/derivedColors.h"
#include "kit/theme/randomColor.h"
#include "kit/theme/swUIColor.h"
#include "platform/graphics/CurrentAppearance.h"

#include <gtest/gtest.h>

namespace zelk {
namespace {

using platform::Color;
using platform::UIColor;

TEST(DerivedColorsTests, contrastGoesWithTheLightnessAndKeepsTheAlpha)
{
    struct Case {
        std::string_view name;
        UIColor color, contrast;
    };
    const Case cases[]{
        {"yellow", {1, 1, 0}, UIColor::white()},
        {"navy", {0, 0, 0.5}, UIColor::black()},
        {"at the limit", {0.55, 0.55, 0.55, 0.25}, {1, 1, 1, 0.25}},
        {"below it", {0.5499, 0.5499, 0.5499, 0.25}, {0, 0, 0, 0.25}},
    };
    for (const auto& each : cases)
        EXPECT_EQ(contrast(each.color), each.contrast) << each.name;

    EXPECT_EQ(complementary(UIColor(0.25, 1, 0, 0.5)), UIColor(0.75, 0, 1, 0.5));
    auto dynamic = UIColor::dynamic(UIColor::white(), UIColor::black());
    EXPECT_EQ(contrast(dynamic), UIColor::white());
    platform::CurrentAppearance dark({.isDark = true});
    EXPECT_EQ(contrast(dynamic), UIColor::black());
    EXPECT_EQ(complementary(dynamic), UIColor::white());
}

TEST(DerivedColorsTests, theBestBackgroundIsOneOfTheTwoGiven)
{
    UIColor bright(0.9, 0.9, 0.9), dark(0.1, 0.1, 0.1);
    auto best = [&](const UIColor& color, double threshold) {
        return &bestBackgroundColor(color, {.threshold = threshold, .bright = bright, .dark = dark});
    };
    EXPECT_EQ(best(UIColor::white(), 0.5), &dark) << "the object itself";
    EXPECT_EQ(best(UIColor::black(), 0.5), &bright);
    EXPECT_EQ(best(UIColor::gray(0.5), 0.5), &bright) << "at the threshold";
    EXPECT_EQ(best(UIColor::white().withAlphaComponent(0), 0.5), &dark) << "alpha does not count";
}

class KnownNumbers final : public platform::RandomNumberGenerator {
public:
    explicit KnownNumbers(std::vector<std::uint64_t> numbers)
        : numbers_(std::move(numbers))
    {
    }
    using RandomNumberGenerator::next;
    std::uint64_t next() override { return numbers_.at(place_++); }

private:
    std::vector<std::uint64_t> numbers_;
    std::size_t place_ = 0;
};

TEST(DerivedColorsTests, onlyAUIColorDrawsExactlyOne)
{
    constexpr auto all = ~std::uint64_t(0);
    KnownNumbers closed({0, all, 1ULL << 63, 1}); // the first would make 0 likelier than others
    auto [red, green, blue, alpha] = randomColor(closed).components();
    EXPECT_EQ(red, 1);
    EXPECT_EQ(green, 0.5);
    EXPECT_EQ(blue, 0);
    EXPECT_EQ(alpha, 1);

    KnownNumbers halfOpen({all, 1ULL << 52, 1ULL << 53});
    auto components = randomColor<Color>(halfOpen).color.components();
    EXPECT_EQ(components.red, 1 - 0x1p-53);
    EXPECT_EQ(components.green, 0.5);
    EXPECT_EQ(components.blue, 0) << "of 64 bits the low 53 count";
    EXPECT_NE(randomColor(), randomColor());
}

TEST(DerivedColorsTests, aColorBindingWritesWhatHasAPlainValueAndDropsTheRest)
{
    auto stored = std::make_shared<UIColor>(UIColor::systemBlue());
    platform::Binding<UIColor> source([stored] { return *stored; },
                                      [stored](UIColor color) { *stored = std::move(color); });
    auto binding = swUIColor(source);
    EXPECT_EQ(binding.get(), Color{UIColor::systemBlue()}) << "as it is, dynamic";
    binding.set(Color{UIColor::systemRed()});
    EXPECT_EQ(*stored, UIColor::systemBlue());
    binding.set(Color{UIColor::green()});
    EXPECT_EQ(*stored, UIColor::green());
    EXPECT_EQ(binding.get(), Color{UIColor::green()});
}

} // namespace
} // namespace zelk
