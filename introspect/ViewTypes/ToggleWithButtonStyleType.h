// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"

namespace introspect {

// A toggle as a button. Its platform view is introspected on other systems only.
struct ToggleWithButtonStyleType : IntrospectableViewTypeDefaults {
    enum class Style { button_ };
};
inline constexpr ToggleWithButtonStyleType toggleWithButtonStyle;

} // namespace introspect
