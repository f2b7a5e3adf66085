// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/ProbeSelectors.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/uikit/Forward.h"

namespace introspect {

// The field of a searchable view.
struct SearchFieldType : IntrospectableViewTypeDefaults {
    static constexpr catalogue::iOSRow<SearchFieldType, platform::UISearchBar, iOSVersion::Member::v15,
                                       catalogue::searchBarSelector>
        iOS{};
    static constexpr catalogue::tvOSRow<SearchFieldType, platform::UISearchBar, tvOSVersion::Member::v15,
                                        catalogue::searchBarSelector>
        tvOS{};
    static constexpr catalogue::visionOSRow<SearchFieldType, platform::UISearchBar,
                                            catalogue::searchBarSelector>
        visionOS{};
};
inline constexpr SearchFieldType searchField;

} // namespace introspect
