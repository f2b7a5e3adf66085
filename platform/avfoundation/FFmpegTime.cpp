// SPDX-License-Identifier: MIT
#include "platform/avfoundation/FFmpegTime_p.h"

#include <limits>

extern "C" {
#include <libavutil/mathematics.h>
}

namespace platform {

CMTime mediaTime(std::int64_t ticks, AVRational timeBase)
{
    if (ticks == AV_NOPTS_VALUE || timeBase.num <= 0 || timeBase.den <= 0)
        return CMTime::invalid();
    std::int64_t value = 0;
    if (!__builtin_mul_overflow(ticks, static_cast<std::int64_t>(timeBase.num), &value))
        return {value, timeBase.den};
    return ticks < 0 ? CMTime::negativeInfinity() : CMTime::positiveInfinity();
}

std::int64_t ticks(const CMTime& time, AVRational timeBase, AVRounding rounding)
{
    constexpr auto greatest = std::numeric_limits<std::int64_t>::max();
    if (time.isPositiveInfinity())
        return greatest;
    if (time.isNegativeInfinity())
        return -greatest;
    if (!time.isNumeric() || timeBase.num <= 0 || timeBase.den <= 0)
        return AV_NOPTS_VALUE;
    auto result = av_rescale_q_rnd(time.value, {1, time.timescale}, timeBase, rounding);
    if (result == AV_NOPTS_VALUE) // does not fit
        return time.value < 0 ? -greatest : greatest;
    return result;
}

} // namespace platform
