// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Error.h"

#include <optional>
#include <string>

namespace zelk {

// Gives any error a description for people. An error value itself: what it holds is not looked at when it is classified.
struct LocalizedErrorWrapper {
    platform::Error error;

    // What the error says of itself where its type says something, which may be nothing; else its description.
    std::optional<std::string> errorDescription() const;
};

// Only the description is its own.
platform::LocalizedError localizedError(const LocalizedErrorWrapper& wrapper);
// A domain named after the type, as for every error value without one.
platform::NSError nsError(const LocalizedErrorWrapper& wrapper);

// Wraps the platform error that `error` bridges to.
LocalizedErrorWrapper asLocalized(const platform::Error& error);

} // namespace zelk
