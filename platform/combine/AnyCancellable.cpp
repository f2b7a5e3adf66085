// SPDX-License-Identifier: MIT
#include "platform/combine/AnyCancellable.h"

#include <utility>

namespace platform {

AnyCancellable::AnyCancellable(std::move_only_function<void()> onCancel)
    : onCancel_(std::move(onCancel))
{
}

AnyCancellable::AnyCancellable(AnyCancellable&& other) noexcept
    : onCancel_(std::exchange(other.onCancel_, nullptr))
{
}

AnyCancellable& AnyCancellable::operator=(AnyCancellable&& other) noexcept
{
    if (this != &other) {
        // Stored first: what ends the earlier subscription may look at this one.
        auto earlier = std::exchange(onCancel_, std::exchange(other.onCancel_, nullptr));
        if (earlier)
            earlier();
    }
    return *this;
}

AnyCancellable::~AnyCancellable()
{
    cancel();
}

void AnyCancellable::cancel()
{
    if (auto onCancel = std::exchange(onCancel_, nullptr))
        onCancel();
}

void AnyCancellable::store(std::vector<AnyCancellable>& subscriptions) &&
{
    subscriptions.push_back(std::move(*this));
}

AnyCancellable::operator bool() const
{
    return static_cast<bool>(onCancel_);
}

} // namespace platform
