// SPDX-License-Identifier: MIT
#include "introspect/iOSVersion.h"

#include "platform/foundation/Precondition.h"
#include "platform/foundation/ProcessInfo.h"

namespace introspect {

namespace {

constexpr int majorOf(iOSVersion::Member member)
{
    return 13 + static_cast<int>(member);
}

iOSVersion standing(iOSVersion::Member member)
{
    return iOSVersion([member] {
        return iOSVersion::conditionOn(member, platform::ProcessInfo::processInfo().operatingSystemVersion());
    });
}

} // namespace

PlatformVersionCondition iOSVersion::conditionOn(Member member, platform::OperatingSystemVersion running)
{
    const int major = majorOf(member);
    if (running >= platform::OperatingSystemVersion{major + 1, 0, 0})
        return PlatformVersionCondition::past;
    if (member == Member::v13 || running >= platform::OperatingSystemVersion{major, 0, 0})
        return PlatformVersionCondition::current;
    return PlatformVersionCondition::future;
}

const iOSVersion& iOSVersion::v13()
{
    static const iOSVersion version = standing(Member::v13);
    return version;
}

const iOSVersion& iOSVersion::v14()
{
    static const iOSVersion version = standing(Member::v14);
    return version;
}

const iOSVersion& iOSVersion::v15()
{
    static const iOSVersion version = standing(Member::v15);
    return version;
}

const iOSVersion& iOSVersion::v16()
{
    static const iOSVersion version = standing(Member::v16);
    return version;
}

const iOSVersion& iOSVersion::v17()
{
    static const iOSVersion version = standing(Member::v17);
    return version;
}

const iOSVersion& iOSVersion::member(Member member)
{
    switch (member) {
    case Member::v13:
        return v13();
    case Member::v14:
        return v14();
    case Member::v15:
        return v15();
    case Member::v16:
        return v16();
    case Member::v17:
        return v17();
    }
    platform::preconditionFailure("an iOS version that does not exist");
}

} // namespace introspect
