// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/PlatformVersion.h"

namespace introspect {

// Versions of the platform's headset system.
// The port provides the interfaces of another system: no member has a condition. Any thread.
struct visionOSVersion : PlatformVersion {
    enum class Member { v1 };

    using PlatformVersion::PlatformVersion;

    // Found on first use and kept for the life of the process.
    static const visionOSVersion& member(Member member);
    static const visionOSVersion& v1() { return member(Member::v1); }
};

} // namespace introspect
