// SPDX-License-Identifier: MIT
#include "platform/avfoundation/MediaSegment_p.h"

namespace platform {

std::vector<MediaSegment> segmentsWithin(const std::vector<MediaSegment>& segments, const CMTimeRange& range)
{
    std::vector<MediaSegment> result;
    for (auto& segment : segments) {
        const bool runsOn = segment.isWholeTrack && range.duration.isPositiveInfinity();
        const auto start = CMTimeMaximum(segment.target.start, range.start);
        const auto end =
            runsOn ? CMTime::positiveInfinity() : CMTimeMinimum(segment.target.end(), range.end());
        if (!(start < end))
            continue;
        auto part = segment;
        if (!part.isEmpty())
            part.sourceStart = segment.sourceStart + (start - segment.target.start);
        part.target = {start, runsOn ? CMTime::positiveInfinity() : end - start};
        part.isWholeTrack = runsOn;
        result.push_back(std::move(part));
    }
    return result;
}

} // namespace platform
