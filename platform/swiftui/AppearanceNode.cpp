// SPDX-License-Identifier: MIT
#include "platform/swiftui/AppearanceNode.h"

#include <utility>

namespace platform {

AppearanceNode::AppearanceNode(const NodeContext& context)
    : ModifierNode(context)
{
    host().addAppearanceNode(*this);
    waitForAppearance();
}

AppearanceNode::~AppearanceNode()
{
    host().removeAppearanceNode(*this);
    if (hasAppeared_ && onDisappear_)
        host().performAfterFlush(std::move(onDisappear_));
}

void AppearanceNode::waitForAppearance()
{
    host().performAfterAppearing(*this, [this] {
        hasAppeared_ = true;
        if (auto action = onAppear_)
            action();
    });
}

void AppearanceNode::hostWillAppear()
{
    if (!hasAppeared_)
        waitForAppearance();
}

void AppearanceNode::hostDidDisappear()
{
    if (!std::exchange(hasAppeared_, false))
        return;
    if (auto action = onDisappear_)
        action();
}

} // namespace platform
