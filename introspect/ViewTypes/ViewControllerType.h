// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/uikit/Forward.h"

namespace introspect {

// Any controller: the outermost one of the modified view, else the one it stands in.
struct ViewControllerType : IntrospectableViewTypeDefaults {
    static constexpr IntrospectionScope scope{IntrospectionScope::receiver, IntrospectionScope::ancestor};

    static constexpr catalogue::iOSRow<ViewControllerType, platform::UIViewController> iOS{};
    static constexpr catalogue::tvOSRow<ViewControllerType, platform::UIViewController> tvOS{};
    static constexpr catalogue::visionOSRow<ViewControllerType, platform::UIViewController> visionOS{};
};
inline constexpr ViewControllerType viewController;

} // namespace introspect
