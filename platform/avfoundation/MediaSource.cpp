// SPDX-License-Identifier: MIT
#include "platform/avfoundation/MediaSource_p.h"

#include "platform/avfoundation/CMFormatDescription_p.h"
#include "platform/avfoundation/FFmpegError_p.h"
#include "platform/avfoundation/MediaDescription_p.h"

#include <algorithm>
#include <atomic>

namespace platform {

namespace {

// A demuxer holds the file open. Assets that nobody reads from must not use up the process's descriptors.
constexpr int greatestKeptCount = 32;
std::atomic<int> keptCount = 0;

// Estimated durations of small files are not worth being wrong.
constexpr std::int64_t smallFile = 32 << 20;

bool needsScan(const MediaDemuxer& demuxer, PreciseTiming precise)
{
    auto& format = demuxer.format();
    // A recording that was never finished, and a header that promises more than fits the file: no codec gets by with
    // less than 512 bits a second. A movie's tables need no promise.
    if (format.duration <= 0
        || (!demuxer.isMovie() && format.duration / AV_TIME_BASE > demuxer.identity().size / 64 + 60))
        return true;
    const bool isEstimate = format.duration_estimation_method != AVFMT_DURATION_FROM_STREAM;
    if (isEstimate && demuxer.identity().size <= smallFile)
        return true;
    // The header of an MP3 file counts the encoder's padding.
    return precise == PreciseTiming::yes && (isEstimate || std::string_view(format.iformat->name) == "mp3");
}

// Reads all packets and takes the tracks' ranges from their times.
void scan(MediaDemuxer& demuxer, std::vector<MediaStream>& streams)
{
    std::vector<std::pair<std::int64_t, std::int64_t>> extents(greatestStreamCount, {INT64_MAX, INT64_MIN});
    auto packet = makePacket();
    // What can be read of a damaged file is what it holds.
    while (demuxer.read(*packet).value_or(false)) {
        auto& [first, last] = extents[static_cast<std::size_t>(packet->stream_index)];
        auto& stream = demuxer.stream(packet->stream_index);
        std::int64_t end = 0;
        if (packet->pts != AV_NOPTS_VALUE && !__builtin_add_overflow(packet->pts, packet->duration, &end)) {
            first = std::min(first, packet->pts);
            last = std::max(last, end - discardedAtEnd(*packet, stream));
        }
        av_packet_unref(packet.get());
    }
    for (auto& stream : streams) {
        auto [first, last] = extents[static_cast<std::size_t>(stream.index)];
        auto base = demuxer.stream(stream.index).time_base;
        if (first < last && last > 0)
            stream.timeRange = CMTimeRange::fromTimeToTime(mediaTime(std::max<std::int64_t>(first, 0), base),
                                                           mediaTime(last, base));
    }
}

} // namespace

struct MediaSource::Key { };

Result<std::shared_ptr<const MediaSource>> MediaSource::open(const std::string& path, PreciseTiming precise)
{
    auto demuxer = TRY(MediaDemuxer::open(path, {}));
    auto source = std::make_shared<MediaSource>(Key{}, path);
    source->identity_ = demuxer->identity();
    source->metadata_ = describeMetadata(demuxer->format());
    source->streams_ = describeStreams(*demuxer);
    if (source->streams_.empty())
        return failure(AVError::fileFormatNotRecognized);
    if (needsScan(*demuxer, precise)) {
        scan(*demuxer, source->streams_);
        demuxer.reset();
    }
    source->duration_ = CMTime::zero();
    for (auto& stream : source->streams_)
        source->duration_ = CMTimeMaximum(source->duration_, stream.timeRange.end());
    if (demuxer)
        source->keepDemuxer(std::move(demuxer));
    return source;
}

MediaSource::MediaSource(const Key&, std::string path)
    : path_(std::move(path))
{
}

MediaSource::~MediaSource()
{
    if (demuxer_)
        --keptCount;
}

void MediaSource::keepDemuxer(std::unique_ptr<MediaDemuxer> demuxer)
{
    if (++keptCount > greatestKeptCount)
        --keptCount;
    else
        demuxer_ = std::move(demuxer);
}

Result<std::unique_ptr<MediaDemuxer>> MediaSource::openDemuxer(std::stop_token stop) const
{
    {
        std::lock_guard lock(mutex_);
        if (demuxer_) {
            --keptCount;
            demuxer_->setStopToken(std::move(stop));
            return std::move(demuxer_);
        }
    }
    auto demuxer = TRY(MediaDemuxer::open(path_, std::move(stop)));
    if (!(demuxer->identity() == identity_))
        return failure(nsError(AVError::invalidSourceMedia,
                               {{std::string(NSLocalizedFailureReasonErrorKey), "The file has changed"}}));
    return demuxer;
}

} // namespace platform
