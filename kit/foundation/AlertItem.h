// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/alert.h"

#include <concepts>

namespace zelk {

// A value with an identity that carries a ready alert: `alert()` gives it.
template <class Item>
concept AlertItem = platform::Identifiable<Item> && requires(const Item& item) {
    { item.alert() } -> std::convertible_to<platform::Alert>;
};

} // namespace zelk
