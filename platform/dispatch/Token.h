// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <utility>

namespace platform {

// What a subscription or scheduled work returns: it ends when the token is cancelled or destroyed. Belongs
// to one owner; the giver says on which threads it may be cancelled.
class [[nodiscard]] Token {
public:
    Token() = default;
    explicit Token(std::move_only_function<void()> onCancel)
        : onCancel_(std::move(onCancel))
    {
    }
    Token(Token&& other) noexcept
        : onCancel_(std::exchange(other.onCancel_, nullptr))
    {
    }
    Token& operator=(Token&& other) noexcept
    {
        if (this != &other) {
            cancel();
            onCancel_ = std::exchange(other.onCancel_, nullptr);
        }
        return *this;
    }
    ~Token() { cancel(); }

    // Does nothing the second time. May be called from the very callback that the token stands for.
    void cancel()
    {
        if (auto onCancel = std::exchange(onCancel_, nullptr))
            onCancel();
    }

    // Whether there is something to cancel. Work that has run meanwhile does not change this.
    explicit operator bool() const { return static_cast<bool>(onCancel_); }

private:
    std::move_only_function<void()> onCancel_;
};

} // namespace platform
