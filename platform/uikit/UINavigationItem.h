// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIBarButtonItem.h"

#include <optional>
#include <string>

namespace platform {

// What a page has in the bar above it, as a value. Left is where reading begins.
struct UINavigationItem {
    std::string title;
    std::optional<UIBarButtonItem> leftBarButtonItem;
    std::optional<UIBarButtonItem> rightBarButtonItem;
};

} // namespace platform
