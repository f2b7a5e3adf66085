// SPDX-License-Identifier: MIT
#include "platform/avfoundation/CMTimeRange.h"

namespace platform {

bool CMTimeRange::containsTime(const CMTime& time) const
{
    return isValid() && time.isNumeric() && time >= start && time < end();
}

bool CMTimeRange::containsTimeRange(const CMTimeRange& other) const
{
    return isValid() && other.isValid() && other.start >= start && other.end() <= end();
}

CMTimeRange CMTimeRange::unionWith(const CMTimeRange& other) const
{
    if (!isValid() || !other.isValid())
        return invalid();
    return fromTimeToTime(CMTimeMinimum(start, other.start), CMTimeMaximum(end(), other.end()));
}

CMTimeRange CMTimeRange::intersection(const CMTimeRange& other) const
{
    if (!isValid() || !other.isValid())
        return invalid();
    auto later = CMTimeMaximum(start, other.start);
    auto sooner = CMTimeMinimum(end(), other.end());
    return later < sooner ? fromTimeToTime(later, sooner) : zero();
}

} // namespace platform
