// SPDX-License-Identifier: MIT
#include "bottomsheet/SheetMotion.h"

#include "platform/swiftui/ViewHost.h"
#include "platform/uikit/UIView.h"

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

namespace bottomsheet {

namespace {

const platform::Animation& catching()
{
    static const auto animation = platform::Animation::spring(0.15, 0.86);
    return animation;
}

} // namespace

bool SheetMotion::Node::isInFlight() const
{
    std::vector<std::shared_ptr<platform::UIView>> views;
    appendPlatformViews(views);
    return std::ranges::any_of(views, [](const auto& view) { return view->isAnimating(); });
}

void SheetMotion::Node::updateModifier(const SheetMotion& motion)
{
    auto before = std::exchange(motion_, motion);
    auto isLetGo = before.draggedOffset != 0 && motion.draggedOffset == 0;
    auto animate = [this](const platform::Animation& animation) {
        host().changeTransactionOnce(
            *this, [animation](platform::Transaction& transaction) { transaction.animation = animation; });
    };
    if (before.isPresented != motion.isPresented || before.height != motion.height || isLetGo)
        animate(motion.animation);
    else if (before.draggedOffset != motion.draggedOffset && isInFlight())
        animate(catching());
}

} // namespace bottomsheet
