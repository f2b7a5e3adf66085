// SPDX-License-Identifier: MIT
#include "platform/avfoundation/AVError.h"
#include "platform/avfoundation/CMFormatDescription_p.h"
#include "platform/avfoundation/MediaDescription_p.h"
#include "platform/avfoundation/TrackReading_p.h"

#include <algorithm>

namespace platform {

namespace {

// A track's samples as they are stored.
class SampleReading final : public TrackReading {
public:
    explicit SampleReading(TrackExtent extent)
        : extent_(std::move(extent))
    {
    }

    Result<std::shared_ptr<const CMSampleBuffer>> next() override
    {
        for (; segment_ < extent_.segments.size(); ++segment_, demuxer_.reset(), format_.reset()) {
            auto& segment = extent_.segments[segment_];
            if (segment.isEmpty())
                continue;
            if (!demuxer_)
                TRY(open(segment));
            if (auto buffer = TRY(nextOf(segment)))
                return buffer;
        }
        return nullptr;
    }

private:
    Result<void> open(const MediaSegment& segment)
    {
        auto& stream = segment.mediaStream();
        if (stream.isProtected)
            return failure(AVError::contentIsProtected);
        demuxer_ = TRY(segment.source->openDemuxer(extent_.stop));
        demuxer_->select({stream.index});
        return demuxer_->seek(stream.index, ticks(segment.sourceStart, timeBase(segment), AV_ROUND_DOWN));
    }

    static AVRational timeBase(const MediaSegment& segment)
    {
        return segment.mediaStream().format->parameters().timeBase;
    }

    Result<std::shared_ptr<const CMSampleBuffer>> nextOf(const MediaSegment& segment)
    {
        // A later sample in decode order is shown no earlier than it is decoded.
        const auto end = ticks(segment.sourceStart + segment.target.duration, timeBase(segment), AV_ROUND_UP);
        std::shared_ptr<AVPacket> packet = makePacket();
        do {
            av_packet_unref(packet.get());
            if (!TRY(demuxer_->read(*packet)))
                return nullptr;
        } while (packet->size == 0);
        const auto decoded = packet->dts != AV_NOPTS_VALUE ? packet->dts : packet->pts;
        const auto shown = packet->pts != AV_NOPTS_VALUE ? packet->pts : packet->dts;
        if (decoded != AV_NOPTS_VALUE && decoded >= end && shown >= end)
            return nullptr;
        return describe(std::move(packet), segment);
    }

    std::shared_ptr<const CMSampleBuffer> describe(std::shared_ptr<AVPacket> packet,
                                                   const MediaSegment& segment)
    {
        auto& stream = segment.mediaStream();
        auto& own = demuxer_->stream(stream.index);
        auto base = timeBase(segment);
        auto shift = segment.target.start - segment.sourceStart;
        auto buffer = std::make_shared<CMSampleBuffer>();
        buffer->formatDescription = noteFormat(*packet, segment);
        buffer->presentationTimeStamp = mediaTime(packet->pts, base) + shift;
        if (packet->dts != packet->pts)
            buffer->decodeTimeStamp = mediaTime(packet->dts, base) + shift;
        buffer->duration = mediaTime(packet->duration, base);
        buffer->isSync = packet->flags & AV_PKT_FLAG_KEY;
        // Pictures that are only there for others to refer to have none of their time on screen.
        auto hidden = packet->flags & AV_PKT_FLAG_DISCARD ? std::max<std::int64_t>(packet->duration, 1)
                                                          : discardedAtStart(*packet, own);
        buffer->trimDurationAtStart = mediaTime(hidden, base);
        buffer->trimDurationAtEnd = mediaTime(discardedAtEnd(*packet, own), base);
        std::span bytes(packet->data, static_cast<std::size_t>(packet->size));
        buffer->data = {std::as_bytes(bytes), std::move(packet)};
        return buffer;
    }

    // What the samples are from this one on.
    const std::shared_ptr<const CMFormatDescription>& noteFormat(const AVPacket& packet,
                                                                 const MediaSegment& segment)
    {
        auto& stated = segment.mediaStream().format;
        std::size_t size = 0;
        auto* data = av_packet_get_side_data(&packet, AV_PKT_DATA_NEW_EXTRADATA, &size);
        if (!format_)
            format_ = stated;
        if (data && size > 0)
            format_ = withExtradata(*stated, {data, size});
        return format_;
    }

    const TrackExtent extent_;
    std::shared_ptr<const CMFormatDescription> format_; // of the segment being read
    std::size_t segment_ = 0;
    std::unique_ptr<MediaDemuxer> demuxer_;
};

} // namespace

std::unique_ptr<TrackReading> makeSampleReading(TrackExtent extent)
{
    return std::make_unique<SampleReading>(std::move(extent));
}

} // namespace platform
