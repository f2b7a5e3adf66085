// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <queue>
#include <vector>

namespace platform {

// When pictures are to be decoded, from the times at which they are shown, told in order of decoding: those times in
// order of showing, later by as many pictures as may overtake one. Containers that tell no times of decoding need
// them made up; so does a stream that is put together from others.
class DecodeTimes {
public:
    // The most that a decoder can do (ITU-T H.264, A.3.1).
    static constexpr int greatestDepth = 16;

    // `depth`: how many pictures may be decoded before one that is shown before them. `step`: what lies between the first
    // times, in ticks; positive.
    DecodeTimes(int depth, std::int64_t step)
        : depth_(static_cast<std::size_t>(depth))
        , step_(step)
    {
    }

    // The time of decoding of the next picture, later than all before and not later than `shown`. Nothing, and nothing
    // changes, when the picture overtakes more than the depth allows or is shown at the time of another.
    std::optional<std::int64_t> next(std::int64_t shown)
    {
        if (shown <= last_)
            return std::nullopt;
        std::int64_t time = 0;
        if (waiting_.size() < depth_) {
            time = std::min(shown, waiting_.empty() ? shown : waiting_.top());
            time -= static_cast<std::int64_t>(depth_ - waiting_.size()) * step_;
            if (time <= last_)
                return std::nullopt;
            waiting_.push(shown);
        } else {
            waiting_.push(shown);
            time = waiting_.top();
            waiting_.pop();
        }
        last_ = time;
        return time;
    }

private:
    std::size_t depth_;
    std::int64_t step_;
    // Shown later than any time given out, once there are `depth` of them.
    std::priority_queue<std::int64_t, std::vector<std::int64_t>, std::greater<>> waiting_;
    std::int64_t last_ = std::numeric_limits<std::int64_t>::min();
};

} // namespace platform
