// SPDX-License-Identifier: MIT
#include "apps/zelk-gallery/frame/Page.h"

#include "apps/zelk-gallery/frame/tinted.h"
#include "kit/theme/AnimationPreset.h"
#include "kit/theme/CornerRadius.h"
#include "kit/theme/GridSize.h"
#include "kit/theme/Opacity.h"
#include "kit/theme/Spacing.h"
#include "platform/swiftui/swiftui.h"

namespace gallery {

using namespace platform;
using zelk::AnimationPreset;
using zelk::CornerRadius;
using zelk::GridSize;
using zelk::Opacity;
using zelk::Spacing;

namespace {

struct Token {
    std::string name;
    CGFloat value = 0;
    bool operator==(const Token&) const = default;
};

auto caption(const std::string& text)
{
    // Names of code read from the left in every language.
    return Text{text} | font(Font::caption().monospaced())
        | foregroundColor(UIColor::secondaryLabel()) | lineLimit(1)
        | environment<LayoutDirectionKey>(LayoutDirection::leftToRight);
}

// [Spacing]
auto spacings()
{
    std::vector<Token> tokens{{"_50", Spacing::_50},   {"_100", Spacing::_100},
                              {"_150", Spacing::_150}, {"_200", Spacing::_200},
                              {"_300", Spacing::_300}, {"_400", Spacing::_400},
                              {"_600", Spacing::_600}, {"_800", Spacing::_800}};
    auto bar = [](const Token& token) {
        return HStack{
            {.spacing = Spacing::_150},
            caption(token.name)
                | frame({.width = GridSize::_400, .alignment = Alignment::leading()}),
            RoundedRectangle{2} | tinted()
                | frame({.width = token.value, .height = GridSize::_50}),
            caption(std::to_string(int(token.value))),
            Spacer{}};
    };
    return VStack{{.spacing = Spacing::_75}, ForEach{tokens, &Token::name, bar}};
}
// [/]

// [Corners]
auto corners()
{
    std::vector<Token> tokens{{"_50", CornerRadius::_50},   {"_100", CornerRadius::_100},
                              {"_150", CornerRadius::_150}, {"_200", CornerRadius::_200},
                              {"_300", CornerRadius::_300}, {"_350", CornerRadius::_350}};
    auto tile = [](const Token& token) {
        return VStack{RoundedRectangle{token.value} | tinted()
                          | frame({.width = GridSize::_400, .height = GridSize::_400}),
                      caption(token.name)};
    };
    return HStack{{.spacing = Spacing::_200}, ForEach{tokens, &Token::name, tile}};
}
// [/]

// [Opacities]
auto opacities()
{
    std::vector<Token> tokens{{"_25", Opacity::_25},
                              {"_50", Opacity::_50},
                              {"_75", Opacity::_75},
                              {"_100", Opacity::_100}};
    auto dot = [](const Token& token) {
        return VStack{Circle{} | tinted() | opacity(token.value)
                          | frame({.width = GridSize::_300, .height = GridSize::_300}),
                      caption(token.name)};
    };
    return HStack{{.spacing = Spacing::_300}, ForEach{tokens, &Token::name, dot}};
}
// [/]

// [Speeds]
struct Speed {
    std::string title;
    Animation preset;
    State<bool> isAtEnd = false;

    auto dynamicProperties() { return std::tie(isAtEnd); }
    auto body() const
    {
        auto binding = isAtEnd.binding();
        auto move = [binding, preset = preset] {
            withAnimation(preset, [&] { binding.set(!binding.get()); });
        };
        auto ball = Circle{} | tinted()
            | frame({.width = GridSize::_150, .height = GridSize::_150});
        return HStack{Button{title, move} | lineLimit(1)
                          | flexibleFrame({.minWidth = GridSize::_600}),
                      when(*isAtEnd, [] { return Spacer{}; }), ball,
                      when(!*isAtEnd, [] { return Spacer{}; })};
    }
    bool operator==(const Speed&) const = default;
};
// [/]

} // namespace

Page tokensPage()
{
    return {.name = "tokens",
            .title = "Tokens",
            .group = "Foundations",
            .symbol = "square.fill",
            .summary = "The few distances, corners, opacities and speeds that everything "
                       "is made of.",
            .exhibits = [] {
                auto speeds = VStack{Speed{"Fast", AnimationPreset::fast()},
                                     Speed{"Medium", AnimationPreset::medium()},
                                     Speed{"Slow", AnimationPreset::slow()}};
                return std::vector<Exhibit>{
                    {"Spacing", "", AnyView(spacings())},
                    {"Corners", "", AnyView(corners())},
                    {"Opacities", "", AnyView(opacities())},
                    {"Speeds", "Press a name: its ball goes over, easing in and out.",
                     AnyView(speeds)}};
            }};
}

} // namespace gallery
