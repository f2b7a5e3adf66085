// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/uikit/Forward.h"

namespace introspect {

// A date picker as a calendar.
struct DatePickerWithGraphicalStyleType : IntrospectableViewTypeDefaults {
    enum class Style { graphical };

    static constexpr catalogue::iOSRow<DatePickerWithGraphicalStyleType, platform::UIDatePicker> iOS{};
    static constexpr catalogue::visionOSRow<DatePickerWithGraphicalStyleType, platform::UIDatePicker>
        visionOS{};
};
inline constexpr DatePickerWithGraphicalStyleType datePickerWithGraphicalStyle;

} // namespace introspect
