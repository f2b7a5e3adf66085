// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/uikit/Forward.h"

namespace introspect {

// Progress as a turning wheel.
struct ProgressViewWithCircularStyleType : IntrospectableViewTypeDefaults {
    enum class Style { circular };

    static constexpr catalogue::iOSRow<ProgressViewWithCircularStyleType, platform::UIActivityIndicatorView>
        iOS{};
    static constexpr catalogue::tvOSRow<ProgressViewWithCircularStyleType, platform::UIActivityIndicatorView>
        tvOS{};
    static constexpr catalogue::visionOSRow<ProgressViewWithCircularStyleType,
                                            platform::UIActivityIndicatorView>
        visionOS{};
};
inline constexpr ProgressViewWithCircularStyleType progressViewWithCircularStyle;

} // namespace introspect
