// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/uikit/Forward.h"

namespace introspect {

// A toggle in the system's own style.
struct ToggleType : IntrospectableViewTypeDefaults {
    static constexpr catalogue::iOSRow<ToggleType, platform::UISwitch> iOS{};
    static constexpr catalogue::visionOSRow<ToggleType, platform::UISwitch> visionOS{};
};
inline constexpr ToggleType toggle;

} // namespace introspect
