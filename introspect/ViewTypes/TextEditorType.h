// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/uikit/Forward.h"

namespace introspect {

// An editor for text of many lines.
struct TextEditorType : IntrospectableViewTypeDefaults {
    static constexpr catalogue::iOSRow<TextEditorType, platform::UITextView, iOSVersion::Member::v14> iOS{};
    static constexpr catalogue::visionOSRow<TextEditorType, platform::UITextView> visionOS{};
};
inline constexpr TextEditorType textEditor;

} // namespace introspect
