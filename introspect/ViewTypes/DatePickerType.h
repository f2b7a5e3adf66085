// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/uikit/Forward.h"

namespace introspect {

// A choice of date and time in the system's own style.
struct DatePickerType : IntrospectableViewTypeDefaults {
    static constexpr catalogue::iOSRow<DatePickerType, platform::UIDatePicker> iOS{};
    static constexpr catalogue::visionOSRow<DatePickerType, platform::UIDatePicker> visionOS{};
};
inline constexpr DatePickerType datePicker;

} // namespace introspect
