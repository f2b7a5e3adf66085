// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVAsset.h"
#include "platform/avfoundation/AVAssetReaderTrackOutput.h"
#include "platform/avfoundation/CMTimeRange.h"
#include "platform/foundation/Result.h"

#include <mutex>
#include <stop_token>

namespace platform {

// unknown -> reading -> completed | failed | cancelled, and from unknown to failed or cancelled. The last three are for good.
enum class AVAssetReaderStatus { unknown, reading, completed, failed, cancelled };

// Takes samples out of an asset, in order, once. Each output reads the file on its own, so outputs may be drained at
// any pace and on different threads, and memory does not grow with the file. Setting up (timeRange, add, startReading)
// is one thread's work; cancelReading, status, error and progress may come from any thread.
class AVAssetReader : public NSObject {
public:
    // The asset's own error when it could not be read.
    [[nodiscard]] static Result<std::shared_ptr<AVAssetReader>> make(std::shared_ptr<AVAsset> asset);

    const std::shared_ptr<AVAsset>& asset() const { return asset_; }

    // The part to read; the default, from zero without end, reads all of each track. What lies outside of the asset (before
    // zero, after its duration) is not read. Within it, sound is as long as the range even where a track has none.
    // Set before starting.
    CMTimeRange timeRange() const { return timeRange_; }
    void setTimeRange(const CMTimeRange& range);

    // Whether `output` reads a track of this asset in a form that there is, and belongs to no reader yet. False after
    // reading started.
    bool canAdd(const AVAssetReaderOutput& output) const;
    // Requires canAdd.
    void add(std::shared_ptr<AVAssetReaderTrackOutput> output);
    const std::vector<std::shared_ptr<AVAssetReaderTrackOutput>>& outputs() const { return outputs_; }

    // Whether reading began. False, with status failed and an error, when there is no output, the range is invalid or
    // empty, or a track cannot be decoded. Requires that reading was not started before.
    [[nodiscard]] bool startReading();
    // Ends reading; a copyNextSampleBuffer that is at work on another thread returns soon. Nothing happens when reading
    // has ended already.
    void cancelReading();

    AVAssetReaderStatus status() const;
    // Why the status is failed.
    std::optional<Error> error() const;
    // Of the range, how much has been read, from 0 to 1.
    double progress() const;

    struct Key; // only `make` makes readers
    AVAssetReader(const Key&, std::shared_ptr<AVAsset> asset);
    ~AVAssetReader() override;

private:
    friend class AVAssetReaderTrackOutput;
    std::optional<CMTimeRange> rangeToRead() const;
    void fail(const Error& error);
    void outputEnded();

    // fixed once reading starts
    const std::shared_ptr<AVAsset> asset_;
    CMTimeRange timeRange_{CMTime::zero(), CMTime::positiveInfinity()};
    std::vector<std::shared_ptr<AVAssetReaderTrackOutput>> outputs_;
    std::stop_source stop_;
    // guarded by mutex_
    mutable std::mutex mutex_;
    AVAssetReaderStatus status_ = AVAssetReaderStatus::unknown;
    std::optional<Error> error_;
    std::size_t endedOutputs_ = 0;
};

} // namespace platform
