// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/Environment.h"
#include "platform/swiftui/EnvironmentValues.h"
#include "platform/swiftui/environment.h"
#include "platform/uikit/ControlLook.h"

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

// The content in what is read on the tint of the surroundings: black or white.
struct OnTint {
    platform::Environment<platform::TintKey> tint{};

    auto dynamicProperties() { return std::tie(tint); }
    template <platform::View Content>
    auto body(const Content& content) const
    {
        return content
            | platform::foregroundColor(
                   platform::legibleColor(tint->value_or(platform::UIColor::systemBlue())));
    }
    bool operator==(const OnTint&) const = default;
};

inline auto onTint()
{
    return OnTint{};
}

} // namespace gallery
