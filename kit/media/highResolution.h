// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/CMTime.h"

namespace zelk {

// The kit's media timescale, in ticks per second: whole ticks for frames of 24, 25, 30 and 60 a second.
constexpr platform::CMTimeScale highResolution()
{
    return 600;
}

// The time nearest to `seconds` at that scale.
inline platform::CMTime highResolution(double seconds)
{
    return platform::CMTime::makeWithSeconds(seconds, highResolution());
}

// `time` as it is when its own scale is that fine or finer; otherwise its seconds at the kit's scale, on the timeline
// of epoch 0. A time of no scale goes through its seconds too: infinities stay, an indefinite time becomes invalid.
inline platform::CMTime highResolution(const platform::CMTime& time)
{
    return time.timescale >= highResolution() ? time : highResolution(time.seconds());
}

} // namespace zelk
