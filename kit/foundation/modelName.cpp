// SPDX-License-Identifier: MIT
#include "kit/foundation/modelName.h"

#include "kit/foundation/modelNames.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include <sys/utsname.h>

namespace zelk {

namespace {

constexpr std::array<std::string_view, 3> simulators{"i386", "x86_64", "arm64"};

std::string listedName(std::string_view identifier)
{
    auto rows = modelNames();
    auto row = std::ranges::find(rows, identifier, &ModelName::identifier);
    return std::string(row == rows.end() ? identifier : row->name);
}

} // namespace

std::string modelName(std::string_view machine,
                      const std::function<std::optional<std::string>(const char*)>& environment)
{
    if (std::ranges::find(simulators, machine) == simulators.end())
        return listedName(machine);
    return "Simulator " + listedName(environment("SIMULATOR_MODEL_IDENTIFIER").value_or(""));
}

const std::string& modelName()
{
    static const std::string name = [] {
        struct utsname system{};
        ::uname(&system); // leaves an empty name where it fails, which it cannot
        return modelName(system.machine, [](const char* variable) {
            const char* value = std::getenv(variable);
            return value ? std::optional<std::string>(value) : std::nullopt;
        });
    }();
    return name;
}

} // namespace zelk
