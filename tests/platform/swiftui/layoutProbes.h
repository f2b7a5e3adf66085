// SPDX-License-Identifier: MIT
#pragma once

#include "tests/platform/swiftui/probes.h"
#include "tests/support/harness/ViewHarness.h"

#include <sstream>
#include <string>

namespace probes {

// The place of each named view that a description has in a window, "name x y width height" one after the other.
template <platform::View Root>
std::string layoutOf(Root root, platform::CGSize size, const platform::UITraitCollection& traits = {})
{
    auto controller = host(std::move(root));
    harness::ViewHarness harness(size, traits);
    harness.show(controller);
    std::ostringstream text;
    for (auto& view : controller->view()->subviews()) {
        auto frame = view->frame();
        text << (text.tellp() > 0 ? ", " : "") << view->accessibility().identifier << ' ' << frame.minX()
             << ' ' << frame.minY() << ' ' << frame.width() << ' ' << frame.height();
    }
    return text.str();
}

inline platform::UITraitCollection rightToLeft()
{
    return {.layoutDirection = platform::UIUserInterfaceLayoutDirection::rightToLeft};
}

} // namespace probes
