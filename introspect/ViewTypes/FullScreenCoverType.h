// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/ProbeSelectors.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/uikit/Forward.h"

namespace introspect {

// What covers the screen over the modified view. Used inside of the cover.
struct FullScreenCoverType : IntrospectableViewTypeDefaults {
    static constexpr IntrospectionScope scope = IntrospectionScope::ancestor;

    static constexpr catalogue::iOSRow<FullScreenCoverType, platform::UIPresentationController,
                                       iOSVersion::Member::v14, catalogue::presentationControllerSelector>
        iOS{};
    static constexpr catalogue::tvOSRow<FullScreenCoverType, platform::UIPresentationController,
                                        tvOSVersion::Member::v14, catalogue::presentationControllerSelector>
        tvOS{};
    static constexpr catalogue::visionOSRow<FullScreenCoverType, platform::UIPresentationController,
                                            catalogue::presentationControllerSelector>
        visionOS{};
};
inline constexpr FullScreenCoverType fullScreenCover;

} // namespace introspect
