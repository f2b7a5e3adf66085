// SPDX-License-Identifier: MIT
#include "platform/avfoundation/CMFormatDescription_p.h"
#include "platform/avfoundation/SegmentSound_p.h"
#include "platform/avfoundation/TrackReading_p.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace platform {

namespace {

constexpr std::int64_t chunkSize = 1 << 15;
constexpr int greatestRate = 768'000;
constexpr int greatestChannelCount = 64;

CMAudioFormat formatFor(const AudioSettings& settings, const CMAudioFormat& source)
{
    const bool isFloat = settings.AVLinearPCMIsFloatKey.value_or(false);
    return {.sampleRate = std::round(settings.AVSampleRateKey.value_or(source.sampleRate)),
            .channels = settings.AVNumberOfChannelsKey.value_or(source.channels),
            .bitsPerChannel = settings.AVLinearPCMBitDepthKey.value_or(isFloat ? 32 : 16),
            .isFloat = isFloat,
            .isBigEndian = settings.AVLinearPCMIsBigEndianKey.value_or(false),
            .isNonInterleaved = settings.AVLinearPCMIsNonInterleaved.value_or(false)};
}

CMAudioFormat sourceFormat(const std::vector<MediaSegment>& segments)
{
    for (auto& segment : segments)
        if (!segment.isEmpty() && segment.mediaStream().format->audio())
            return *segment.mediaStream().format->audio();
    return {.sampleRate = 44100, .channels = 2};
}

// The sound of a track's segments, one after the other, gaps filled with silence.
class SoundReading final : public TrackReading {
public:
    SoundReading(TrackExtent extent, const AudioSettings& settings)
        : extent_(std::move(extent))
        , format_(formatFor(settings, sourceFormat(extent_.segments)))
        , description_(CMFormatDescription::linearPCM(format_))
        , total_(lengthOf(extent_))
    {
    }

    Result<std::shared_ptr<const CMSampleBuffer>> next() override
    {
        PCMChunk chunk(format_, std::min(chunkSize, total_ - position_));
        while (chunk.room() > 0 && segment_ < extent_.segments.size())
            TRY(readSegment(chunk));
        if (!endsWithData())
            chunk.appendSilence(chunk.room());
        if (chunk.size() == 0)
            return nullptr;
        auto buffer = std::make_shared<CMSampleBuffer>();
        const auto rate = static_cast<std::int32_t>(format_.sampleRate);
        buffer->formatDescription = description_;
        buffer->presentationTimeStamp = extent_.range.start + CMTime(position_, rate);
        buffer->duration = CMTime(chunk.size(), rate);
        buffer->sampleCount = chunk.size();
        position_ += chunk.size();
        buffer->data = chunk.takeBytes();
        return buffer;
    }

private:
    // A time of the track as a count of samples from the start of the range, rounded once.
    std::int64_t positionOf(const CMTime& time) const
    {
        return ticks(time - extent_.range.start, {1, static_cast<int>(format_.sampleRate)});
    }

    bool endsWithData() const { return total_ == std::numeric_limits<std::int64_t>::max(); }

    std::int64_t lengthOf(const TrackExtent& extent) const
    {
        if (extent.range.duration.isNumeric())
            return positionOf(extent.range.end());
        if (extent.segments.empty())
            return 0;
        return positionOf(extent.segments.back().target.end());
    }

    // Appends what the current segment has for the chunk; goes on to the next when it has been played.
    Result<void> readSegment(PCMChunk& chunk)
    {
        auto& segment = extent_.segments[segment_];
        const auto end = std::min(positionOf(segment.target.end()), total_);
        const auto left = std::max<std::int64_t>(end - position_ - chunk.size(), 0);
        if (left == 0) {
            sound_.reset();
            ++segment_;
            return {};
        }
        const auto count = std::min(left, chunk.room());
        if (segment.isEmpty()) {
            chunk.appendSilence(count);
            return {};
        }
        if (!sound_)
            sound_ = TRY(SegmentSound::open(segment, format_, extent_.stop));
        const auto room = chunk.room();
        chunk.limitRoom(count);
        TRY(sound_->read(chunk));
        if (endsWithData() && chunk.room() > 0)
            ++segment_; // the data have ended, and with them the track
        else
            chunk.appendSilence(chunk.room());
        chunk.limitRoom(room);
        return {};
    }

    const TrackExtent extent_;
    const CMAudioFormat format_;
    const std::shared_ptr<const CMFormatDescription> description_;
    const std::int64_t total_; // sample frames
    std::int64_t position_ = 0;
    std::size_t segment_ = 0;
    std::unique_ptr<SegmentSound> sound_;
};

} // namespace

TrackReading::~TrackReading() = default;

bool isReadable(const AudioSettings& settings)
{
    auto format = formatFor(settings, {.sampleRate = 44100, .channels = 2});
    return settings.AVFormatIDKey == kAudioFormatLinearPCM && pcmCodec(format) != AV_CODEC_ID_NONE
        && format.sampleRate >= 1 && format.sampleRate <= greatestRate && format.channels >= 1
        && format.channels <= greatestChannelCount;
}

std::unique_ptr<TrackReading> makeSoundReading(TrackExtent extent, const AudioSettings& settings)
{
    return std::make_unique<SoundReading>(std::move(extent), settings);
}

} // namespace platform
