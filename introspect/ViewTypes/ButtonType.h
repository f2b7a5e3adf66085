// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"

namespace introspect {

// A button. Its platform view is introspected on other systems only.
struct ButtonType : IntrospectableViewTypeDefaults { };
inline constexpr ButtonType button;

} // namespace introspect
