// SPDX-License-Identifier: MIT
#include "platform/avfoundation/AVMutableCompositionTrack.h"

#include "platform/avfoundation/AVError.h"
#include "platform/avfoundation/MediaSegment_p.h"

#include <algorithm>

namespace platform {

namespace {

using Segments = std::vector<MediaSegment>;

CMTime endOf(const Segments& segments)
{
    return segments.empty() ? CMTime::zero() : segments.back().target.end();
}

// Cuts the segment that `time` lies within. The number of the segment that begins there; as many as there are at the end.
std::ptrdiff_t cut(Segments& segments, const CMTime& time)
{
    auto place = std::ranges::find_if(segments, [&](auto& segment) { return time < segment.target.end(); });
    const auto number = place - segments.begin();
    if (place == segments.end() || !(place->target.start < time))
        return number;
    auto tail = *place;
    place->target.duration = time - place->target.start;
    if (!tail.isEmpty())
        tail.sourceStart += place->target.duration;
    tail.target = CMTimeRange::fromTimeToTime(time, tail.target.end());
    segments.insert(place + 1, std::move(tail));
    return number + 1;
}

void shiftFrom(Segments& segments, std::ptrdiff_t number, const CMTime& by)
{
    for (auto segment = segments.begin() + number; segment != segments.end(); ++segment)
        segment->target.start += by;
}

void dropEmptyEnd(Segments& segments)
{
    while (!segments.empty() && segments.back().isEmpty())
        segments.pop_back();
}

// The part of `range` from zero to the end of the track's media.
Result<CMTimeRange> clamped(const CMTimeRange& range, const CMTime& end)
{
    if (!range.isValid() || !range.start.isNumeric())
        return failure(AVError::invalidCompositionTrackSegmentSourceStartTime);
    if (range.isEmpty() || range.duration.isIndefinite())
        return failure(AVError::invalidCompositionTrackSegmentSourceDuration);
    if (!(range.start < end))
        return failure(AVError::invalidCompositionTrackSegmentSourceStartTime);
    auto first = CMTimeMaximum(range.start, CMTime::zero());
    auto last = CMTimeMinimum(range.end(), end);
    if (!(first < last))
        return failure(AVError::invalidCompositionTrackSegmentSourceDuration);
    return CMTimeRange::fromTimeToTime(first, last);
}

} // namespace

Result<void> AVMutableCompositionTrack::insertTimeRange(const CMTimeRange& range, const AVAssetTrack& track,
                                                        const CMTime& at)
{
    if (track.mediaType() != mediaType())
        return failure(AVError::operationNotSupportedForAsset);
    if (at.isValid() && (!at.isNumeric() || at < CMTime::zero()))
        return failure(AVError::invalidCompositionTrackSegmentDuration);
    const auto source = TRY(clamped(range, track.timeRange().end()));
    auto pieces = segmentsWithin(track.mediaSegments(), source);
    const auto start = at.isValid() ? at : endOf(segments_);
    for (auto& piece : pieces) {
        piece.target.start = start + (piece.target.start - source.start);
        piece.isWholeTrack = false;
    }
    if (endOf(segments_) < start)
        segments_.push_back({.target = CMTimeRange::fromTimeToTime(endOf(segments_), start)});
    const auto number = cut(segments_, start);
    shiftFrom(segments_, number, source.duration);
    segments_.insert(segments_.begin() + number, std::make_move_iterator(pieces.begin()),
                     std::make_move_iterator(pieces.end()));
    dropEmptyEnd(segments_);
    return {};
}

void AVMutableCompositionTrack::insertEmptyTimeRange(const CMTimeRange& range)
{
    if (!range.isValid() || !range.start.isNumeric() || !range.duration.isNumeric() || range.isEmpty()
        || range.start < CMTime::zero() || !(range.start < endOf(segments_)))
        return;
    const auto number = cut(segments_, range.start);
    shiftFrom(segments_, number, range.duration);
    segments_.insert(segments_.begin() + number, {.target = range});
}

void AVMutableCompositionTrack::removeTimeRange(const CMTimeRange& range)
{
    if (!range.isValid() || !range.start.isNumeric())
        return;
    auto start = CMTimeMaximum(range.start, CMTime::zero());
    auto end = CMTimeMinimum(range.end(), endOf(segments_));
    if (!(start < end))
        return;
    const auto first = cut(segments_, start);
    const auto last = cut(segments_, end);
    segments_.erase(segments_.begin() + first, segments_.begin() + last);
    shiftFrom(segments_, first, start - end);
    dropEmptyEnd(segments_);
}

} // namespace platform
