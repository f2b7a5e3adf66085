// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIPanGestureRecognizer.h"
#include "platform/uikit/UIScrollView.h"

namespace zelk {

enum class ScrollOnDrag { disabled, enabled };

// Whether dragging scrolls the view; wheel, keys and scroll bars always do. Ends a drag that is under way when it is
// switched off. Main thread only.
inline void enableScrollOnDrag(platform::UIScrollView& scrollView, ScrollOnDrag scrollOnDrag)
{
    scrollView.panGestureRecognizer()->setEnabled(scrollOnDrag == ScrollOnDrag::enabled);
}

} // namespace zelk
