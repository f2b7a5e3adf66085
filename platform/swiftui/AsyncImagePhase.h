// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Error.h"
#include "platform/swiftui/Image.h"

#include <optional>
#include <utility>
#include <variant>

namespace platform {

// How far the loading of a picture has come: nothing yet, the picture, or why there is none. A value.
class AsyncImagePhase {
public:
    AsyncImagePhase() = default; // empty
    static AsyncImagePhase empty() { return {}; }
    static AsyncImagePhase success(Image image) { return AsyncImagePhase(State(std::move(image))); }
    static AsyncImagePhase failure(Error error) { return AsyncImagePhase(State(std::move(error))); }

    bool isEmpty() const { return std::holds_alternative<std::monostate>(state_); }
    // Null in the other phases. Valid while this phase lives.
    const Image* image() const { return std::get_if<Image>(&state_); }
    const Error* error() const { return std::get_if<Error>(&state_); }

    bool operator==(const AsyncImagePhase&) const = default;

private:
    using State = std::variant<std::monostate, Image, Error>;
    explicit AsyncImagePhase(State state)
        : state_(std::move(state))
    {
    }

    State state_;
};

} // namespace platform
