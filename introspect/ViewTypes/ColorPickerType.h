// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/uikit/Forward.h"

namespace introspect {

// The control that opens a choice of colours.
struct ColorPickerType : IntrospectableViewTypeDefaults {
    static constexpr catalogue::iOSRow<ColorPickerType, platform::UIColorWell, iOSVersion::Member::v14> iOS{};
    static constexpr catalogue::visionOSRow<ColorPickerType, platform::UIColorWell> visionOS{};
};
inline constexpr ColorPickerType colorPicker;

} // namespace introspect
