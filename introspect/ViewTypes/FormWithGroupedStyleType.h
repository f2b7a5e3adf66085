// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/uikit/Forward.h"

namespace introspect {

// A form of groups.
struct FormWithGroupedStyleType : IntrospectableViewTypeDefaults {
    enum class Style { grouped };

    static constexpr catalogue::iOSChangingRow<FormWithGroupedStyleType, platform::UITableView,
                                               platform::UICollectionView, iOSVersion::Member::v16>
        iOS{};
    static constexpr catalogue::tvOSChangingRow<FormWithGroupedStyleType, platform::UITableView,
                                                platform::UICollectionView, tvOSVersion::Member::v16>
        tvOS{};
    static constexpr catalogue::visionOSRow<FormWithGroupedStyleType, platform::UICollectionView> visionOS{};
};
inline constexpr FormWithGroupedStyleType formWithGroupedStyle;

} // namespace introspect
