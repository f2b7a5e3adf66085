// SPDX-License-Identifier: MIT
#include "apps/zelk-gallery/frame/Page.h"

#include "kit/theme/CornerRadius.h"
#include "kit/theme/GridSize.h"
#include "kit/theme/Spacing.h"
#include "kit/theme/colorFromHex.h"
#include "kit/theme/derivedColors.h"
#include "kit/theme/hexString.h"
#include "kit/theme/randomColor.h"
#include "kit/theme/semanticColors.h"
#include "platform/swiftui/swiftui.h"

#include <limits>

namespace gallery {

using namespace platform;
using zelk::CornerRadius;
using zelk::GridSize;
using zelk::Spacing;

namespace {

constexpr auto infinity = std::numeric_limits<CGFloat>::infinity();

struct NamedColor {
    std::string name;
    UIColor color;
    bool operator==(const NamedColor&) const = default;
};

// A colour in the appearance of its place, with the text that stores it.
struct Swatch {
    NamedColor named;
    Environment<ColorSchemeKey> scheme;

    auto dynamicProperties() { return std::tie(scheme); }
    auto body() const
    {
        auto here = named.color.resolved({.isDark = *scheme == ColorScheme::dark});
        auto shape = RoundedRectangle{CornerRadius::_100};
        return HStack{
            {.spacing = Spacing::_150},
            shape | fill(named.color) | overlay(shape | stroke(UIColor::separator(), 1))
                | frame({.width = GridSize::_350, .height = GridSize::_200}),
            Text{named.name} | font(Font::subheadline()) | lineLimit(1),
            Spacer{},
            Text{zelk::hexString(here).value_or("")} | font(Font::footnote().monospaced())
                | foregroundColor(UIColor::secondaryLabel())};
    }
    bool operator==(const Swatch&) const = default;
};

auto swatches(std::vector<NamedColor> colors)
{
    return VStack{{.spacing = Spacing::_100},
                  ForEach{std::move(colors), &NamedColor::name,
                          [](const auto& each) { return Swatch{each, {}}; }}};
}

// [Semantic colours]
auto semanticColors()
{
    return swatches({
        {"tintColor", zelk::zelk_tintColor()},
        {"darkIndigo", zelk::darkIndigo()},
        {"lightIndigo", zelk::lightIndigo()},
        {"systemBackground", zelk::zelk_systemBackground()},
        {"systemGroupedBackground", zelk::zelk_systemGroupedBackground()},
    });
}
// [/]

// [Derived colours]
auto derivedColors()
{
    auto orange = zelk::colorFromHex("FF8800").value();
    return swatches({
        {"colorFromHex(\"FF8800\")", orange},
        {"complementary", zelk::complementary(orange)},
        {"contrast", zelk::contrast(orange)},
    });
}
// [/]

// [A random colour]
struct RandomColor {
    State<UIColor> color = UIColor::systemIndigo();

    auto dynamicProperties() { return std::tie(color); }
    auto body() const
    {
        auto binding = color.binding();
        auto shuffle = [binding] {
            withAnimation(Animation::spring(),
                          [&] { binding.set(zelk::randomColor<UIColor>()); });
        };
        auto readable = zelk::bestBackgroundColor(
            *color,
            {.threshold = 0.55, .bright = UIColor::white(), .dark = UIColor::black()});
        return Button{
            shuffle,
            Text{zelk::hexString(*color).value_or("")} | font(Font::title2().monospaced())
                | foregroundColor(readable)
                | flexibleFrame({.maxWidth = infinity, .minHeight = GridSize::_500})
                | background(RoundedRectangle{CornerRadius::_150} | fill(*color))};
    }
    bool operator==(const RandomColor&) const = default;
};
// [/]

} // namespace

Page colorsPage()
{
    return {.name = "colors",
            .title = "Colours",
            .group = "Foundations",
            .symbol = "paintbrush",
            .summary =
                "Named by what they are for, light and dark, and made from each other.",
            .exhibits = [] {
                return std::vector<Exhibit>{
                    {"Semantic colours", "Each has a light and a dark side.",
                     AnyView(semanticColors())},
                    {"Derived colours", "", AnyView(derivedColors())},
                    {"A random colour",
                     "Press it for another one; its text stays readable.",
                     AnyView(RandomColor{})}};
            }};
}

} // namespace gallery
