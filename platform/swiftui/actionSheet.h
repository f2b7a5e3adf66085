// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/ActionSheet.h"
#include "platform/swiftui/alert.h"

#include <optional>
#include <type_traits>
#include <utility>

namespace platform {

// Presents `content()` from the lower edge of the window while `isPresented` holds true. When the sheet goes, by a choice,
// by Escape or by a press beside it, the binding becomes false first, then the chosen button's action is called. It takes
// turns with alerts and counts as one where modifiers stand directly on each other (alert.h).
template <class Content>
    requires std::is_invocable_r_v<ActionSheet, Content>
auto actionSheet(Binding<bool> isPresented, Content content)
{
    Binding<std::optional<detail::PresentedAlert>> item(
        [isPresented] { return isPresented.get() ? std::optional(detail::PresentedAlert{}) : std::nullopt; },
        [isPresented](const auto& value) { isPresented.set(value.has_value()); });
    return AlertModifier<detail::PresentedAlert>{
        std::move(item), [content = std::move(content)](const detail::PresentedAlert&) { return content(); }};
}

} // namespace platform
