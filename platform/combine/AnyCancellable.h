// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <vector>

namespace platform {

// A subscription: it ends when this is cancelled or destroyed. Cancel it where its values arrive.
class [[nodiscard]] AnyCancellable {
public:
    AnyCancellable() = default;
    explicit AnyCancellable(std::move_only_function<void()> onCancel);
    AnyCancellable(AnyCancellable&& other) noexcept;
    AnyCancellable& operator=(AnyCancellable&& other) noexcept;
    ~AnyCancellable();

    // No value or completion arrives afterwards. Does nothing the second time. May be called from the
    // handler of a value.
    void cancel();

    // Keeps the subscription as long as `subscriptions` does.
    void store(std::vector<AnyCancellable>& subscriptions) &&;

    // Whether there is something to cancel. The end of the stream does not change this.
    explicit operator bool() const;

private:
    std::move_only_function<void()> onCancel_;
};

} // namespace platform
