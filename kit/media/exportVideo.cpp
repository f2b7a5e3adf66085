// SPDX-License-Identifier: MIT
#include "kit/media/exportVideo.h"

#include "kit/data/temporaryFilepath.h"
#include "kit/media/AVAssetError.h"
#include "kit/media/ExportSetup_p.h"

#include "platform/avfoundation/AVAssetExportSession.h"

#include <utility>

namespace zelk {

using namespace platform;

namespace {

Result<std::shared_ptr<AVAssetExportSession>> makeSession(const AVAsset& asset)
{
    auto composition = std::make_shared<AVMutableComposition>();
    TRY(addTracks(*composition, asset, AVMediaType::audio));
    TRY(addTracks(*composition, asset, AVMediaType::video));
    if (!composition->isExportable())
        return failure(AVAssetError::assetNotExportable);
    auto session = AVAssetExportSession::make(composition, AVAssetExportPreset1920x1080);
    if (!session)
        return failure(AVAssetError::assetExportSessionCreationFailure);
    return session;
}

void runExport(const AVAsset& asset, const CMTimeRange& timeRange, const ExportCompletion& completion)
{
    auto made = makeSession(asset);
    if (!made)
        return completion(failure(made.error()));
    auto session = *made;
    session->setTimeRange(timeRange);
    session->setOutputURL(uniqueTemporaryFilepath(FileManager::defaultManager(), "mov"));
    session->setOutputFileType(AVFileTypeQuickTimeMovie);
    session->exportAsynchronously([session, completion] {
        if (auto error = session->error())
            completion(failure(*error));
        else
            completion(*session->outputURL());
    });
}

} // namespace

void exportVideo(std::shared_ptr<AVAsset> asset, const CMTimeRange& timeRange, ExportCompletion completion)
{
    exportQueue()->async([asset = std::move(asset), timeRange, completion = std::move(completion)] {
        runExport(*asset, timeRange, completion);
    });
}

} // namespace zelk
