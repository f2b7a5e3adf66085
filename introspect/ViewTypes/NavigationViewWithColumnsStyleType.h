// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/ProbeSelectors.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/uikit/Forward.h"

namespace introspect {

// The older navigation view, in columns.
struct NavigationViewWithColumnsStyleType : IntrospectableViewTypeDefaults {
    enum class Style { columns };

    static constexpr catalogue::iOSRow<NavigationViewWithColumnsStyleType, platform::UISplitViewController,
                                       iOSVersion::Member::v13, catalogue::splitViewControllerSelector>
        iOS{};
    static constexpr catalogue::tvOSRow<NavigationViewWithColumnsStyleType, platform::UISplitViewController,
                                        tvOSVersion::Member::v13, catalogue::splitViewControllerSelector>
        tvOS{};
    static constexpr catalogue::visionOSRow<NavigationViewWithColumnsStyleType,
                                            platform::UISplitViewController,
                                            catalogue::splitViewControllerSelector>
        visionOS{};
};
inline constexpr NavigationViewWithColumnsStyleType navigationViewWithColumnsStyle;

} // namespace introspect
