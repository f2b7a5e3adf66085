// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"

namespace introspect {

// A date picker as a text field with a stepper. Exists on other systems only.
struct DatePickerWithStepperFieldStyleType : IntrospectableViewTypeDefaults {
    enum class Style { stepperField };
};
inline constexpr DatePickerWithStepperFieldStyleType datePickerWithStepperFieldStyle;

} // namespace introspect
