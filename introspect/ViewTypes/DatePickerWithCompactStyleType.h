// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/uikit/Forward.h"

namespace introspect {

// A date picker in one line.
struct DatePickerWithCompactStyleType : IntrospectableViewTypeDefaults {
    enum class Style { compact };

    static constexpr catalogue::iOSRow<DatePickerWithCompactStyleType, platform::UIDatePicker> iOS{};
    static constexpr catalogue::visionOSRow<DatePickerWithCompactStyleType, platform::UIDatePicker>
        visionOS{};
};
inline constexpr DatePickerWithCompactStyleType datePickerWithCompactStyle;

} // namespace introspect
