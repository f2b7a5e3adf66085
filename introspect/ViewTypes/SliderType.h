// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/uikit/Forward.h"

namespace introspect {

// A slider.
struct SliderType : IntrospectableViewTypeDefaults {
    static constexpr catalogue::iOSRow<SliderType, platform::UISlider> iOS{};
    static constexpr catalogue::visionOSRow<SliderType, platform::UISlider> visionOS{};
};
inline constexpr SliderType slider;

} // namespace introspect
