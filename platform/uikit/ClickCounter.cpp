// SPDX-License-Identifier: MIT
#include "platform/uikit/ClickCounter.h"

#include <cmath>

namespace platform {

int ClickCounter::press(UIPointerButton button, CGPoint place, Instant time)
{
    auto continues = count_ > 0 && button == button_ && time - time_ <= interval_
        && std::abs(place.x - place_.x) <= distance_ && std::abs(place.y - place_.y) <= distance_;
    count_ = continues ? count_ + 1 : 1;
    button_ = button;
    place_ = place;
    time_ = time;
    return count_;
}

} // namespace platform
