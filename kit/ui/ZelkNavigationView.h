// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/NavigationView.h"

#include <functional>
#include <utility>

namespace zelk {

// Navigation in one column, whatever the window's width.
template <platform::View Content>
struct ZelkNavigationView {
    std::function<Content()> content;

    explicit ZelkNavigationView(std::function<Content()> makeContent)
        : content(std::move(makeContent))
    {
    }

    auto body() const
    {
        return platform::NavigationView{content()}
        | platform::navigationViewStyle(platform::NavigationViewStyle::stack);
    }
};

template <class MakeContent>
ZelkNavigationView(MakeContent) -> ZelkNavigationView<decltype(std::declval<const MakeContent&>()())>;

} // namespace zelk
