// SPDX-License-Identifier: MIT
#pragma once

#include "bottomsheet/BottomSheet.h"

#include "platform/swiftui/ConditionalContent.h"
#include "platform/swiftui/ZStack.h"
#include "platform/swiftui/alert.h"
#include "platform/swiftui/identity.h"

#include <concepts>
#include <functional>
#include <memory>
#include <optional>
#include <tuple>
#include <utility>

namespace bottomsheet {

// White, or a grey that stands out from the dimmed ground where that is dark.
inline platform::UIColor sheetColor()
{
    return platform::UIColor::dynamic(platform::UIColor::white(), platform::UIColor(0.11, 0.11, 0.118));
}

// How a sheet comes and goes by itself: firmly, and without passing its place.
inline platform::Animation sheetAnimation()
{
    return platform::Animation::spring(0.35, 0.9);
}

struct BottomSheetOptions {
    platform::CGFloat height = 320;
    platform::CGFloat topBarHeight = 30;
    std::optional<platform::CGFloat> topBarCornerRadius = {}; // none: a third of the bar's height
    platform::UIColor contentBackgroundColor = sheetColor();
    platform::UIColor topBarBackgroundColor = sheetColor();
    bool showTopIndicator = true;
    std::function<void()> onDismiss = {};
};

namespace detail {

template <platform::View Content>
auto makeSheet(platform::Binding<bool> isPresented, const BottomSheetOptions& options, Content content)
{
    return BottomSheet<Content>{
        .isPresented = std::move(isPresented),
        .height = options.height,
        .topBarHeight = options.topBarHeight,
        .topBarCornerRadius = options.topBarCornerRadius.value_or(options.topBarHeight / 3),
        .content = std::move(content),
        .contentBackgroundColor = options.contentBackgroundColor,
        .topBarBackgroundColor = options.topBarBackgroundColor,
        .showTopIndicator = options.showTopIndicator,
        .animation = sheetAnimation(),
        .onDismiss = options.onDismiss,
    };
}

template <class Item, class Content>
auto identified(const Item& item, Content content)
{
    if constexpr (platform::Identifiable<Item>)
        return std::move(content) | platform::id(platform::detail::identityOf(item));
    else
        return content;
}

} // namespace detail

template <class MakeContent>
struct BottomSheetModifier {
    platform::Binding<bool> isPresented;
    BottomSheetOptions options;
    platform::Closure<MakeContent> makeContent;

    auto dynamicProperties() { return std::tie(isPresented); }
    template <platform::View Host>
    auto body(const Host& host) const
    {
        return platform::ZStack{host, detail::makeSheet(isPresented, options, makeContent())};
    }
};

// Shows a sheet over the view while `isPresented` holds true, in all the space that the view is offered:
// `page | bottomSheet(isShown, {.height = 240}, [] { return Menu{}; })`.
template <class MakeContent>
    requires platform::View<std::invoke_result_t<const MakeContent&>>
auto bottomSheet(platform::Binding<bool> isPresented, BottomSheetOptions options, MakeContent makeContent)
{
    return BottomSheetModifier<MakeContent>{std::move(isPresented), std::move(options),
                                            std::move(makeContent)};
}
template <class MakeContent>
    requires platform::View<std::invoke_result_t<const MakeContent&>>
auto bottomSheet(platform::Binding<bool> isPresented, MakeContent makeContent)
{
    return bottomSheet(std::move(isPresented), BottomSheetOptions{}, std::move(makeContent));
}

template <class Item, class MakeContent>
struct BottomSheetItemModifier {
    platform::Binding<std::optional<Item>> item;
    BottomSheetOptions options;
    platform::Closure<MakeContent> makeContent;
    // What the sheet shows while it is on its way out. One of the first description is kept for all.
    using Last = std::shared_ptr<std::optional<Item>>;
    platform::State<Last> last{std::make_shared<std::optional<Item>>()};

    auto dynamicProperties() { return std::tie(item, last); }
    template <platform::View Host>
    auto body(const Host& host) const
    {
        auto& shown = *last.get();
        if (auto present = item.get())
            shown = std::move(present);
        platform::Binding<bool> isPresented([item = item] { return item.get().has_value(); },
                                            [item = item](bool presents) {
                                                if (!presents)
                                                    item.set(std::nullopt);
                                            });
        return platform::ZStack{
            host, detail::makeSheet(std::move(isPresented), options, platform::when(shown.has_value(), [&] {
                                        return detail::identified(*shown, makeContent(*shown));
                                    }))};
    }
};

// The same while `item` holds one; what the sheet shows is made from it. Dismissing empties the binding. An item with an `id`
// that differs from the last one's begins the content anew.
template <class Item, class MakeContent>
    requires platform::View<std::invoke_result_t<const MakeContent&, const Item&>>
auto bottomSheet(platform::Binding<std::optional<Item>> item, BottomSheetOptions options,
                 MakeContent makeContent)
{
    return BottomSheetItemModifier<Item, MakeContent>{std::move(item), std::move(options),
                                                      std::move(makeContent)};
}
template <class Item, class MakeContent>
    requires platform::View<std::invoke_result_t<const MakeContent&, const Item&>>
auto bottomSheet(platform::Binding<std::optional<Item>> item, MakeContent makeContent)
{
    return bottomSheet(std::move(item), BottomSheetOptions{}, std::move(makeContent));
}

} // namespace bottomsheet
