// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIView.h"

#include <functional>
#include <memory>

namespace harness {

// Visits the elements below `root` in reading order, with their depth among elements, as the accessibility bus has them:
// nothing hidden, and beside a modal view only what is inside of it. Ends when `visit` returns false.
bool forEachElement(
    const platform::UIView& root,
    const std::function<bool(const std::shared_ptr<platform::UIView>& view, int depth)>& visit);

} // namespace harness
