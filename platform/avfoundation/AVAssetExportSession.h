// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVAsset.h"
#include "platform/avfoundation/AVFileType.h"
#include "platform/avfoundation/CMTimeRange.h"
#include "platform/foundation/URL.h"

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

// What becomes of the media. The pictures of the first three are H.264, fitted into the size that the name says without
// being enlarged, the sound is AAC; the last keeps samples as they are.
inline constexpr std::string_view AVAssetExportPreset1920x1080 = "AVAssetExportPreset1920x1080";
inline constexpr std::string_view AVAssetExportPreset1280x720 = "AVAssetExportPreset1280x720";
inline constexpr std::string_view AVAssetExportPreset640x480 = "AVAssetExportPreset640x480";
inline constexpr std::string_view AVAssetExportPresetPassthrough = "AVAssetExportPresetPassthrough";

// unknown -> waiting -> exporting -> completed | failed | cancelled
enum class AVAssetExportSessionStatus { unknown, waiting, exporting, completed, failed, cancelled };

class ExportPipeline;

// Writes an asset, or a range of it, to a new file: its video and audio tracks, each with its place on the timeline,
// language, rotation and colour tags, and its metadata. Where pictures can be copied as they are, only those are encoded that
// the range's ends make necessary. Set up on one thread; then any thread. At most two sessions of a process export
// at a time, the others wait in the order they were started.
class AVAssetExportSession : public NSObject {
public:
    // Null when there is no such preset, or the asset has nothing to export by it.
    static std::shared_ptr<AVAssetExportSession> make(std::shared_ptr<AVAsset> asset,
                                                      std::string_view presetName);

    const std::shared_ptr<AVAsset>& asset() const { return asset_; }
    const std::string& presetName() const { return presetName_; }

    // The part to export, the whole by default. It is cut to the asset; what is empty or invalid then fails with
    // AVError::exportFailed.
    CMTimeRange timeRange() const { return timeRange_; }
    void setTimeRange(const CMTimeRange& range);
    // Must be a file that does not exist yet.
    const std::optional<URL>& outputURL() const { return outputURL_; }
    void setOutputURL(URL url);
    // QuickTime by default.
    AVFileType outputFileType() const { return fileType_; }
    void setOutputFileType(AVFileType type);
    // Whether the file's index goes to its front; it does by default.
    bool shouldOptimizeForNetworkUse() const { return optimizesForNetwork_; }
    void setShouldOptimizeForNetworkUse(bool optimize);
    // Whether pictures are copied where they can be; they are by default. Without it all are encoded.
    bool copiesWherePossible() const { return copiesWherePossible_; }
    void setCopiesWherePossible(bool copies);

    // Starts, once; `completion` is called once, on a thread of the session's, when status is completed, failed or
    // cancelled. Requires an output URL.
    void exportAsynchronously(std::function<void()> completion);
    // Ends the export soon, also one that waits for its turn. Nothing happens once it has ended, and before it started:
    // then it ends as soon as it starts.
    void cancelExport();

    AVAssetExportSessionStatus status() const;
    // Why the status is failed, and AVError::operationCancelled when it is cancelled. A session that ended so has removed
    // what it wrote.
    std::optional<Error> error() const;
    // From 0 to 1, never back.
    double progress() const;

    struct Key; // only `make` makes sessions
    AVAssetExportSession(const Key&, std::shared_ptr<AVAsset> asset, std::string presetName);
    ~AVAssetExportSession() override;

private:
    // Starts the work when it is this export's turn.
    void run();
    // Gives the turn back.
    void end(std::optional<Error> error);
    void complete(std::optional<Error> error);

    // fixed once the export starts
    const std::shared_ptr<AVAsset> asset_;
    const std::string presetName_;
    CMTimeRange timeRange_{CMTime::zero(), CMTime::positiveInfinity()};
    std::optional<URL> outputURL_;
    AVFileType fileType_ = AVFileType::quickTimeMovie;
    bool optimizesForNetwork_ = true;
    bool copiesWherePossible_ = true;

    // guarded by mutex_
    mutable std::mutex mutex_;
    AVAssetExportSessionStatus status_ = AVAssetExportSessionStatus::unknown;
    std::optional<Error> error_;
    bool isCancelled_ = false;
    std::function<void()> completion_;
    std::shared_ptr<ExportPipeline> pipeline_; // while exporting
    double lastProgress_ = 0;                  // without a pipeline
};

} // namespace platform
