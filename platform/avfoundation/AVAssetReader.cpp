// SPDX-License-Identifier: MIT
#include "platform/avfoundation/AVAssetReader.h"

#include "platform/avfoundation/AVError.h"
#include "platform/avfoundation/TrackReading_p.h"
#include "platform/foundation/Precondition.h"

#include <algorithm>

namespace platform {

struct AVAssetReader::Key { };

Result<std::shared_ptr<AVAssetReader>> AVAssetReader::make(std::shared_ptr<AVAsset> asset)
{
    if (auto error = asset->loadError())
        return failure(*error);
    return std::make_shared<AVAssetReader>(Key{}, std::move(asset));
}

AVAssetReader::AVAssetReader(const Key&, std::shared_ptr<AVAsset> asset)
    : asset_(std::move(asset))
{
}

AVAssetReader::~AVAssetReader() = default;

void AVAssetReader::setTimeRange(const CMTimeRange& range)
{
    precondition(status() == AVAssetReaderStatus::unknown, "a reader's time range is set before it starts");
    timeRange_ = range;
}

bool AVAssetReader::canAdd(const AVAssetReaderOutput& output) const
{
    auto* candidate = dynamic_cast<const AVAssetReaderTrackOutput*>(&output);
    if (status() != AVAssetReaderStatus::unknown || !candidate || !candidate->track() || candidate->isAdded_)
        return false;
    auto tracks = asset_->tracks();
    return std::ranges::find(tracks, candidate->track()) != tracks.end() && candidate->settingsFit();
}

void AVAssetReader::add(std::shared_ptr<AVAssetReaderTrackOutput> output)
{
    precondition(canAdd(*output), "this reader cannot add that output; ask canAdd first");
    output->isAdded_ = true;
    output->reader_ = std::static_pointer_cast<AVAssetReader>(shared_from_this());
    outputs_.push_back(std::move(output));
}

// The part of the range that the asset has.
std::optional<CMTimeRange> AVAssetReader::rangeToRead() const
{
    if (!timeRange_.isValid() || timeRange_.isIndefinite() || timeRange_.start.isPositiveInfinity())
        return std::nullopt;
    const auto start = CMTimeMaximum(timeRange_.start, CMTime::zero());
    if (timeRange_.duration.isPositiveInfinity())
        return CMTimeRange(start, CMTime::positiveInfinity());
    const auto end = CMTimeMinimum(timeRange_.end(), asset_->duration());
    if (!(start < end))
        return std::nullopt;
    return CMTimeRange::fromTimeToTime(start, end);
}

bool AVAssetReader::startReading()
{
    precondition(status() != AVAssetReaderStatus::reading, "a reader starts once");
    if (status() != AVAssetReaderStatus::unknown)
        return false;
    const auto range = rangeToRead();
    if (outputs_.empty() || !range) {
        fail(AVError::operationNotSupportedForAsset);
        return false;
    }
    for (auto& output : outputs_) {
        if (auto started = output->start(*range, asset_->duration(), stop_.get_token()); !started) {
            fail(started.error());
            return false;
        }
    }
    std::lock_guard lock(mutex_);
    if (status_ != AVAssetReaderStatus::unknown)
        return false; // cancelled meanwhile
    status_ = AVAssetReaderStatus::reading;
    return true;
}

void AVAssetReader::cancelReading()
{
    {
        std::lock_guard lock(mutex_);
        if (status_ != AVAssetReaderStatus::reading && status_ != AVAssetReaderStatus::unknown)
            return;
        status_ = AVAssetReaderStatus::cancelled;
    }
    stop_.request_stop();
}

void AVAssetReader::fail(const Error& error)
{
    {
        std::lock_guard lock(mutex_);
        if (status_ != AVAssetReaderStatus::reading && status_ != AVAssetReaderStatus::unknown)
            return; // what a cancellation breaks off is no failure
        status_ = AVAssetReaderStatus::failed;
        error_ = error;
    }
    stop_.request_stop();
}

void AVAssetReader::outputEnded()
{
    std::lock_guard lock(mutex_);
    if (++endedOutputs_ == outputs_.size() && status_ == AVAssetReaderStatus::reading)
        status_ = AVAssetReaderStatus::completed;
}

AVAssetReaderStatus AVAssetReader::status() const
{
    std::lock_guard lock(mutex_);
    return status_;
}

std::optional<Error> AVAssetReader::error() const
{
    std::lock_guard lock(mutex_);
    return error_;
}

double AVAssetReader::progress() const
{
    double sum = 0;
    for (auto& output : outputs_)
        sum += output->progress_;
    return outputs_.empty() ? 0 : sum / static_cast<double>(outputs_.size());
}

} // namespace platform
