// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/uikit/Forward.h"

namespace introspect {

// A text field that grows downwards.
struct TextFieldWithVerticalAxisType : IntrospectableViewTypeDefaults {
    enum class Axis { vertical };

    static constexpr catalogue::iOSRow<TextFieldWithVerticalAxisType, platform::UITextView,
                                       iOSVersion::Member::v16>
        iOS{};
    static constexpr catalogue::tvOSRow<TextFieldWithVerticalAxisType, platform::UITextView,
                                        tvOSVersion::Member::v16>
        tvOS{};
    static constexpr catalogue::visionOSRow<TextFieldWithVerticalAxisType, platform::UITextView> visionOS{};
};
inline constexpr TextFieldWithVerticalAxisType textFieldWithVerticalAxis;

} // namespace introspect
