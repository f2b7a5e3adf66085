// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"

namespace introspect {

// A toggle as a checkbox. Exists on other systems only.
struct ToggleWithCheckboxStyleType : IntrospectableViewTypeDefaults {
    enum class Style { checkbox };
};
inline constexpr ToggleWithCheckboxStyleType toggleWithCheckboxStyle;

} // namespace introspect
