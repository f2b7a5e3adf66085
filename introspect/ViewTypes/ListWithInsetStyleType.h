// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/uikit/Forward.h"

namespace introspect {

// A list with a margin on both sides.
struct ListWithInsetStyleType : IntrospectableViewTypeDefaults {
    enum class Style { inset };

    static constexpr catalogue::iOSChangingRow<ListWithInsetStyleType, platform::UITableView,
                                               platform::UICollectionView, iOSVersion::Member::v14>
        iOS{};
    static constexpr catalogue::visionOSRow<ListWithInsetStyleType, platform::UICollectionView> visionOS{};
};
inline constexpr ListWithInsetStyleType listWithInsetStyle;

} // namespace introspect
