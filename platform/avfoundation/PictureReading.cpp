// SPDX-License-Identifier: MIT
#include "platform/avfoundation/FrameReader_p.h"
#include "platform/avfoundation/PictureConverter_p.h"
#include "platform/avfoundation/TrackReading_p.h"

#include <utility>

namespace platform {

namespace {

// A track's decoded pictures, each with the time it is shown and for how long.
class PictureReading final : public TrackReading {
public:
    PictureReading(TrackExtent extent, const PixelBufferAttributes& attributes)
        : extent_(std::move(extent))
        , converter_(attributes)
        , current_(makeFrame())
        , following_(makeFrame())
    {
    }

    Result<std::shared_ptr<const CMSampleBuffer>> next() override
    {
        for (; segment_ < extent_.segments.size(); ++segment_, reader_.reset()) {
            auto& segment = extent_.segments[segment_];
            if (segment.isEmpty())
                continue;
            if (!reader_)
                TRY(open(segment));
            if (auto buffer = TRY(nextOf(segment)))
                return buffer;
        }
        return nullptr;
    }

private:
    Result<void> open(const MediaSegment& segment)
    {
        reader_ = TRY(FrameReader::open(*segment.source, segment.stream, extent_.stop));
        TRY(reader_->seek(ticks(segment.sourceStart, reader_->timeBase(), AV_ROUND_DOWN)));
        hasFollowing_ = TRY(readAhead(INT64_MIN));
        return {};
    }

    // Reads on to a picture later than `time`: one that is not would take the place of another.
    Result<bool> readAhead(std::int64_t time)
    {
        do {
            av_frame_unref(following_.get());
            if (!TRY(reader_->next(*following_)))
                return false;
        } while (following_->pts <= time || following_->width <= 0);
        return true;
    }

    // How long a picture is on screen is known once the one after it is.
    Result<std::shared_ptr<const CMSampleBuffer>> nextOf(const MediaSegment& segment)
    {
        const auto base = reader_->timeBase();
        const auto sourceEnd = segment.sourceStart + segment.target.duration;
        while (hasFollowing_) {
            const auto begin = mediaTime(following_->pts, base);
            if (!(begin < sourceEnd))
                return nullptr;
            std::swap(current_, following_);
            hasFollowing_ = TRY(readAhead(current_->pts));
            const auto ownEnd = mediaTime(current_->pts + current_->pkt_duration, base);
            const auto end = hasFollowing_ ? mediaTime(following_->pts, base) : ownEnd;
            if (end <= segment.sourceStart && (hasFollowing_ || begin < end))
                continue;
            return describe(segment, CMTimeMaximum(begin, segment.sourceStart),
                            CMTimeMinimum(end, sourceEnd));
        }
        return nullptr;
    }

    Result<std::shared_ptr<const CMSampleBuffer>> describe(const MediaSegment& segment, const CMTime& begin,
                                                           const CMTime& end)
    {
        auto buffer = std::make_shared<CMSampleBuffer>();
        buffer->formatDescription = segment.mediaStream().format;
        buffer->presentationTimeStamp = segment.target.start + (begin - segment.sourceStart);
        buffer->duration = CMTimeMaximum(end - begin, CMTime::zero());
        buffer->imageBuffer = TRY(converter_.convert(*current_));
        return buffer;
    }

    const TrackExtent extent_;
    PictureConverter converter_;
    Frame current_;
    Frame following_;
    bool hasFollowing_ = false;
    std::size_t segment_ = 0;
    std::unique_ptr<FrameReader> reader_;
};

} // namespace

std::unique_ptr<TrackReading> makePictureReading(TrackExtent extent, const PixelBufferAttributes& attributes)
{
    return std::make_unique<PictureReading>(std::move(extent), attributes);
}

} // namespace platform
