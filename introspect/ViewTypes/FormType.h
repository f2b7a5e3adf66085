// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/uikit/Forward.h"

namespace introspect {

// A form in the system's own style.
struct FormType : IntrospectableViewTypeDefaults {
    static constexpr catalogue::iOSChangingRow<FormType, platform::UITableView, platform::UICollectionView>
        iOS{};
    static constexpr catalogue::tvOSChangingRow<FormType, platform::UITableView, platform::UICollectionView>
        tvOS{};
    static constexpr catalogue::visionOSRow<FormType, platform::UICollectionView> visionOS{};
};
inline constexpr FormType form;

} // namespace introspect
