// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/services/Forward.h"

namespace introspect {

// The system's choice of a photo or a video, from the library or the camera.
struct ImagePickerType : IntrospectableViewTypeDefaults {
    static constexpr catalogue::iOSRow<ImagePickerType, platform::UIImagePickerController> iOS{};
    static constexpr catalogue::visionOSRow<ImagePickerType, platform::UIImagePickerController> visionOS{};
};
inline constexpr ImagePickerType imagePicker;

} // namespace introspect
