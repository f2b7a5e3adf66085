// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/uikit/Forward.h"

namespace introspect {

// A list as the side of a window.
struct ListWithSidebarStyleType : IntrospectableViewTypeDefaults {
    enum class Style { sidebar };

    static constexpr catalogue::iOSChangingRow<ListWithSidebarStyleType, platform::UITableView,
                                               platform::UICollectionView, iOSVersion::Member::v14>
        iOS{};
    static constexpr catalogue::visionOSRow<ListWithSidebarStyleType, platform::UICollectionView> visionOS{};
};
inline constexpr ListWithSidebarStyleType listWithSidebarStyle;

} // namespace introspect
