// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/services/Forward.h"

namespace introspect {

// The system's choice of a font.
struct FontPickerType : IntrospectableViewTypeDefaults {
    static constexpr catalogue::iOSRow<FontPickerType, platform::UIFontPickerViewController> iOS{};
    static constexpr catalogue::visionOSRow<FontPickerType, platform::UIFontPickerViewController> visionOS{};
};
inline constexpr FontPickerType fontPicker;

} // namespace introspect
