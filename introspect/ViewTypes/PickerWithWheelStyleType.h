// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/uikit/Forward.h"

namespace introspect {

// A picker as a wheel.
struct PickerWithWheelStyleType : IntrospectableViewTypeDefaults {
    enum class Style { wheel };

    static constexpr catalogue::iOSRow<PickerWithWheelStyleType, platform::UIPickerView> iOS{};
    static constexpr catalogue::visionOSRow<PickerWithWheelStyleType, platform::UIPickerView> visionOS{};
};
inline constexpr PickerWithWheelStyleType pickerWithWheelStyle;

} // namespace introspect
