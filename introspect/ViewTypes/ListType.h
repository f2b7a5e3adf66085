// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/uikit/Forward.h"

namespace introspect {

// A list in the system's own style.
struct ListType : IntrospectableViewTypeDefaults {
    static constexpr catalogue::iOSChangingRow<ListType, platform::UITableView, platform::UICollectionView>
        iOS{};
    static constexpr catalogue::tvOSChangingRow<ListType, platform::UITableView, platform::UICollectionView>
        tvOS{};
    static constexpr catalogue::visionOSRow<ListType, platform::UICollectionView> visionOS{};
};
inline constexpr ListType list;

} // namespace introspect
