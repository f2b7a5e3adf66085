// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/uikit/Forward.h"

namespace introspect {

// A picker as a row of segments.
struct PickerWithSegmentedStyleType : IntrospectableViewTypeDefaults {
    enum class Style { segmented };

    static constexpr catalogue::iOSRow<PickerWithSegmentedStyleType, platform::UISegmentedControl> iOS{};
    static constexpr catalogue::tvOSRow<PickerWithSegmentedStyleType, platform::UISegmentedControl> tvOS{};
    static constexpr catalogue::visionOSRow<PickerWithSegmentedStyleType, platform::UISegmentedControl>
        visionOS{};
};
inline constexpr PickerWithSegmentedStyleType pickerWithSegmentedStyle;

} // namespace introspect
