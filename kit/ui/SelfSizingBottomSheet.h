// SPDX-License-Identifier: MIT
#pragma once

#include "bottomsheet/bottomSheet.h"
#include "kit/theme/CornerRadius.h"
#include "kit/ui/readSize.h"

#include "platform/swiftui/GeometryReader.h"
#include "platform/swiftui/ScrollView.h"
#include "platform/swiftui/State.h"
#include "platform/swiftui/ZStack.h"

#include <optional>
#include <tuple>

namespace zelk {

// A bottom sheet as high as its content wants to be, as a modifier of the view that it comes over. It follows the
// content when that grows or shrinks; content higher than the place scrolls. Usually made by `selfSizingBottomSheet`.
template <class MakeContent>
    requires platform::View<std::invoke_result_t<const MakeContent&>>
struct SelfSizingBottomSheet {
    platform::Binding<bool> isPresented;
    bool showsTopIndicator;
    platform::UIColor backgroundColor; // of the bar and of what is below the content
    platform::Closure<MakeContent> content;
    platform::State<std::optional<platform::CGFloat>> contentHeight{}; // its own; none until it was measured

    auto dynamicProperties() { return std::tie(isPresented, contentHeight); }

    template <platform::View Host>
    auto body(const Host& host) const
    {
        return platform::ZStack{
            host, platform::GeometryReader{[modifier = *this](const platform::GeometryProxy& proxy) {
                return modifier.sheet(proxy.safeAreaInsets.bottom);
            }}};
    }

private:
    static constexpr platform::CGFloat topBarHeight = 28, overlap = 8;

    auto sheet(platform::CGFloat below) const
    {
        auto read = readSize([height = contentHeight](platform::CGSize size) { height.set(size.height); });
        auto scrolled =
            platform::ScrollView{{.showsIndicators = false}, platform::operator|(content(), read)};
        // Before it is measured the sheet is as high as its bar.
        return bottomsheet::BottomSheet<decltype(scrolled)>{
            .isPresented = isPresented,
            .height = contentHeight.get().value_or(0) + topBarHeight - overlap + below,
            .topBarHeight = topBarHeight,
            .topBarCornerRadius = CornerRadius::_200,
            .content = std::move(scrolled),
            .contentBackgroundColor = backgroundColor,
            .topBarBackgroundColor = backgroundColor,
            .showTopIndicator = showsTopIndicator,
            .animation = bottomsheet::sheetAnimation(),
            .onDismiss = {},
        };
    }
};

} // namespace zelk
