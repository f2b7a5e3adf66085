// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

namespace platform {

// A button of a bar, as a value: its place in the bar is its identity.
struct UIBarButtonItem {
    enum class Style {
        plain,
        done, // finishes what the page is about
    };

    std::string title;
    Style style = Style::plain;
    std::function<void()> action; // the target's; the bar's owner calls it on the main thread
    bool isEnabled = true;
};

} // namespace platform
