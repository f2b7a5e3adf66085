// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/PlatformVersion.h"

namespace introspect {

// Versions of the platform's desktop system.
// The port provides the interfaces of another system: no member has a condition. Any thread.
struct macOSVersion : PlatformVersion {
    enum class Member { v10_15, v10_15_4, v11, v12, v13, v14 };

    using PlatformVersion::PlatformVersion;

    // Found on first use and kept for the life of the process.
    static const macOSVersion& member(Member member);
    static const macOSVersion& v10_15() { return member(Member::v10_15); }
    static const macOSVersion& v10_15_4() { return member(Member::v10_15_4); }
    static const macOSVersion& v11() { return member(Member::v11); }
    static const macOSVersion& v12() { return member(Member::v12); }
    static const macOSVersion& v13() { return member(Member::v13); }
    static const macOSVersion& v14() { return member(Member::v14); }
};

} // namespace introspect
