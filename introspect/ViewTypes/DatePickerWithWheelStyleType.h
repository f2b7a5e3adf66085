// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/uikit/Forward.h"

namespace introspect {

// A date picker as wheels.
struct DatePickerWithWheelStyleType : IntrospectableViewTypeDefaults {
    enum class Style { wheel };

    static constexpr catalogue::iOSRow<DatePickerWithWheelStyleType, platform::UIDatePicker> iOS{};
    static constexpr catalogue::visionOSRow<DatePickerWithWheelStyleType, platform::UIDatePicker> visionOS{};
};
inline constexpr DatePickerWithWheelStyleType datePickerWithWheelStyle;

} // namespace introspect
