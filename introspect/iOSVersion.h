// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/PlatformVersion.h"
#include "platform/foundation/OperatingSystemVersion.h"

namespace introspect {

// The versions of the system whose interfaces the port provides. Any thread.
struct iOSVersion : PlatformVersion {
    enum class Member { v13, v14, v15, v16, v17 };

    using PlatformVersion::PlatformVersion;

    // How `member` stands to a system of version `running`: current as long as the next major version is not reached.
    // v13 is the lowest supported system and has no future; from 18 on every member is past.
    static PlatformVersionCondition conditionOn(Member member, platform::OperatingSystemVersion running);

    // Against the running system; found on first use and kept for the life of the process.
    static const iOSVersion& member(Member member);
    static const iOSVersion& v13();
    static const iOSVersion& v14();
    static const iOSVersion& v15();
    static const iOSVersion& v16();
    static const iOSVersion& v17();
};

} // namespace introspect
