// SPDX-License-Identifier: MIT
#include "platform/swiftui/PreferredColorSchemes.h"

#include "platform/swiftui/ViewNode.h"

#include <algorithm>

namespace platform {

std::optional<ColorScheme> PreferredColorSchemes::preferred() const
{
    const Wish* outermost = nullptr;
    for (const auto& wish : wishes_) {
        if (wish.scheme && (!outermost || wish.node->depth() < outermost->node->depth()))
            outermost = &wish;
    }
    return outermost ? outermost->scheme : std::nullopt;
}

void PreferredColorSchemes::set(const ViewNode& node, std::optional<ColorScheme> scheme)
{
    change([&] {
        auto wish = std::ranges::find(wishes_, &node, &Wish::node);
        if (wish == wishes_.end())
            wishes_.push_back({&node, scheme});
        else
            wish->scheme = scheme;
    });
}

void PreferredColorSchemes::remove(const ViewNode& node)
{
    change([&] { std::erase_if(wishes_, [&](const auto& wish) { return wish.node == &node; }); });
}

void PreferredColorSchemes::change(const std::function<void()>& change)
{
    auto before = preferred();
    change();
    if (preferred() != before && onChange)
        onChange();
}

} // namespace platform
