// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/uikit/Forward.h"

namespace introspect {

// A table of columns.
struct TableType : IntrospectableViewTypeDefaults {
    static constexpr catalogue::iOSRow<TableType, platform::UICollectionView> iOS{};
    static constexpr catalogue::visionOSRow<TableType, platform::UICollectionView> visionOS{};
};
inline constexpr TableType table;

} // namespace introspect
