// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>
#include <map>
#include <optional>
#include <string>
#include <utility>

namespace tests {

// Variables of the environment for as long as it lives; one of no value is taken away.
class EnvironmentOverride {
public:
    using Values = std::map<std::string, std::optional<std::string>>;

    explicit EnvironmentOverride(const Values& values)
    {
        for (const auto& [name, value] : values) {
            const char* present = std::getenv(name.c_str());
            former_[name] = present ? std::optional<std::string>(present) : std::nullopt;
        }
        set(values);
    }
    EnvironmentOverride(const std::string& name, const std::optional<std::string>& value)
        : EnvironmentOverride(Values{std::pair(name, value)})
    {
    }
    ~EnvironmentOverride() { set(former_); }
    EnvironmentOverride(const EnvironmentOverride&) = delete; // what was before comes back once
    EnvironmentOverride& operator=(const EnvironmentOverride&) = delete;

private:
    static void set(const Values& values)
    {
        for (const auto& [name, value] : values)
            value ? ::setenv(name.c_str(), value->c_str(), 1) : ::unsetenv(name.c_str());
    }
    Values former_;
};

} // namespace tests
