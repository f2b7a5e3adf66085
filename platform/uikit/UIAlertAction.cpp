// SPDX-License-Identifier: MIT
#include "platform/uikit/UIAlertAction.h"

#include "platform/dispatch/RunLoop.h"

#include <utility>

namespace platform {

UIAlertAction::UIAlertAction(std::string title, UIAlertActionStyle style, Handler handler)
    : title_(std::move(title))
    , style_(style)
    , handler_(std::move(handler))
{
    assertOnMainThread();
}

void UIAlertAction::setEnabled(bool enabled)
{
    assertOnMainThread();
    if (std::exchange(isEnabled_, enabled) != enabled && onChange_)
        onChange_();
}

} // namespace platform
