// SPDX-License-Identifier: MIT
#include "platform/foundation/ProcessInfo.h"

#include "platform/foundation/Logger.h"

#include <cerrno>
#include <cstdlib>
#include <mutex>
#include <optional>
#include <utility>

namespace platform {

namespace {

constexpr OperatingSystemVersion providedVersion = {17, 0, 0};

OperatingSystemVersion versionAtStart()
{
    const char* wanted = std::getenv("ZELK_SYSTEM_VERSION");
    if (!wanted || !*wanted)
        return providedVersion;
    if (auto version = OperatingSystemVersion::parse(wanted))
        return *version;
    Logger("org.zelk.platform", "process")
        .error("ZELK_SYSTEM_VERSION is \"" + std::string(wanted) + "\", which is not a version; use one like "
               + providedVersion.string());
    return providedVersion;
}

struct OverriddenVersion {
    std::mutex mutex;
    std::optional<OperatingSystemVersion> version;
};

OverriddenVersion& overridden()
{
    static OverriddenVersion instance;
    return instance;
}

} // namespace

ProcessInfo& ProcessInfo::processInfo()
{
    static ProcessInfo instance;
    return instance;
}

OperatingSystemVersion ProcessInfo::operatingSystemVersion() const
{
    {
        std::lock_guard lock(overridden().mutex);
        if (overridden().version)
            return *overridden().version;
    }
    static const OperatingSystemVersion atStart = versionAtStart();
    return atStart;
}

bool ProcessInfo::isOperatingSystemAtLeast(OperatingSystemVersion version) const
{
    return operatingSystemVersion() >= version;
}

std::string ProcessInfo::processName() const
{
    std::string_view name = program_invocation_short_name;
    return std::string(name);
}

SystemVersionOverride::SystemVersionOverride(OperatingSystemVersion version)
{
    std::lock_guard lock(overridden().mutex);
    previous_ = std::exchange(overridden().version, version);
}

SystemVersionOverride::~SystemVersionOverride()
{
    std::lock_guard lock(overridden().mutex);
    overridden().version = previous_;
}

} // namespace platform
