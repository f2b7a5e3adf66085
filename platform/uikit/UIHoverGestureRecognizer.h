// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIGestureRecognizer.h"

namespace platform {

// The pointer over a view, no button down: begins when it comes, changes while it moves, ends when it leaves. Takes
// part in no contest with other recognisers.
class UIHoverGestureRecognizer : public UIGestureRecognizer {
public:
    using UIGestureRecognizer::UIGestureRecognizer;
    CGPoint location(const UIView& in) const override;

    // Called by the window.
    void pointerMoved(CGPoint windowLocation);
    void pointerLeft();

private:
    CGPoint windowLocation_;
};

} // namespace platform
