// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/uikit/Forward.h"

namespace introspect {

// A list of groups with a margin on both sides.
struct ListWithInsetGroupedStyleType : IntrospectableViewTypeDefaults {
    enum class Style { insetGrouped };

    static constexpr catalogue::iOSChangingRow<ListWithInsetGroupedStyleType, platform::UITableView,
                                               platform::UICollectionView>
        iOS{};
    static constexpr catalogue::visionOSRow<ListWithInsetGroupedStyleType, platform::UICollectionView>
        visionOS{};
};
inline constexpr ListWithInsetGroupedStyleType listWithInsetGroupedStyle;

} // namespace introspect
