// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/uikit/Forward.h"

namespace introspect {

// A scroll view.
struct ScrollViewType : IntrospectableViewTypeDefaults {
    static constexpr catalogue::iOSRow<ScrollViewType, platform::UIScrollView> iOS{};
    static constexpr catalogue::tvOSRow<ScrollViewType, platform::UIScrollView> tvOS{};
    static constexpr catalogue::visionOSRow<ScrollViewType, platform::UIScrollView> visionOS{};
};
inline constexpr ScrollViewType scrollView;

} // namespace introspect
