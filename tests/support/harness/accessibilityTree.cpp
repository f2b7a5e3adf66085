// SPDX-License-Identifier: MIT
#include "tests/support/harness/accessibilityTree.h"

#include "platform/uikit/UIWindow.h"

namespace harness {

using namespace platform;

namespace {

using Visit = std::function<bool(const std::shared_ptr<UIView>&, int)>;

bool walk(const UIView& view, const UIView* modal, int depth, const Visit& visit)
{
    for (const auto& subview : view.subviews()) {
        const auto properties = subview->accessibilityNow();
        if (subview->isHidden() || properties.isHidden)
            continue;
        if (modal && !subview->isDescendant(*modal) && !modal->isDescendant(*subview))
            continue;
        auto isElement = properties.role != AccessibilityRole::none;
        if (isElement && !visit(subview, depth))
            return false;
        if (!walk(*subview, modal, depth + (isElement ? 1 : 0), visit))
            return false;
    }
    return true;
}

} // namespace

bool forEachElement(const UIView& root, const Visit& visit)
{
    auto window = root.window();
    auto modal = window ? window->modalView() : nullptr;
    return walk(root, modal.get(), 0, visit);
}

} // namespace harness
