// SPDX-License-Identifier: MIT
#include "platform/swiftui/swiftui.h"
#include "platform/uikit/UIImageView.h"
#include "platform/uikit/UILabel.h"
#include "tests/platform/swiftui/layoutProbes.h"
#include "tests/support/harness/DeclarativeHarness.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using namespace probes;

UILabel& labelIn(UIView& view, std::size_t index = 0)
{
    return dynamic_cast<UILabel&>(*view.subviews().at(index));
}

TEST(Text, takes_its_look_from_the_surroundings)
{
    auto handle = makeHandle<int>();
    Shown harness(stateful(handle, 0, [](int step) {
        return Text{"text"} | font(step == 0 ? Font::system(10) : Font::system(20).bold())
            | foregroundColor(step == 0 ? UIColor::red() : UIColor::blue())
            | lineLimit(step == 0 ? std::optional(2) : std::nullopt)
            | multilineTextAlignment(step == 0 ? HorizontalAlignment::leading
                                               : HorizontalAlignment::trailing);
    }));
    auto& label = labelIn(*harness.controller->view());
    EXPECT_EQ(label.font(), UIFont::systemFont(10));
    EXPECT_EQ(label.textColor(), UIColor::red());
    EXPECT_EQ(label.numberOfLines(), 2);
    EXPECT_EQ(label.textAlignment(), TextAlignment::left);
    auto small = label.bounds().size;

    harness.set(handle, 1);
    EXPECT_EQ(&labelIn(*harness.controller->view()), &label);
    EXPECT_EQ(label.font(), UIFont::boldSystemFont(20));
    EXPECT_EQ(label.textColor(), UIColor::blue());
    EXPECT_EQ(label.numberOfLines(), 0);
    EXPECT_EQ(label.textAlignment(), TextAlignment::right);
    EXPECT_GT(label.bounds().width(), small.width);
    EXPECT_GT(label.bounds().height(), small.height);
}

TEST(Text, follows_text_size_and_direction_of_the_window)
{
    Shown harness(Text{"text"});
    auto& label = labelIn(*harness.controller->view());
    auto height = label.bounds().height();
    harness.window().setBaseTraits(
        {.layoutDirection = UIUserInterfaceLayoutDirection::rightToLeft,
         .preferredContentSizeCategory = UIContentSizeCategory::accessibilityExtraLarge});
    harness.settle();
    EXPECT_GT(label.bounds().height(), height);
    EXPECT_EQ(label.textAlignment(), TextAlignment::right);
}

TEST(Text, wraps_in_the_width_it_is_offered)
{
    UILabel measure;
    measure.setFont(Font::system(20).monospaced().resolved(UIContentSizeCategory::large, 1));
    measure.setNumberOfLines(0);
    measure.setText("aaaa");
    auto word = measure.sizeThatFits({0, 0});
    auto text = [](std::string words) {
        return Text{std::move(words)} | font(Font::system(20).monospaced());
    };
    struct Case {
        std::string_view name;
        CGFloat offered;
        int lines;
    };
    const Case cases[] = {
        {"room for all", word.width * 4, 1},    {"without end", std::numeric_limits<CGFloat>::infinity(), 1},
        {"room for a word", word.width + 1, 3}, {"no room", 0, 1},
        {"less than no room", -4, 1},
    };
    for (auto& test : cases) {
        SCOPED_TRACE(test.name);
        Shown harness({1000, 400}, text("aaaa bbbb cccc") | frame({.width = test.offered}));
        auto& label = labelIn(*harness.controller->view());
        EXPECT_NEAR(label.bounds().height(), word.height * test.lines, test.lines);
        EXPECT_LE(label.bounds().width(), std::max(test.offered, 0.0));
    }
}

TEST(Text, shares_a_row_by_what_it_needs)
{
    // The short one gets all it needs, the long one wraps in the rest.
    Shown harness({150, 200},
                  HStack{{.spacing = 0}, Text{"a text that is much too long for the row"}, Text{"short"}});
    auto& longer = labelIn(*harness.controller->view());
    auto& shorter = labelIn(*harness.controller->view(), 1);
    EXPECT_EQ(shorter.bounds().width(), shorter.sizeThatFits({unlimitedWidth, 0}).width);
    EXPECT_LE(longer.bounds().width() + shorter.bounds().width(), 150);
    EXPECT_GT(longer.bounds().height(), shorter.bounds().height());
}

TEST(Text, of_hostile_content_is_laid_out)
{
    for (std::string text : {std::string(), std::string("\xff\xfe\x80"), std::string(1, '\0'),
                             std::string(200, '\n'), std::string("\u202e\u0301\u0301")}) {
        Shown harness({100, 100}, HStack{Text{text}, Text{"end"}});
        harness.paintFrame();
        EXPECT_EQ(labelIn(*harness.controller->view()).text(), text);
    }
}

UIImage picture(int width, int height)
{
    std::vector<std::byte> pixels(static_cast<std::size_t>(width * height * 4), std::byte{0xff});
    return UIImage::fromPixels(pixels, width, height);
}

TEST(Image, keeps_its_size_unless_it_is_resizable)
{
    auto image = Image{picture(20, 10)};
    struct Case {
        std::string_view name;
        std::string actual, expected;
    };
    const Case cases[] = {
        {"its own size", layoutOf(image, {100, 100}), " 40 45 20 10"},
        {"all that is offered", layoutOf(image.resizable(), {100, 100}), " 0 0 100 100"},
        {"its own proportions", layoutOf(image.resizable() | scaledToFit(), {100, 100}), " 0 25 100 50"},
        {"filling", layoutOf(image.resizable() | scaledToFill(), {100, 100}), " -50 0 200 100"},
        {"other proportions", layoutOf(image.resizable() | aspectRatio(0.5), {100, 100}), " 25 0 50 100"},
        {"proportions without sense", layoutOf(image.resizable() | aspectRatio(-1), {100, 100}),
         " 0 0 100 100"},
        {"an empty picture", layoutOf(Image{}.resizable() | scaledToFit(), {100, 100}), " 0 0 100 100"},
    };
    for (auto& test : cases)
        EXPECT_EQ(test.actual, test.expected) << test.name;
}

TEST(Image, that_is_a_template_takes_the_colour_of_the_surroundings)
{
    Shown harness({20, 20},
                  Image{picture(20, 10).withRenderingMode(UIImage::RenderingMode::alwaysTemplate)}.resizable()
                      | foregroundColor(UIColor(0, 1, 0)));
    EXPECT_EQ(harness::colorAt(harness.snapshot(), {10, 10}), "00ff00");
}

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
