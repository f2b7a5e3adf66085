// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/ProbeSelectors.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/uikit/Forward.h"

namespace introspect {

// The window that the modified view stands in.
struct WindowType : IntrospectableViewTypeDefaults {
    static constexpr catalogue::iOSRow<WindowType, platform::UIWindow, iOSVersion::Member::v13,
                                       catalogue::windowSelector>
        iOS{};
    static constexpr catalogue::tvOSRow<WindowType, platform::UIWindow, tvOSVersion::Member::v13,
                                        catalogue::windowSelector>
        tvOS{};
    static constexpr catalogue::visionOSRow<WindowType, platform::UIWindow, catalogue::windowSelector>
        visionOS{};
};
inline constexpr WindowType window;

} // namespace introspect
