// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/services/Forward.h"

namespace introspect {

// The system's trimmer of videos.
struct VideoEditorType : IntrospectableViewTypeDefaults {
    static constexpr catalogue::iOSRow<VideoEditorType, platform::UIVideoEditorController> iOS{};
    static constexpr catalogue::visionOSRow<VideoEditorType, platform::UIVideoEditorController> visionOS{};
};
inline constexpr VideoEditorType videoEditor;

} // namespace introspect
