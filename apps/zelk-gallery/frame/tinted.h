// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/Environment.h"
#include "platform/swiftui/EnvironmentValues.h"
#include "platform/swiftui/environment.h"

namespace gallery {

// The content, its shapes, texts and symbols, in the tint of the surroundings.
struct Tinted {
    platform::Environment<platform::TintKey> tint{};

    auto dynamicProperties() { return std::tie(tint); }
    template <platform::View Content>
    auto body(const Content& content) const
    {
        return content | platform::foregroundColor(*tint);
    }
    bool operator==(const Tinted&) const = default;
};

inline auto tinted()
{
    return Tinted{};
}

} // namespace gallery
