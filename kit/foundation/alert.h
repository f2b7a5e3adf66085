// SPDX-License-Identifier: MIT
#pragma once

#include "kit/foundation/AlertItem.h"
#include "kit/foundation/ErrorAlertItem.h"
#include "platform/swiftui/Binding.h"
#include "platform/swiftui/Color.h"
#include "platform/swiftui/layered.h"

#include <optional>
#include <tuple>
#include <utility>

namespace zelk {

// Of several alerts on one view the platform shows only the last one's. These are attached to a transparent colour behind
// the view instead, so that one view carries as many as it likes.
template <AlertItem Item>
struct AlertItemModifier {
    platform::Binding<std::optional<Item>> item;

    auto dynamicProperties() { return std::tie(item); }
    template <platform::View Content>
    auto body(const Content& content) const
    {
        auto carrier = platform::Color{platform::UIColor::clear()}
            | platform::alert(item, [](const Item& shown) { return shown.alert(); });
        return content | platform::background(std::move(carrier));
    }
};

struct AlertErrorModifier {
    platform::Binding<std::optional<platform::Error>> error;

    auto dynamicProperties() { return std::tie(error); }
    template <platform::View Content>
    auto body(const Content& content) const
    {
        platform::Binding<std::optional<ErrorAlertItem>> item(
            [error = error]() -> std::optional<ErrorAlertItem> {
                auto present = error.get();
                return present ? std::optional(ErrorAlertItem{*present}) : std::nullopt;
            },
            [error = error](const std::optional<ErrorAlertItem>& shown) {
                error.set(shown ? std::optional(shown->error) : std::nullopt);
            });
        return content | AlertItemModifier<ErrorAlertItem>{std::move(item)};
    }
};

// Shows the item's alert while the binding holds one; the binding is emptied when the alert goes.
template <AlertItem Item>
auto alert(platform::Binding<std::optional<Item>> item)
{
    return AlertItemModifier<Item>{std::move(item)};
}
// The same for an error, with its standard alert.
inline auto alert(platform::Binding<std::optional<platform::Error>> error)
{
    return AlertErrorModifier{std::move(error)};
}

} // namespace zelk
