// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/OperatingSystemVersion.h"

#include <optional>
#include <string>

namespace platform {

// Facts about the running process and the system that it believes to run on. Any thread.
class ProcessInfo {
public:
    static ProcessInfo& processInfo();

    // The interface level that the port provides: 17.0.0, or what the environment variable
    // ZELK_SYSTEM_VERSION said at first use (a value that is not a version is logged and ignored), or what
    // the innermost living SystemVersionOverride says.
    OperatingSystemVersion operatingSystemVersion() const;
    bool isOperatingSystemAtLeast(OperatingSystemVersion version) const;

    // The file name of the running program.
    std::string processName() const;

private:
    ProcessInfo() = default;
};

// Makes the process believe in another system version for the lifetime of the object; overrides nest.
class SystemVersionOverride {
public:
    explicit SystemVersionOverride(OperatingSystemVersion version);
    ~SystemVersionOverride();
    // Its lifetime is its meaning: a copy would end the override twice.
    SystemVersionOverride(const SystemVersionOverride&) = delete;
    SystemVersionOverride& operator=(const SystemVersionOverride&) = delete;

private:
    std::optional<OperatingSystemVersion> previous_;
};

} // namespace platform
