// SPDX-License-Identifier: MIT
#include "kit/media/toTimeString.h"

#include "platform/foundation/Precondition.h"

namespace zelk {

std::string toTimeString(double seconds, const TimeStringOptions& options)
{
    platform::DateComponentsFormatter formatter;
    formatter.setUnitsStyle(options.unitsStyle);
    formatter.setAllowedUnits(options.allowedUnits);
    formatter.setZeroFormattingBehavior(options.zeroFormattingBehavior);
    auto text = formatter.string(seconds);
    platform::precondition(text.has_value(), "a length of time cannot be written with these units");
    return *std::move(text);
}

} // namespace zelk
