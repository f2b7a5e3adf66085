// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVAssetReader.h"
#include "platform/avfoundation/AVAssetWriter.h"
#include "platform/graphics/Geometry.h"

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace platform {

// What is to be made of an asset.
struct ExportPlan {
    std::shared_ptr<AVAsset> asset;
    CMTimeRange range; // within the asset
    URL outputURL;
    AVFileType fileType;
    // Pictures are fitted into it. Absent: samples are kept as they are.
    std::optional<CGSize> largestSize;
    bool copiesWherePossible;
    bool indexAtFront;
};

// Reads an asset's tracks and feeds them to a writer, each on a queue of its own. Any thread.
class ExportPipeline : public std::enable_shared_from_this<ExportPipeline> {
public:
    static Result<std::shared_ptr<ExportPipeline>> make(const ExportPlan& plan);

    // `completion` is called once, with nothing when the file is complete. What was written is removed otherwise.
    void start(std::function<void(std::optional<Error>)> completion);
    // `completion` gets AVError::operationCancelled, unless the end came first.
    void cancel();
    double progress() const;

    struct Key; // only `make` makes pipelines
    ExportPipeline(const Key&, std::shared_ptr<AVAssetReader> reader, std::shared_ptr<AVAssetWriter> writer,
                   CMTimeRange range);

private:
    struct Pipe {
        std::shared_ptr<AVAssetReaderOutput> output;
        std::shared_ptr<AVAssetWriterInput> input;
        bool isDone = false; // guarded by mutex_
    };

    Result<void> addTracks(const ExportPlan& plan);
    void feed(std::size_t pipe);
    void pipeEnded(std::size_t pipe);
    void finish();
    void complete(std::optional<Error> error);

    const std::shared_ptr<AVAssetReader> reader_;
    const std::shared_ptr<AVAssetWriter> writer_;
    const CMTimeRange range_;
    std::vector<Pipe> pipes_; // fixed once started, but for isDone
    bool madeFile_ = false;   // fixed once started

    // guarded by mutex_
    std::mutex mutex_;
    std::function<void(std::optional<Error>)> completion_;
    bool isCancelled_ = false;
    bool isFinishing_ = false;
};

} // namespace platform
