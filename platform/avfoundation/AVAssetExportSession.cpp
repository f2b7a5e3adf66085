// SPDX-License-Identifier: MIT
#include "platform/avfoundation/AVAssetExportSession.h"

#include "platform/avfoundation/AVAssetTrack.h"
#include "platform/avfoundation/AVError.h"
#include "platform/avfoundation/ExportPipeline_p.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/foundation/Precondition.h"

#include <algorithm>
#include <deque>
#include <utility>

namespace platform {

namespace {

struct Preset {
    std::string_view name;
    std::optional<CGSize> largestSize;
};
constexpr Preset presets[] = {
    {AVAssetExportPreset1920x1080, CGSize{1920, 1080}},
    {AVAssetExportPreset1280x720, CGSize{1280, 720}},
    {AVAssetExportPreset640x480, CGSize{640, 480}},
    {AVAssetExportPresetPassthrough, std::nullopt},
};

const Preset* presetNamed(std::string_view name)
{
    auto* found = std::ranges::find(presets, name, &Preset::name);
    return found == std::end(presets) ? nullptr : found;
}

// Encoders take much memory and all processors: of a thousand sessions two are at work.
class Turns {
public:
    static Turns& shared()
    {
        static auto& turns = *new Turns; // never destroyed: threads may still run while the process exits
        return turns;
    }
    void take(const void* taker, std::function<void()> run)
    {
        std::unique_lock lock(mutex_);
        waiting_.push_back({taker, std::move(run)});
        start(lock);
    }
    // Whether `taker` was still waiting; then it waits no more.
    bool withdraw(const void* taker)
    {
        std::function<void()> run; // let go of outside the lock
        std::lock_guard lock(mutex_);
        auto found = std::ranges::find(waiting_, taker, &Waiting::taker);
        if (found == waiting_.end())
            return false;
        run = std::move(found->run);
        waiting_.erase(found);
        return true;
    }
    void giveBack()
    {
        std::unique_lock lock(mutex_);
        --running_;
        start(lock);
    }

private:
    static constexpr int most = 2;
    struct Waiting {
        const void* taker;
        std::function<void()> run;
    };

    void start(std::unique_lock<std::mutex>& lock)
    {
        if (running_ == most || waiting_.empty())
            return;
        ++running_;
        auto run = std::move(waiting_.front().run);
        waiting_.pop_front();
        lock.unlock();
        DispatchQueue::make("org.zelk.avfoundation.export")->async(std::move(run));
    }

    std::mutex mutex_;
    std::deque<Waiting> waiting_; // guarded by mutex_
    int running_ = 0;             // guarded by mutex_
};

} // namespace

struct AVAssetExportSession::Key { };

AVAssetExportSession::AVAssetExportSession(const Key&, std::shared_ptr<AVAsset> asset, std::string presetName)
    : asset_(std::move(asset))
    , presetName_(std::move(presetName))
{
}

AVAssetExportSession::~AVAssetExportSession() = default;

std::shared_ptr<AVAssetExportSession> AVAssetExportSession::make(std::shared_ptr<AVAsset> asset,
                                                                 std::string_view presetName)
{
    if (!presetNamed(presetName) || !asset || !asset->isExportable())
        return nullptr;
    return std::make_shared<AVAssetExportSession>(Key{}, std::move(asset), std::string(presetName));
}

void AVAssetExportSession::setTimeRange(const CMTimeRange& range)
{
    precondition(status() == AVAssetExportSessionStatus::unknown,
                 "an export's time range is set before it starts");
    timeRange_ = range;
}

void AVAssetExportSession::setOutputURL(URL url)
{
    precondition(status() == AVAssetExportSessionStatus::unknown, "an export's URL is set before it starts");
    outputURL_ = std::move(url);
}

void AVAssetExportSession::setOutputFileType(AVFileType type)
{
    precondition(status() == AVAssetExportSessionStatus::unknown,
                 "an export's file type is set before it starts");
    fileType_ = type;
}

void AVAssetExportSession::setShouldOptimizeForNetworkUse(bool optimize)
{
    precondition(status() == AVAssetExportSessionStatus::unknown,
                 "where the index goes is set before an export starts");
    optimizesForNetwork_ = optimize;
}

void AVAssetExportSession::setCopiesWherePossible(bool copies)
{
    precondition(status() == AVAssetExportSessionStatus::unknown,
                 "how pictures are made is set before an export starts");
    copiesWherePossible_ = copies;
}

AVAssetExportSessionStatus AVAssetExportSession::status() const
{
    std::lock_guard lock(mutex_);
    return status_;
}

std::optional<Error> AVAssetExportSession::error() const
{
    std::lock_guard lock(mutex_);
    return error_;
}

double AVAssetExportSession::progress() const
{
    std::lock_guard lock(mutex_);
    if (status_ == AVAssetExportSessionStatus::completed)
        return 1;
    return pipeline_ ? pipeline_->progress() : lastProgress_;
}

void AVAssetExportSession::exportAsynchronously(std::function<void()> completion)
{
    precondition(outputURL_.has_value(), "an export has an output URL");
    {
        std::lock_guard lock(mutex_);
        precondition(status_ == AVAssetExportSessionStatus::unknown, "a session exports once");
        status_ = AVAssetExportSessionStatus::waiting;
        completion_ = std::move(completion);
    }
    Turns::shared().take(this, [self = sharedFrom(this)] { self->run(); });
}

void AVAssetExportSession::run()
{
    {
        std::lock_guard lock(mutex_);
        if (!isCancelled_)
            status_ = AVAssetExportSessionStatus::exporting;
    }
    if (status() != AVAssetExportSessionStatus::exporting)
        return end(Error(AVError::operationCancelled));
    auto whole = CMTimeRange(CMTime::zero(), asset_->duration());
    auto range = timeRange_.isValid() ? timeRange_.intersection(whole) : CMTimeRange();
    if (!range.isValid() || range.isEmpty())
        return end(Error(AVError::exportFailed));
    auto pipeline = ExportPipeline::make({.asset = asset_,
                                          .range = range,
                                          .outputURL = *outputURL_,
                                          .fileType = fileType_,
                                          .largestSize = presetNamed(presetName_)->largestSize,
                                          .copiesWherePossible = copiesWherePossible_,
                                          .indexAtFront = optimizesForNetwork_});
    if (!pipeline)
        return end(pipeline.error());
    {
        std::lock_guard lock(mutex_);
        pipeline_ = *pipeline;
        if (isCancelled_)
            pipeline_->cancel();
    }
    (*pipeline)->start(
        [self = sharedFrom(this)](std::optional<Error> error) { self->end(std::move(error)); });
}

void AVAssetExportSession::end(std::optional<Error> error)
{
    std::shared_ptr<ExportPipeline> pipeline; // let go of outside the lock
    {
        std::lock_guard lock(mutex_);
        lastProgress_ = pipeline_ ? pipeline_->progress() : 0;
        pipeline.swap(pipeline_);
    }
    pipeline.reset();
    Turns::shared().giveBack();
    complete(std::move(error));
}

void AVAssetExportSession::complete(std::optional<Error> error)
{
    std::function<void()> completion;
    {
        std::lock_guard lock(mutex_);
        bool isCancelled = error && *error == Error(AVError::operationCancelled);
        status_ = !error  ? AVAssetExportSessionStatus::completed
            : isCancelled ? AVAssetExportSessionStatus::cancelled
                          : AVAssetExportSessionStatus::failed;
        error_ = std::move(error);
        completion = std::exchange(completion_, nullptr);
    }
    if (completion)
        completion();
}

void AVAssetExportSession::cancelExport()
{
    std::shared_ptr<ExportPipeline> pipeline;
    {
        std::lock_guard lock(mutex_);
        isCancelled_ = true;
        pipeline = pipeline_;
    }
    if (pipeline)
        pipeline->cancel();
    else if (Turns::shared().withdraw(this))
        DispatchQueue::make("org.zelk.avfoundation.export")->async([self = sharedFrom(this)] {
            self->complete(Error(AVError::operationCancelled));
        });
}

} // namespace platform
