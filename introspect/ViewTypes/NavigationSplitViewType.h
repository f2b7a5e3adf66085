// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/ProbeSelectors.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/uikit/Forward.h"

namespace introspect {

// Navigation in columns.
struct NavigationSplitViewType : IntrospectableViewTypeDefaults {
    static constexpr catalogue::iOSRow<NavigationSplitViewType, platform::UISplitViewController,
                                       iOSVersion::Member::v16, catalogue::splitViewControllerSelector>
        iOS{};
    static constexpr catalogue::tvOSRow<NavigationSplitViewType, platform::UISplitViewController,
                                        tvOSVersion::Member::v16, catalogue::splitViewControllerSelector>
        tvOS{};
    static constexpr catalogue::visionOSRow<NavigationSplitViewType, platform::UISplitViewController,
                                            catalogue::splitViewControllerSelector>
        visionOS{};
};
inline constexpr NavigationSplitViewType navigationSplitView;

} // namespace introspect
