// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Bundle.h"

#include <optional>
#include <string>
#include <string_view>

namespace zelk {

// What a bundle's information dictionary says of the program. Any thread.

std::optional<std::string> bundleID(const platform::Bundle& bundle);
// The version that people are told: "1.4.2". "<null>" when it is missing or not text.
std::string appVersion(const platform::Bundle& bundle);
// The build number: "837". "<null>" when it is missing or not text.
std::string bundleVersion(const platform::Bundle& bundle);
// The name that people are shown.
std::string displayName(const platform::Bundle& bundle, std::string_view fallback);
// "1.4.2 (837)"; nothing when there is no version for people.
std::optional<std::string> versionIdentifier(const platform::Bundle& bundle = *platform::Bundle::main());

} // namespace zelk
