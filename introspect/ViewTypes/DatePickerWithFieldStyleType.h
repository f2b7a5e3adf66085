// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"

namespace introspect {

// A date picker as a text field. Exists on other systems only.
struct DatePickerWithFieldStyleType : IntrospectableViewTypeDefaults {
    enum class Style { field };
};
inline constexpr DatePickerWithFieldStyleType datePickerWithFieldStyle;

} // namespace introspect
