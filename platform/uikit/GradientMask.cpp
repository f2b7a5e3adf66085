// SPDX-License-Identifier: MIT
#include "platform/uikit/GradientMask.h"

#include "platform/uikit/UIView.h"

namespace platform {

FoundGradient gradientOf(UIView& mask)
{
    for (auto* view = &mask;; view = view->subviews().front().get()) {
        if (auto* gradient = dynamic_cast<GradientMask*>(view); gradient && view->subviews().empty())
            return {gradient, view};
        if (view->subviews().size() != 1)
            return {};
    }
}

void maskedContentDidChange(UIView& mask)
{
    if (auto* gradient = dynamic_cast<GradientMask*>(&mask))
        gradient->maskedPicture().contentDidChange();
    // Also one that is not all of the mask now: it may be again.
    for (const auto& subview : mask.subviews())
        maskedContentDidChange(*subview);
}

} // namespace platform
