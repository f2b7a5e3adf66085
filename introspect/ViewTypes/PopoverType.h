// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/ProbeSelectors.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/uikit/Forward.h"

namespace introspect {

// A popover over the modified view. Used inside of the popover.
struct PopoverType : IntrospectableViewTypeDefaults {
    static constexpr IntrospectionScope scope = IntrospectionScope::ancestor;

    static constexpr catalogue::iOSRow<PopoverType, platform::UIPopoverPresentationController,
                                       iOSVersion::Member::v13,
                                       catalogue::popoverPresentationControllerSelector>
        iOS{};
    static constexpr catalogue::visionOSRow<PopoverType, platform::UIPopoverPresentationController,
                                            catalogue::popoverPresentationControllerSelector>
        visionOS{};
};
inline constexpr PopoverType popover;

} // namespace introspect
