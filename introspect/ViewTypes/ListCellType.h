// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/uikit/Forward.h"

namespace introspect {

// One cell of a list. Used inside of the cell.
struct ListCellType : IntrospectableViewTypeDefaults {
    static constexpr IntrospectionScope scope = IntrospectionScope::ancestor;

    static constexpr catalogue::iOSChangingRow<ListCellType, platform::UITableViewCell,
                                               platform::UICollectionViewCell>
        iOS{};
    static constexpr catalogue::tvOSChangingRow<ListCellType, platform::UITableViewCell,
                                                platform::UICollectionViewCell>
        tvOS{};
    static constexpr catalogue::visionOSRow<ListCellType, platform::UICollectionViewCell> visionOS{};
};
inline constexpr ListCellType listCell;

} // namespace introspect
