// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/NSError.h"

#include <concepts>
#include <optional>
#include <string>

namespace platform {

// What an error value says for people, in the user's language. Nothing where it says nothing.
struct LocalizedError {
    std::optional<std::string> errorDescription;
    std::optional<std::string> failureReason;
    std::optional<std::string> recoverySuggestion;
    std::optional<std::string> helpAnchor;

    bool operator==(const LocalizedError&) const = default;
};

// An error enumeration conforms by an overload of `localizedError(value)` in its own namespace.
template <class Value>
concept ConformsToLocalizedError = requires(const Value& value) {
    { localizedError(value) } -> std::convertible_to<LocalizedError>;
};

// The error with the texts in its user info, where it has none of its own under their keys.
NSError withTexts(const NSError& error, const LocalizedError& texts);

} // namespace platform
