// SPDX-License-Identifier: MIT
#include "platform/uikit/UIEvent.h"

#include "platform/uikit/UIView.h"

namespace platform {

CGPoint UITouch::location(const UIView& in) const
{
    return in.convertFrom(windowLocation, nullptr);
}

CGPoint UITouch::previousLocation(const UIView& in) const
{
    return in.convertFrom(previousWindowLocation, nullptr);
}

} // namespace platform
