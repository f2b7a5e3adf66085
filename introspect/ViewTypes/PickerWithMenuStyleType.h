// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"

namespace introspect {

// A picker as a menu. Its platform view is introspected on other systems only.
struct PickerWithMenuStyleType : IntrospectableViewTypeDefaults {
    enum class Style { menu };
};
inline constexpr PickerWithMenuStyleType pickerWithMenuStyle;

} // namespace introspect
