// SPDX-License-Identifier: MIT
#include "platform/avfoundation/AVAssetReaderTrackOutput.h"

#include "platform/avfoundation/AVAssetReader.h"
#include "platform/avfoundation/AVError.h"
#include "platform/avfoundation/TrackReading_p.h"

#include <algorithm>

namespace platform {

AVAssetReaderOutput::~AVAssetReaderOutput() = default;

AVAssetReaderTrackOutput::AVAssetReaderTrackOutput(std::shared_ptr<AVAssetTrack> track,
                                                   OutputSettings outputSettings)
    : track_(std::move(track))
    , outputSettings_(std::move(outputSettings))
{
}

AVAssetReaderTrackOutput::~AVAssetReaderTrackOutput() = default;

bool AVAssetReaderTrackOutput::settingsFit() const
{
    if (auto* settings = std::get_if<AudioSettings>(&outputSettings_))
        return track_->mediaType() == AVMediaType::audio && isReadable(*settings);
    if (auto* attributes = std::get_if<PixelBufferAttributes>(&outputSettings_))
        return track_->mediaType() == AVMediaType::video && attributes->kCVPixelBufferWidthKey.value_or(1) > 0
            && attributes->kCVPixelBufferHeightKey.value_or(1) > 0;
    return true;
}

Result<void> AVAssetReaderTrackOutput::start(const CMTimeRange& range, const CMTime& end,
                                             std::stop_token stop)
{
    if (track_->hasProtectedContent())
        return failure(AVError::contentIsProtected);
    const bool decodes = !std::holds_alternative<std::monostate>(outputSettings_);
    TrackExtent extent{range, segmentsWithin(track_->mediaSegments(), range), std::move(stop)};
    if (decodes && !extent.segments.empty() && !track_->isDecodable())
        return failure(AVError::decoderNotFound);
    start_ = range.start;
    end_ = range.duration.isNumeric() ? range.end() : end;
    reading_ = makeReading(std::move(extent));
    return {};
}

std::unique_ptr<TrackReading> AVAssetReaderTrackOutput::makeReading(TrackExtent extent)
{
    if (auto* settings = std::get_if<AudioSettings>(&outputSettings_))
        return makeSoundReading(std::move(extent), *settings);
    if (auto* attributes = std::get_if<PixelBufferAttributes>(&outputSettings_))
        return makePictureReading(std::move(extent), *attributes);
    return makeSampleReading(std::move(extent));
}

std::shared_ptr<const CMSampleBuffer> AVAssetReaderTrackOutput::copyNextSampleBuffer()
{
    auto reader = reader_.lock();
    if (!reader || !reading_)
        return nullptr;
    if (reader->status() != AVAssetReaderStatus::reading) {
        reading_.reset(); // closes the file
        return nullptr;
    }
    auto buffer = reading_->next();
    if (!buffer) {
        reader->fail(buffer.error());
        reading_.reset();
        return nullptr;
    }
    if (!*buffer) {
        progress_ = 1;
        reading_.reset();
        reader->outputEnded();
        return nullptr;
    }
    const auto& sample = **buffer;
    const auto done =
        (sample.presentationTimeStamp + sample.duration - start_).seconds() / (end_ - start_).seconds();
    progress_ = std::clamp(done, progress_.load(), 1.0);
    return *std::move(buffer);
}

} // namespace platform
