// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/CMTime.h"

namespace platform {

// A span of a medium: from `start`, which is inside, to its end, which is not. A value. Any thread.
struct CMTimeRange {
    CMTime start;
    CMTime duration;

    constexpr CMTimeRange() = default; // invalid
    constexpr CMTimeRange(CMTime rangeStart, CMTime rangeDuration)
        : start(rangeStart)
        , duration(rangeDuration)
    {
    }
    // Invalid when `end` is before `start` or on another timeline.
    static CMTimeRange fromTimeToTime(const CMTime& start, const CMTime& end) { return {start, end - start}; }

    static constexpr CMTimeRange invalid() { return {}; }
    static constexpr CMTimeRange zero() { return {CMTime::zero(), CMTime::zero()}; }

    // Both times are valid, and the duration is a span that is not negative.
    bool isValid() const
    {
        return start.isValid() && duration.isValid() && duration.epoch == 0 && !(duration < CMTime::zero());
    }
    bool isIndefinite() const { return isValid() && (start.isIndefinite() || duration.isIndefinite()); }
    bool isEmpty() const { return isValid() && duration == CMTime::zero(); }

    CMTime end() const { return start + duration; }

    // Nothing is inside an invalid range, and no time that is not a number inside any. A range contains the empty ones
    // within its bounds, ends included, and itself.
    bool containsTime(const CMTime& time) const;
    bool containsTimeRange(const CMTimeRange& other) const;

    // From the earlier start to the later end, whatever lies between. Invalid when one of the two is.
    CMTimeRange unionWith(const CMTimeRange& other) const;
    // Zero when the two share no time; invalid when one of them is.
    CMTimeRange intersection(const CMTimeRange& other) const;

    // Equal times at other timescales make an equal range.
    bool operator==(const CMTimeRange&) const = default;
};

} // namespace platform

template <>
struct std::hash<platform::CMTimeRange> {
    std::size_t operator()(const platform::CMTimeRange& range) const noexcept
    {
        std::hash<platform::CMTime> hashOfTime;
        return hashOfTime(range.start) * 31 ^ hashOfTime(range.duration);
    }
};
