// SPDX-License-Identifier: MIT
#pragma once

#include "kit/ui/StackLayout.h"
#include "platform/swiftui/Closure.h"
#include "platform/swiftui/ConditionalContent.h"
#include "platform/swiftui/stacks.h"

#include <optional>
#include <type_traits>
#include <utility>

namespace zelk {

// The same content as a row or as a column, as a value says:
//
//     LayoutStack{isWide ? StackLayout::horizontal() : StackLayout::vertical(), 12, [] {
//         return Group{Text{"Title"}, Text{"Subtitle"}};
//     }}
//
// A row and a column, with an alignment given and without one, are four places with an identity each: a change from one
// to another makes the content anew, with fresh state, even where both look the same. The alignment's value and the
// spacing change in place.
template <class MakeContent>
    requires platform::View<std::invoke_result_t<const MakeContent&>>
struct LayoutStack {
    StackLayout layout;
    std::optional<platform::CGFloat> spacing; // points between children; none: the platform's own
    platform::Closure<MakeContent> content;

    LayoutStack(StackLayout stackLayout, std::optional<platform::CGFloat> pointsBetween,
                MakeContent makeContent)
        : layout(stackLayout)
        , spacing(pointsBetween)
        , content(std::move(makeContent))
    {
    }

    auto body() const
    {
        using platform::HorizontalAlignment;
        using platform::VerticalAlignment;
        auto row = [this](VerticalAlignment alignment) {
            return platform::HStack{platform::HStackOptions{alignment, spacing}, content()};
        };
        auto column = [this](HorizontalAlignment alignment) {
            return platform::VStack{platform::VStackOptions{alignment, spacing}, content()};
        };
        return platform::when(
            layout.isHorizontal(),
            [&] {
                auto alignment = layout.verticalAlignment();
                return platform::when(
                    alignment.has_value(), [&] { return row(*alignment); },
                    [&] { return row(VerticalAlignment::center); });
            },
            [&] {
                auto alignment = layout.horizontalAlignment();
                return platform::when(
                    alignment.has_value(), [&] { return column(*alignment); },
                    [&] { return column(HorizontalAlignment::center); });
            });
    }
};

} // namespace zelk
