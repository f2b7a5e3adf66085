// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/uikit/Forward.h"

namespace introspect {

// A toggle as a switch.
struct ToggleWithSwitchStyleType : IntrospectableViewTypeDefaults {
    enum class Style { switch_ };

    static constexpr catalogue::iOSRow<ToggleWithSwitchStyleType, platform::UISwitch> iOS{};
    static constexpr catalogue::visionOSRow<ToggleWithSwitchStyleType, platform::UISwitch> visionOS{};
};
inline constexpr ToggleWithSwitchStyleType toggleWithSwitchStyle;

} // namespace introspect
