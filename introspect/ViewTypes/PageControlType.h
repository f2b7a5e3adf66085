// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/uikit/Forward.h"

namespace introspect {

// The dots of a paged tab view.
struct PageControlType : IntrospectableViewTypeDefaults {
    static constexpr catalogue::iOSRow<PageControlType, platform::UIPageControl> iOS{};
    static constexpr catalogue::tvOSRow<PageControlType, platform::UIPageControl> tvOS{};
    static constexpr catalogue::visionOSRow<PageControlType, platform::UIPageControl> visionOS{};
};
inline constexpr PageControlType pageControl;

} // namespace introspect
