// SPDX-License-Identifier: MIT
#include "platform/foundation/SplitSeconds_p.h"

#include "platform/foundation/Calendar_p.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace platform {

SplitSeconds::SplitSeconds(double seconds)
{
    seconds = std::clamp(seconds, -farthestSecond, farthestSecond);
    auto floor = std::floor(seconds);
    whole_ = static_cast<std::int64_t>(floor);
    if (floor == seconds)
        return;
    auto* begin = digits_.data();
    auto* end = std::to_chars(begin, begin + digits_.size(), std::abs(seconds), std::chars_format::fixed).ptr;
    auto* point = std::find(begin, end, '.');
    size_ = static_cast<std::size_t>(std::copy(std::min(point + 1, end), end, begin) - begin);
    if (seconds > 0 || size_ == 0)
        return;
    // What is missing to the next whole second. The last digit is no zero, so nothing is carried.
    for (std::size_t index = 0; index < size_; ++index)
        begin[index] = static_cast<char>('0' + '9' - begin[index]);
    ++begin[size_ - 1];
}

} // namespace platform
