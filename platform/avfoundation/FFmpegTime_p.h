// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/CMTime.h"

extern "C" {
#include <libavutil/avutil.h>
#include <libavutil/rational.h>
}

#include <cstdint>
#include <string>

namespace platform {

// `ticks` of `timeBase` seconds as a media time, exactly where 64 bits allow. AV_NOPTS_VALUE is the invalid time.
CMTime mediaTime(std::int64_t ticks, AVRational timeBase);

// `time` in ticks of `timeBase`. AV_NOPTS_VALUE when it is invalid or indefinite; infinities and what does not fit
// are INT64_MAX and INT64_MIN + 1.
std::int64_t ticks(const CMTime& time, AVRational timeBase, AVRounding rounding = AV_ROUND_NEAR_INF);

} // namespace platform
