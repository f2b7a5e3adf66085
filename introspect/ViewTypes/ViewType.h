// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/uikit/Forward.h"

namespace introspect {

// Any view: the outermost platform view of the modified view.
struct ViewType : IntrospectableViewTypeDefaults {
    static constexpr catalogue::iOSRow<ViewType, platform::UIView> iOS{};
    static constexpr catalogue::tvOSRow<ViewType, platform::UIView> tvOS{};
    static constexpr catalogue::visionOSRow<ViewType, platform::UIView> visionOS{};
};
inline constexpr ViewType view;

} // namespace introspect
