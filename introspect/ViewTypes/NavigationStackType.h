// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/ProbeSelectors.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/uikit/Forward.h"

namespace introspect {

// Navigation as a stack.
struct NavigationStackType : IntrospectableViewTypeDefaults {
    static constexpr catalogue::iOSRow<NavigationStackType, platform::UINavigationController,
                                       iOSVersion::Member::v16, catalogue::navigationControllerSelector>
        iOS{};
    static constexpr catalogue::tvOSRow<NavigationStackType, platform::UINavigationController,
                                        tvOSVersion::Member::v16, catalogue::navigationControllerSelector>
        tvOS{};
    static constexpr catalogue::visionOSRow<NavigationStackType, platform::UINavigationController,
                                            catalogue::navigationControllerSelector>
        visionOS{};
};
inline constexpr NavigationStackType navigationStack;

} // namespace introspect
