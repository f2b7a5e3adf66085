// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/services/Forward.h"

namespace introspect {

// A player with the system's own controls.
struct VideoPlayerType : IntrospectableViewTypeDefaults {
    static constexpr catalogue::iOSRow<VideoPlayerType, platform::AVPlayerViewController,
                                       iOSVersion::Member::v14>
        iOS{};
    static constexpr catalogue::tvOSRow<VideoPlayerType, platform::AVPlayerViewController,
                                        tvOSVersion::Member::v14>
        tvOS{};
    static constexpr catalogue::visionOSRow<VideoPlayerType, platform::AVPlayerViewController> visionOS{};
};
inline constexpr VideoPlayerType videoPlayer;

} // namespace introspect
