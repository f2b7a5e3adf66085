// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/uikit/Forward.h"

namespace introspect {

// Progress as a bar.
struct ProgressViewWithLinearStyleType : IntrospectableViewTypeDefaults {
    enum class Style { linear };

    static constexpr catalogue::iOSRow<ProgressViewWithLinearStyleType, platform::UIProgressView> iOS{};
    static constexpr catalogue::tvOSRow<ProgressViewWithLinearStyleType, platform::UIProgressView> tvOS{};
    static constexpr catalogue::visionOSRow<ProgressViewWithLinearStyleType, platform::UIProgressView>
        visionOS{};
};
inline constexpr ProgressViewWithLinearStyleType progressViewWithLinearStyle;

} // namespace introspect
