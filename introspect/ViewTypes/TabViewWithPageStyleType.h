// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/uikit/Forward.h"

namespace introspect {

// A tab view whose tabs are pages to swipe through.
struct TabViewWithPageStyleType : IntrospectableViewTypeDefaults {
    enum class Style { page };

    static constexpr catalogue::iOSRow<TabViewWithPageStyleType, platform::UICollectionView,
                                       iOSVersion::Member::v14>
        iOS{};
    static constexpr catalogue::tvOSRow<TabViewWithPageStyleType, platform::UICollectionView,
                                        tvOSVersion::Member::v14>
        tvOS{};
    static constexpr catalogue::visionOSRow<TabViewWithPageStyleType, platform::UICollectionView> visionOS{};
};
inline constexpr TabViewWithPageStyleType tabViewWithPageStyle;

} // namespace introspect
