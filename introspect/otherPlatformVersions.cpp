// SPDX-License-Identifier: MIT
// The families of other systems than the one that the port provides: their versions stand in no relation to it.
#include "introspect/macOSVersion.h"
#include "introspect/tvOSVersion.h"
#include "introspect/visionOSVersion.h"

namespace introspect {

namespace {

std::optional<PlatformVersionCondition> ofAnotherPlatform()
{
    return std::nullopt;
}

} // namespace

const tvOSVersion& tvOSVersion::member(Member)
{
    static const tvOSVersion version(ofAnotherPlatform);
    return version;
}

const macOSVersion& macOSVersion::member(Member)
{
    static const macOSVersion version(ofAnotherPlatform);
    return version;
}

const visionOSVersion& visionOSVersion::member(Member)
{
    static const visionOSVersion version(ofAnotherPlatform);
    return version;
}

} // namespace introspect
