// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVAssetWriterInput.h"
#include "platform/avfoundation/AVFileType.h"
#include "platform/avfoundation/AVMetadataItem.h"
#include "platform/avfoundation/CMTime.h"
#include "platform/foundation/Result.h"
#include "platform/foundation/URL.h"

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <shared_mutex>
#include <vector>

namespace platform {

class MediaMuxer;

// unknown -> writing -> completed | failed | cancelled, and from unknown to failed or cancelled. The last three are for good.
enum class AVAssetWriterStatus { unknown, writing, completed, failed, cancelled };

// Writes a new media file. Setting up (properties, add, startWriting, startSession) is one thread's work; then each input
// has its own rules, and the rest may come from any thread. The file is written where it is to be: what a failure or
// letting the writer go leaves behind stays, what cancelWriting ends is removed.
class AVAssetWriter : public NSObject {
public:
    // NSCocoaError::fileWriteUnsupportedScheme when `outputURL` is no file. Touches nothing yet.
    [[nodiscard]] static Result<std::shared_ptr<AVAssetWriter>> make(URL outputURL, AVFileType fileType);

    const URL& outputURL() const { return outputURL_; }
    AVFileType outputFileType() const { return fileType_; }

    // Whether a movie's index goes to its front, so that it plays before it is loaded. Needs the media to be moved
    // once when writing finishes. Before writing starts.
    bool shouldOptimizeForNetworkUse() const { return optimizesForNetwork_; }
    void setShouldOptimizeForNetworkUse(bool optimize);
    // Of the common keys those that the file type has a place for. Before writing starts.
    const std::vector<AVMetadataItem>& metadata() const { return metadata_; }
    void setMetadata(std::vector<AVMetadataItem> items);

    // Whether the file type takes such a track, one more of them, and there is an encoder. False once writing started.
    bool canAdd(const AVAssetWriterInput& input) const;
    // Requires canAdd, and that the input belongs to no writer.
    void add(std::shared_ptr<AVAssetWriterInput> input);
    const std::vector<std::shared_ptr<AVAssetWriterInput>>& inputs() const { return inputs_; }

    // Makes the file. False, with status failed and an error, when there is one already (AVError::fileAlreadyExists), it
    // cannot be made, or there is no input. Requires status unknown.
    [[nodiscard]] bool startWriting();
    // The moment of the samples' times that is the file's time zero. Sound before it is cut, pictures before it are hidden by
    // the movie's edit list. Files without times of their own (WAVE) begin with the first sample that is not cut. Requires
    // that writing started; once.
    void startSession(const CMTime& sourceTime);
    // Sound and pictures from that moment on are left out. Optional; before finishWriting.
    void endSession(const CMTime& sourceTime);

    // Marks all inputs as finished, completes the file on a thread of the writer's, and calls `completion` there when status
    // is completed or failed. When the writer has ended already, `completion` is called all the same.
    void finishWriting(std::function<void()> completion);
    // Ends writing and removes the file. An append that is at work ends first. Nothing happens when writing has ended.
    void cancelWriting();

    AVAssetWriterStatus status() const;
    // Why the status is failed.
    std::optional<Error> error() const;

    struct Key; // only `make` makes writers
    AVAssetWriter(const Key&, URL outputURL, AVFileType fileType);
    ~AVAssetWriter() override;

private:
    friend class AVAssetWriterInput;
    void fail(const Error& error);
    bool appendTo(AVAssetWriterInput& input, const CMSampleBuffer& sample);
    void finish(AVAssetWriterInput& input);
    bool isReady(const AVAssetWriterInput& input) const;
    // Flushes the tracks and closes the file.
    Result<void> complete();
    void complete(const std::function<void()>& completion);
    // Lets the inputs that became ready ask for samples.
    void pumpInputs();

    // fixed once writing starts
    const URL outputURL_;
    const AVFileType fileType_;
    bool optimizesForNetwork_ = false;
    std::vector<AVMetadataItem> metadata_;
    std::vector<std::shared_ptr<AVAssetWriterInput>> inputs_;
    std::unique_ptr<MediaMuxer> muxer_;

    // Shared by appends at work; whoever ends the file takes it alone. Before mutex_.
    std::shared_mutex appending_;

    // guarded by mutex_
    mutable std::mutex mutex_;
    AVAssetWriterStatus status_ = AVAssetWriterStatus::unknown;
    std::optional<Error> error_;
    CMTime sessionStart_; // invalid before the session
    CMTime sessionEnd_ = CMTime::positiveInfinity();
    bool isFinishing_ = false;
};

} // namespace platform
