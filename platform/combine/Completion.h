// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Error.h"

#include <optional>
#include <utility>

namespace platform {

// How a stream ended; nothing comes after it.
class Completion {
public:
    static Completion finished() { return Completion(std::nullopt); }
    static Completion failure(Error error) { return Completion(std::move(error)); }

    bool isFinished() const { return !error_; }
    // Null when the stream finished.
    const Error* error() const { return error_ ? &*error_ : nullptr; }

    friend bool operator==(const Completion&, const Completion&) = default;

private:
    explicit Completion(std::optional<Error> error)
        : error_(std::move(error))
    {
    }

    std::optional<Error> error_;
};

} // namespace platform
