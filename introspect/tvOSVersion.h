// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/PlatformVersion.h"

namespace introspect {

// Versions of the platform's television system.
// The port provides the interfaces of another system: no member has a condition. Any thread.
struct tvOSVersion : PlatformVersion {
    enum class Member { v13, v14, v15, v16, v17 };

    using PlatformVersion::PlatformVersion;

    // Found on first use and kept for the life of the process.
    static const tvOSVersion& member(Member member);
    static const tvOSVersion& v13() { return member(Member::v13); }
    static const tvOSVersion& v14() { return member(Member::v14); }
    static const tvOSVersion& v15() { return member(Member::v15); }
    static const tvOSVersion& v16() { return member(Member::v16); }
    static const tvOSVersion& v17() { return member(Member::v17); }
};

} // namespace introspect
