// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"

namespace introspect {

// A list with a border. Exists on other systems only.
struct ListWithBorderedStyleType : IntrospectableViewTypeDefaults {
    enum class Style { bordered };
};
inline constexpr ListWithBorderedStyleType listWithBorderedStyle;

} // namespace introspect
