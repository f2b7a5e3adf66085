// SPDX-License-Identifier: MIT
#include "kit/media/exportAudio.h"

#include "kit/data/temporaryFilepath.h"
#include "kit/media/AVAssetError.h"
#include "kit/media/ExportSetup_p.h"

#include "platform/avfoundation/AVAssetReader.h"
#include "platform/avfoundation/AVAssetWriter.h"

#include <utility>

namespace zelk {

using namespace platform;

namespace {

constexpr AudioSettings outputSettings{.AVFormatIDKey = kAudioFormatLinearPCM,
                                       .AVSampleRateKey = 16000,
                                       .AVNumberOfChannelsKey = 1,
                                       .AVLinearPCMBitDepthKey = 16,
                                       .AVLinearPCMIsFloatKey = false,
                                       .AVLinearPCMIsBigEndianKey = false,
                                       .AVLinearPCMIsNonInterleaved = false};

// From the reader into the file, whenever the file's track asks. The track keeps the copying alive, and the copying the
// track, until the completion was called. Of the export queue, but for what follows once writing has finished.
class AudioCopying : public std::enable_shared_from_this<AudioCopying> {
public:
    struct Parts {
        std::shared_ptr<AVAssetReader> reader;
        std::shared_ptr<AVAssetReaderTrackOutput> output;
        std::shared_ptr<AVAssetWriter> writer;
        std::shared_ptr<AVAssetWriterInput> input;
        ExportCompletion completion;
    };

    explicit AudioCopying(Parts parts)
        : parts_(std::move(parts))
    {
    }

    // The track wants samples, or has failed.
    void copy()
    {
        auto [reader, output, writer, input, completion] = parts_;
        if (!completion)
            return; // asked once more after the end
        if (auto error = failureOf(*writer, *reader))
            return complete(failure(*error));
        while (input->isReadyForMoreMediaData()) {
            auto sample = output->copyNextSampleBuffer();
            if (auto error = failureOf(*writer, *reader))
                return complete(failure(*error));
            if (!sample)
                return finish();
            static_cast<void>(input->append(*sample)); // a failure is the writer's, which is asked
        }
    }

private:
    static std::optional<Error> failureOf(const AVAssetWriter& writer, const AVAssetReader& reader)
    {
        auto error = writer.error();
        return error ? error : reader.error();
    }

    void finish()
    {
        parts_.input->markAsFinished();
        parts_.writer->finishWriting([self = shared_from_this()] {
            self->parts_.reader->cancelReading();
            self->complete(self->parts_.writer->outputURL());
        });
    }

    void complete(Result<URL> result)
    {
        auto parts = std::exchange(parts_, {});
        parts.completion(std::move(result));
    }

    Parts parts_; // empty once completed
};

Result<std::shared_ptr<AVMutableComposition>> audioComposition(const AVAsset& asset)
{
    auto composition = std::make_shared<AVMutableComposition>();
    if (asset.tracksWithMediaType(AVMediaType::audio).empty())
        return failure(AVAssetError::missingAudioTrack);
    TRY(addTracks(*composition, asset, AVMediaType::audio));
    return composition;
}

} // namespace

Result<void> _exportAudio(const std::shared_ptr<AVAsset>& asset, const CMTimeRange& timeRange,
                          ExportCompletion completion)
{
    auto composition = TRY(audioComposition(*asset));
    auto url = uniqueTemporaryFilepath(FileManager::defaultManager(), "wav");
    auto reader = TRY(AVAssetReader::make(composition));
    reader->setTimeRange(timeRange);
    auto writer = TRY(AVAssetWriter::make(url, AVFileTypeWAVE));
    auto tracks = composition->tracksWithMediaType(AVMediaType::audio);
    if (tracks.empty())
        return failure(AVAssetError::missingAudioTrack);
    auto output = std::make_shared<AVAssetReaderTrackOutput>(tracks.front(), outputSettings);
    if (!reader->canAdd(*output))
        return failure(AVAssetError::couldNotAddAudioOutputReader);
    reader->add(output);
    auto input = std::make_shared<AVAssetWriterInput>(AVMediaType::audio, outputSettings);
    writer->add(input);

    // Those that do not start have an error, which the first copying meets.
    static_cast<void>(writer->startWriting());
    static_cast<void>(reader->startReading());
    writer->startSession(CMTime::zero());
    auto copying = std::make_shared<AudioCopying>(
        AudioCopying::Parts{reader, output, writer, input, std::move(completion)});
    input->requestMediaDataWhenReady(exportQueue(), [copying] { copying->copy(); });
    return {};
}

void exportAudio(std::shared_ptr<AVAsset> asset, const CMTimeRange& timeRange, ExportCompletion completion)
{
    exportQueue()->async([asset = std::move(asset), timeRange, completion = std::move(completion)] {
        if (auto begun = _exportAudio(asset, timeRange, completion); !begun)
            completion(failure(begun.error()));
    });
}

} // namespace zelk
