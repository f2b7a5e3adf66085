// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/services/Forward.h"

namespace introspect {

// A map.
struct MapType : IntrospectableViewTypeDefaults {
    static constexpr catalogue::iOSRow<MapType, platform::MKMapView, iOSVersion::Member::v14> iOS{};
    static constexpr catalogue::tvOSRow<MapType, platform::MKMapView, tvOSVersion::Member::v14> tvOS{};
    static constexpr catalogue::macOSRow<MapType, platform::MKMapView, macOSVersion::Member::v11> macOS{};
    static constexpr catalogue::visionOSRow<MapType, platform::MKMapView> visionOS{};
};
inline constexpr MapType map;

} // namespace introspect
