// SPDX-License-Identifier: MIT
#include "apps/zelk-gallery/frame/Page.h"

#include "apps/zelk-gallery/frame/tinted.h"
#include "kit/theme/CornerRadius.h"
#include "kit/theme/GridSize.h"
#include "kit/theme/Spacing.h"
#include "platform/swiftui/swiftui.h"

#include <limits>

namespace gallery {

using namespace platform;
using zelk::CornerRadius;
using zelk::GridSize;
using zelk::Spacing;

namespace {

constexpr auto infinity = std::numeric_limits<CGFloat>::infinity();

// [Drag]
struct DragAround {
    State<CGVector> offsetNow = CGVector{};

    auto dynamicProperties() { return std::tie(offsetNow); }
    auto body() const
    {
        auto moved = offsetNow.binding();
        auto drag =
            DragGesture{.minimumDistance = 0}
                .onChanged([moved](const DragGesture::Value& value) {
                    moved.set(value.translation);
                })
                .onEnded([moved](const DragGesture::Value&) {
                    withAnimation(Animation::spring(0.5, 0.6), [&] { moved.set({}); });
                });
        return RoundedRectangle{CornerRadius::_200}
        | frame({.width = GridSize::_500, .height = GridSize::_500}) | tinted()
            | offset({.x = offsetNow->dx, .y = offsetNow->dy}) | gesture(drag)
            | padding(Spacing::_400);
    }
    bool operator==(const DragAround&) const = default;
};
// [/]

// [Tap and long press]
struct TapAndHold {
    State<int> taps = 0;
    State<bool> isHeld = false;

    auto dynamicProperties() { return std::tie(taps, isHeld); }
    auto body() const
    {
        auto count = taps.binding();
        auto held = isHeld.binding();
        return Text{*isHeld ? "Held" : "Tapped " + std::to_string(*taps) + " times"}
        | font(Font::headline()) | foregroundColor(UIColor::white())
            | flexibleFrame({.maxWidth = infinity, .minHeight = GridSize::_500})
            | background(
                   RoundedRectangle{CornerRadius::_200}
                   | fill(*isHeld ? UIColor::systemGreen() : UIColor::systemIndigo()))
            | onTapGesture([count, held] {
                   held.set(false);
                   count.set(count.get() + 1);
               })
            | onLongPressGesture([held] { withAnimation([&] { held.set(true); }); });
    }
    bool operator==(const TapAndHold&) const = default;
};
// [/]

} // namespace

Page gesturesPage()
{
    return {
        .name = "gestures",
        .title = "Gestures",
        .group = "Motion",
        .symbol = "hand.thumbsup",
        .summary =
            "With the mouse, a finger or a pen; what is let go goes on with its speed.",
        .exhibits = [] {
            return std::vector<Exhibit>{
                {"Drag", "Drag it, let it go, catch it on its way back.",
                 AnyView(DragAround{})},
                {"Tap and long press",
                 "A press that stays for half a second is another gesture.",
                 AnyView(TapAndHold{})}};
        }};
}

} // namespace gallery
