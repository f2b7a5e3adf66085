// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/ProbeSelectors.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/uikit/Forward.h"

namespace introspect {

// The older navigation view, as a stack.
struct NavigationViewWithStackStyleType : IntrospectableViewTypeDefaults {
    enum class Style { stack };

    static constexpr catalogue::iOSRow<NavigationViewWithStackStyleType, platform::UINavigationController,
                                       iOSVersion::Member::v13, catalogue::navigationControllerSelector>
        iOS{};
    static constexpr catalogue::tvOSRow<NavigationViewWithStackStyleType, platform::UINavigationController,
                                        tvOSVersion::Member::v13, catalogue::navigationControllerSelector>
        tvOS{};
    static constexpr catalogue::visionOSRow<NavigationViewWithStackStyleType,
                                            platform::UINavigationController,
                                            catalogue::navigationControllerSelector>
        visionOS{};
};
inline constexpr NavigationViewWithStackStyleType navigationViewWithStackStyle;

} // namespace introspect
