// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace zelk {

// The marketing name of the device that this is: "iPad Air (4th generation)". What the system calls the machine when that
// is in no list, and "Simulator " with what SIMULATOR_MODEL_IDENTIFIER stands for on the processors of desktops. Computed
// once. Any thread.
const std::string& modelName();

// The same for any machine name of a system, and what answers for the environment.
std::string modelName(std::string_view machine,
                      const std::function<std::optional<std::string>(const char*)>& environment);

} // namespace zelk
