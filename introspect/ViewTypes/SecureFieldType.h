// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/uikit/Forward.h"

namespace introspect {

// A text field that hides what is typed.
struct SecureFieldType : IntrospectableViewTypeDefaults {
    static constexpr catalogue::iOSRow<SecureFieldType, platform::UITextField> iOS{};
    static constexpr catalogue::tvOSRow<SecureFieldType, platform::UITextField> tvOS{};
    static constexpr catalogue::visionOSRow<SecureFieldType, platform::UITextField> visionOS{};
};
inline constexpr SecureFieldType secureField;

} // namespace introspect
