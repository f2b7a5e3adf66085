// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/LocalizedError.h"
#include "platform/foundation/NSError.h"

#include <any>
#include <concepts>
#include <optional>
#include <type_traits>
#include <utility>

namespace platform {

// An error enumeration becomes an Error by an overload of `nsError(value)` in its own namespace.
template <class Value>
concept BridgesToNSError = requires(const Value& value) {
    { nsError(value) } -> std::convertible_to<NSError>;
};

// Any error value. It keeps the value it was made from, so a caller that knows the type can ask for it,
// and bridges to an NSError, so every caller can classify and show it. Copied freely.
class Error {
public:
    Error(NSError error)
        : bridged_(std::move(error))
    {
    }

    template <BridgesToNSError Value>
        requires(!std::same_as<Value, NSError> && !std::same_as<Value, Error>)
    Error(Value value)
        : bridged_(nsError(value))
    {
        if constexpr (ConformsToLocalizedError<Value>) {
            localized_ = localizedError(value);
            bridged_ = withTexts(bridged_, *localized_);
        }
        value_ = std::move(value);
    }

    // The enumeration value that this error was made from; null when it was made from something else.
    template <class Value>
    const Value* as() const
    {
        return std::any_cast<Value>(&value_);
    }

    // What the value that this error was made from says for people; nothing when its type says nothing.
    const std::optional<LocalizedError>& localized() const { return localized_; }

    const NSError& bridged() const { return bridged_; }
    std::string localizedDescription() const { return bridged_.localizedDescription(); }

    friend bool operator==(const Error& a, const Error& b) { return a.bridged_ == b.bridged_; }

private:
    NSError bridged_;
    std::optional<LocalizedError> localized_;
    std::any value_;
};

// The platform's conversion of whatever was thrown to the NSError handed to its callers.
inline const NSError& _convertErrorToNSError(const Error& error)
{
    return error.bridged();
}

} // namespace platform
