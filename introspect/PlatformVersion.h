// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>

namespace introspect {

// How a version stands to the running system.
enum class PlatformVersionCondition { past, current, future };

// A version of one platform family. Without a condition it belongs to another platform than the running one.
struct PlatformVersion {
    std::optional<PlatformVersionCondition> condition;

    PlatformVersion() = default;
    explicit PlatformVersion(const std::function<std::optional<PlatformVersionCondition>()>& findCondition)
        : condition(findCondition())
    {
    }

    bool isCurrent() const { return condition == PlatformVersionCondition::current; }
    bool isCurrentOrPast() const { return isCurrent() || condition == PlatformVersionCondition::past; }

    friend bool operator==(const PlatformVersion&, const PlatformVersion&) = default;
};

} // namespace introspect
