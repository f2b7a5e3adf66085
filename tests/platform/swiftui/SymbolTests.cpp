// SPDX-License-Identifier: MIT
#include "platform/swiftui/Image.h"

#include "platform/swiftui/Text.h"
#include "platform/swiftui/imageScale.h"
#include "platform/swiftui/stacks.h"
#include "tests/support/harness/DeclarativeHarness.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using harness::DeclarativeHarness;

// Where the ink of a view over the window's middle is, and the place of the view itself.
template <View V>
CGRect inkOf(V view, const UITraitCollection& traits = {})
{
    DeclarativeHarness harness({200, 200}, traits);
    harness.show(std::move(view));
    return harness::inkBounds(harness.snapshot());
}

Image symbol(const char* name)
{
    return Image{.systemName = name};
}

TEST(Symbol, takes_size_and_weight_and_colour_of_the_text_around_it)
{
    auto body = inkOf(symbol("circle.fill"));
    EXPECT_NEAR(body.width(), body.height(), 1);
    EXPECT_NEAR(body.midX(), 100, 1);
    EXPECT_NEAR(inkOf(symbol("circle.fill") | font(Font::largeTitle())).width(), body.width() * 2, 2);
    EXPECT_GT(inkOf(symbol("circle.fill") | imageScale(SymbolScale::large)).width(), body.width() * 1.2);
    UITraitCollection large{.preferredContentSizeCategory = UIContentSizeCategory::accessibilityLarge};
    EXPECT_GT(inkOf(symbol("circle.fill"), large).width(), body.width() * 1.5);

    DeclarativeHarness harness({50, 50});
    auto describe = [](bool red) {
        return Image{.isResizable = true, .systemName = "square.fill"}
        | foregroundColor(red ? std::optional(UIColor::red()) : std::nullopt);
    };
    auto controller = harness.show(describe(true));
    EXPECT_EQ(harness::colorAt(harness.snapshot(), {25, 25}), "ff0000");
    controller->setRootView(describe(false));
    harness.settle();
    EXPECT_EQ(harness::colorAt(harness.snapshot(), {25, 25}), "000000") << "as a text without a colour";
    harness.changeTraits([](auto& now) { now.userInterfaceStyle = UIUserInterfaceStyle::dark; });
    EXPECT_EQ(harness::colorAt(harness.snapshot(), {25, 25}), "ffffff");
}

TEST(Symbol, stands_on_the_baseline_of_the_text_with_its_middle_at_that_of_the_capitals)
{
    for (auto size : {12.0, 17.0, 60.0}) {
        auto ink = inkOf(HStack{HStackOptions{.alignment = VerticalAlignment::firstTextBaseline},
                                symbol("minus"), Text{"H"} | foregroundColor(UIColor::clear())}
                         | font(Font::system(size)));
        auto capital = inkOf(HStack{HStackOptions{.alignment = VerticalAlignment::firstTextBaseline},
                                    symbol("minus") | foregroundColor(UIColor::clear()), Text{"H"}}
                             | font(Font::system(size)));
        EXPECT_NEAR(ink.midY(), capital.midY(), 1 + size * 0.03) << size;
    }
}

TEST(Symbol, that_is_unknown_takes_no_place_and_draws_nothing)
{
    EXPECT_TRUE(inkOf(symbol("no.such.symbol")).isEmpty());
    DeclarativeHarness harness;
    harness.show(VStack{VStackOptions{.spacing = 0}, symbol("no.such.symbol"), Text{"alone"}});
    EXPECT_EQ(harness.find(AccessibilityRole::staticText, "alone").frame().midY(), 240);
}

} // namespace
