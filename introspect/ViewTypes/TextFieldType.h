// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/uikit/Forward.h"

namespace introspect {

// A field for one line of text.
struct TextFieldType : IntrospectableViewTypeDefaults {
    static constexpr catalogue::iOSRow<TextFieldType, platform::UITextField> iOS{};
    static constexpr catalogue::tvOSRow<TextFieldType, platform::UITextField> tvOS{};
    static constexpr catalogue::visionOSRow<TextFieldType, platform::UITextField> visionOS{};
};
inline constexpr TextFieldType textField;

} // namespace introspect
