// SPDX-License-Identifier: MIT
#include "apps/zelk-gallery/frame/Page.h"

#include "apps/zelk-gallery/frame/tinted.h"
#include "kit/theme/CornerRadius.h"
#include "kit/theme/GridSize.h"
#include "kit/theme/Spacing.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/swiftui/swiftui.h"

namespace gallery {

using namespace platform;
using namespace std::chrono_literals;
using zelk::CornerRadius;
using zelk::GridSize;
using zelk::Spacing;

namespace {

// [Timing]
struct Runner {
    std::string title;
    Animation timing;
    CGFloat distance = 0; // along the text

    auto body() const
    {
        return HStack{
            Text{title} | font(Font::footnote().monospaced())
                | frame({.width = GridSize::_600, .alignment = Alignment::leading()}),
            RoundedRectangle{CornerRadius::_50} | tinted()
                | frame({.width = GridSize::_150, .height = GridSize::_150})
                | offset({.x = distance}) | animation(timing, distance),
            Spacer{}};
    }
    bool operator==(const Runner&) const = default;
};

struct Timings {
    State<bool> isAway = false;
    Environment<IsPosedKey> isPosed;
    Environment<LayoutDirectionKey> direction;

    auto dynamicProperties() { return std::tie(isAway, isPosed, direction); }
    auto body() const
    {
        auto away = isAway.binding();
        CGFloat far = *direction == LayoutDirection::rightToLeft ? -180 : 180;
        auto distance = *isAway ? far : 0;
        return VStack{{.spacing = Spacing::_100},
                      Runner{"linear", Animation::linear(0.8), distance},
                      Runner{"easeIn", Animation::easeIn(0.8), distance},
                      Runner{"easeOut", Animation::easeOut(0.8), distance},
                      Runner{"spring", Animation::spring(0.8, 0.5), distance},
                      Runner{"delay", Animation::easeOut(0.5).delay(0.3), distance},
                      Button{"Run", [away] { away.set(!away.get()); }}}
        | onAppear([away, poses = *isPosed] {
                   if (poses)
                       DispatchQueue::main()->asyncAfter(100ms,
                                                         [away] { away.set(true); });
               });
    }
    bool operator==(const Timings&) const = default;
};
// [/]

// [Forever]
struct Breathing {
    State<bool> isLarge = false;

    auto dynamicProperties() { return std::tie(isLarge); }
    auto body() const
    {
        auto large = isLarge.binding();
        return Circle{} | fill(UIColor::systemIndigo())
            | frame({.width = GridSize::_400, .height = GridSize::_400})
            | scaleEffect(*isLarge ? 1.0 : 0.6) | opacity(*isLarge ? 1.0 : 0.4)
            | animation(Animation::easeInOut(1.2).repeatForever(), *isLarge)
            | onAppear([large] { large.set(true); });
    }
    bool operator==(const Breathing&) const = default;
};
// [/]

// [Coming and going]
struct ComingAndGoing {
    State<bool> isThere = true;

    auto dynamicProperties() { return std::tie(isThere); }
    auto body() const
    {
        auto there = isThere.binding();
        auto toggle = [there] {
            withAnimation(Animation::spring(), [&] { there.set(!there.get()); });
        };
        return VStack{
                   Button{*isThere ? "Let it go" : "Bring it back", toggle},
                   when(*isThere,
                        [] {
                            return RoundedRectangle{CornerRadius::_200}
                            | frame({.width = GridSize::_1000, .height = GridSize::_400})
                                | transition(AnyTransition::scale().combined(
                                    AnyTransition::opacity()));
                        })
                       | tinted()}
        | frame({.height = GridSize::_750, .alignment = Alignment::top()});
    }
    bool operator==(const ComingAndGoing&) const = default;
};
// [/]

} // namespace

Page animationsPage()
{
    return {.name = "animations",
            .title = "Animations",
            .group = "Motion",
            .symbol = "arrow.triangle.2.circlepath",
            .summary = "Implicit or explicit, and each can be interrupted: it goes on "
                       "from where it is.",
            .exhibits =
                [] {
                    return std::vector<Exhibit>{
                        {"Timing", "Press Run again while they run.", AnyView(Timings{})},
                        {"Forever", "Stands still while less motion is asked for.",
                         AnyView(Breathing{})},
                        {"Coming and going", "", AnyView(ComingAndGoing{})}};
                },
            .moment = 600ms};
}

} // namespace gallery
