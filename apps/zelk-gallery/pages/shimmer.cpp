// SPDX-License-Identifier: MIT
#include "apps/zelk-gallery/frame/Page.h"

#include "kit/theme/CornerRadius.h"
#include "kit/theme/GridSize.h"
#include "kit/theme/Spacing.h"
#include "kit/ui/shimmering.h"
#include "platform/swiftui/swiftui.h"

#include <ranges>

namespace gallery {

using namespace platform;
using zelk::CornerRadius;
using zelk::GridSize;
using zelk::shimmering;
using zelk::Spacing;

namespace {

auto bone(CGFloat width, CGFloat height = 12)
{
    return RoundedRectangle{height / 2} | fill(UIColor::systemGray3())
        | frame({.width = width, .height = height});
}

// A row that has nothing to say yet.
struct Placeholder {
    int index = 0;

    auto body() const
    {
        return HStack{
            {.spacing = Spacing::_150},
            Circle{} | fill(UIColor::systemGray3())
                | frame({.width = GridSize::_275, .height = GridSize::_275}),
            VStack{{.alignment = HorizontalAlignment::leading, .spacing = Spacing::_100},
                   bone(index % 2 == 0 ? 180 : 140),
                   bone(index % 2 == 0 ? 240 : 260, 10)},
            Spacer{}};
    }
    bool operator==(const Placeholder&) const = default;
};

auto placeholders()
{
    return VStack{{.spacing = Spacing::_200},
                  ForEach{std::views::iota(0, 3), std::identity{},
                          [](int index) { return Placeholder{index}; }}};
}

// [While it loads]
struct Loading {
    State<bool> isLoading = true;

    auto dynamicProperties() { return std::tie(isLoading); }
    auto body() const
    {
        auto loading = isLoading.binding();
        return VStack{{.spacing = Spacing::_200},
                      placeholders() | shimmering({.active = *isLoading}),
                      Button{*isLoading ? "Stop" : "Begin again",
                             [loading] { loading.set(!loading.get()); }}};
    }
    bool operator==(const Loading&) const = default;
};
// [/]

// [There and back]
auto thereAndBack()
{
    return Text{"Slide to unlock"} | font(Font::title().weight(FontWeight::semibold))
        | shimmering(true, {.duration = 1.2, .bounce = true});
}
// [/]

// [A narrow, fast band]
auto narrowBand()
{
    return Text{"zelk"} | font(Font::system(64).bold())
        | foregroundColor(UIColor::systemIndigo())
        | shimmering({.animation = Animation::linear(0.9).repeatForever(false),
                      .bandSize = 0.1});
}
// [/]

} // namespace

Page shimmerPage()
{
    return {.name = "shimmer",
            .title = "Shimmer",
            .group = "Components",
            .symbol = "sparkles",
            .summary = "A band of light over what is still to come. It goes the way one "
                       "reads, and costs nothing unseen.",
            .exhibits = [] {
                return std::vector<Exhibit>{
                    {"While it loads", "", AnyView(Loading{})},
                    {"There and back", "", AnyView(thereAndBack())},
                    {"A narrow, fast band", "", AnyView(narrowBand())}};
            }};
}

} // namespace gallery
