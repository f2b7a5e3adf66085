// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/uikit/Forward.h"

namespace introspect {

// A list of groups.
struct ListWithGroupedStyleType : IntrospectableViewTypeDefaults {
    enum class Style { grouped };

    static constexpr catalogue::iOSChangingRow<ListWithGroupedStyleType, platform::UITableView,
                                               platform::UICollectionView>
        iOS{};
    static constexpr catalogue::tvOSChangingRow<ListWithGroupedStyleType, platform::UITableView,
                                                platform::UICollectionView>
        tvOS{};
    static constexpr catalogue::visionOSRow<ListWithGroupedStyleType, platform::UICollectionView> visionOS{};
};
inline constexpr ListWithGroupedStyleType listWithGroupedStyle;

} // namespace introspect
