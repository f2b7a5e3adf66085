// SPDX-License-Identifier: MIT
#pragma once

#include "bottomsheet/RoundedCorner.h"
#include "bottomsheet/SheetDrag.h"
#include "bottomsheet/SheetMotion.h"
#include "bottomsheet/SheetSurface.h"

#include "platform/swiftui/Color.h"
#include "platform/swiftui/GeometryReader.h"
#include "platform/swiftui/Spacer.h"
#include "platform/swiftui/effects.h"
#include "platform/swiftui/frame.h"
#include "platform/swiftui/gestures.h"
#include "platform/swiftui/interaction.h"
#include "platform/swiftui/layered.h"
#include "platform/swiftui/padding.h"
#include "platform/swiftui/placement.h"
#include "platform/swiftui/shapes.h"
#include "platform/swiftui/stacks.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <optional>
#include <tuple>

namespace bottomsheet {

// A sheet that comes up over the lower edge of the place it is given, in front of a backdrop that dims the rest, and goes
// when it is dragged or thrown down, when the backdrop is tapped, and by Escape. While it is there it is a dialog that keeps
// the keyboard. The content stays mounted while the sheet is away; it is not painted then. Usually made by `bottomSheet`,
// whose defaults these are not: all is said, in this order.
//
//     BottomSheet{.isPresented = isShown.binding(), .height = 300, .topBarHeight = 30, ... .content = Menu{}}
template <platform::View Content>
struct BottomSheet {
    // The sheet's own, not to be set: how far it is dragged down from its place, and the last of the drag before now.
    platform::State<platform::CGFloat> draggedOffset{0.0};
    platform::State<std::optional<platform::DragGesture::Value>> previousDragValue{};

    // Set to false by the sheet to go. A binding that refuses keeps it.
    platform::Binding<bool> isPresented;
    // Points; there is at most as much as there is room for. What makes no sense counts as 0.
    platform::CGFloat height;
    platform::CGFloat topBarHeight;
    platform::CGFloat topBarCornerRadius;
    Content content; // from the top, 8 points up into the bar; what does not fit is cut off below
    platform::UIColor contentBackgroundColor;
    platform::UIColor topBarBackgroundColor;
    bool showTopIndicator;
    platform::Animation animation;
    std::function<void()> onDismiss; // after each dismissal by the sheet itself

    auto dynamicProperties() { return std::tie(draggedOffset, previousDragValue, isPresented); }

    auto body() const
    {
        return platform::GeometryReader{[sheet = *this](const platform::GeometryProxy& proxy) {
            // Both are placed in all of the space, and neither takes any.
            return platform::Spacer{}
            | platform::frame({.width = proxy.size.width, .height = proxy.size.height})
                | platform::overlay(sheet.backdrop(proxy)) | platform::overlay(sheet.surface(proxy));
        }};
    }

private:
    static constexpr platform::CGFloat indicatorCorner = 6, overlap = 8, clearingDistance = 600;
    static constexpr double dimness = 0.4;

    SheetDrag drag() const { return {draggedOffset, previousDragValue, isPresented, height, onDismiss}; }
    SheetMotion motion() const
    {
        return {animation, isPresented.get(), draggedOffset.get(), platform::usableLength(height)};
    }

    auto backdrop(const platform::GeometryProxy& proxy) const
    {
        const auto& safe = proxy.safeAreaInsets;
        auto isShown = isPresented.get();
        auto opacity = isShown ? std::clamp(dimness - draggedOffset.get() / clearingDistance, 0.0, 1.0) : 0;
        return platform::Color{platform::UIColor::gray(0, opacity)}
        | platform::frame({.width = proxy.size.width + safe.left + safe.right,
                           .height = proxy.size.height + safe.top + safe.bottom})
            | motion() | platform::onTapGesture([drag = drag()] { drag.dismiss(); })
            | platform::allowsHitTesting(isShown ? platform::HitTesting::allowed
                                                 : platform::HitTesting::disallowed)
            | platform::offset({.x = (safe.right - safe.left) / 2, .y = (safe.bottom - safe.top) / 2});
    }

    auto surface(const platform::GeometryProxy& proxy) const
    {
        constexpr auto unlimited = std::numeric_limits<platform::CGFloat>::infinity();
        auto dragged = draggedOffset.get();
        auto below = proxy.safeAreaInsets.bottom;
        auto sheetHeight = std::min(platform::usableLength(height), proxy.size.height);
        auto y = isPresented.get() ? proxy.size.height / 2 - sheetHeight / 2 + below + dragged
                                   : proxy.size.height / 2 + sheetHeight / 2 + below;
        return platform::VStack{{.spacing = -overlap},
                                topBar(proxy.size.width),
                                content | platform::padding(platform::EdgeSet::bottom, below)
                                    | platform::flexibleFrame({.minWidth = 0,
                                                               .maxWidth = unlimited,
                                                               .minHeight = 0,
                                                               .maxHeight = unlimited,
                                                               .alignment = platform::Alignment::top()})}
        // Pulled up, the sheet grows by twice the way: once for each end, for it stands by its middle.
        | platform::frame({.width = proxy.size.width,
                           .height = sheetHeight - std::min(2 * dragged, 0.0),
                           .alignment = platform::Alignment::top()})
            | platform::background(platform::Color{contentBackgroundColor})
            | platform::clipShape(RoundedCorner{
                topBarCornerRadius, platform::UIRectCorner::topLeft | platform::UIRectCorner::topRight})
            | SheetSurface{isPresented.get(), [drag = drag()] { drag.dismiss(); }}
        | platform::offset({.y = y}) | motion();
    }

    auto topBar(platform::CGFloat width) const
    {
        return platform::RoundedRectangle{indicatorCorner}
        | platform::fill(platform::UIColor::secondaryLabel()) | platform::frame({.width = 40, .height = 6})
            | platform::opacity(showTopIndicator ? 1 : 0)
            | platform::frame({.width = width, .height = topBarHeight})
            | platform::background(platform::Color{topBarBackgroundColor})
            | platform::gesture(drag().gesture());
    }
};

} // namespace bottomsheet
