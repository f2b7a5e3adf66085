// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/ProbeSelectors.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/uikit/Forward.h"

namespace introspect {

// A tab view in the system's own style.
struct TabViewType : IntrospectableViewTypeDefaults {
    static constexpr catalogue::iOSRow<TabViewType, platform::UITabBarController, iOSVersion::Member::v13,
                                       catalogue::tabBarControllerSelector>
        iOS{};
    static constexpr catalogue::tvOSRow<TabViewType, platform::UITabBarController, tvOSVersion::Member::v13,
                                        catalogue::tabBarControllerSelector>
        tvOS{};
    static constexpr catalogue::visionOSRow<TabViewType, platform::UITabBarController,
                                            catalogue::tabBarControllerSelector>
        visionOS{};
};
inline constexpr TabViewType tabView;

} // namespace introspect
