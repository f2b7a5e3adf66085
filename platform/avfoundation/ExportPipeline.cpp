// SPDX-License-Identifier: MIT
#include "platform/avfoundation/ExportPipeline_p.h"

#include "platform/avfoundation/AVAssetTrack.h"
#include "platform/avfoundation/AVError.h"
#include "platform/avfoundation/SmartReading_p.h"
#include "platform/dispatch/DispatchQueue.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <unistd.h>

namespace platform {

namespace {

// Samples that a pipe passes on before others get their turn: the threads belong to all queues.
constexpr int samplesInTurn = 4;

// The size to encode a picture at: within `largest`, never enlarged, in even numbers.
CGSize fitted(CGSize natural, CGSize largest)
{
    auto scale = std::min({1.0, largest.width / natural.width, largest.height / natural.height});
    auto even = [](double size) { return std::max(2.0, std::floor(size / 2 + 0.25) * 2); };
    return {std::min(even(natural.width * scale), largest.width),
            std::min(even(natural.height * scale), largest.height)};
}

std::optional<double> averageRate(const AVAssetTrack& track)
{
    auto rate = track.nominalFrameRate();
    return rate > 0 ? std::optional(rate) : std::nullopt;
}

VideoSettings videoSettings(const AVAssetTrack& track, CGSize largest)
{
    auto size = fitted(track.naturalSize(), largest);
    return {.AVVideoWidthKey = static_cast<int>(size.width),
            .AVVideoHeightKey = static_cast<int>(size.height),
            .AVVideoExpectedSourceFrameRateKey = averageRate(track),
            .AVVideoPixelAspectRatioKey = 1};
}

// Numbers stay what they are where they can.
CVPixelFormatType pixelFormat(const AVAssetTrack& track)
{
    auto formats = track.formatDescriptions();
    bool isFull = !formats.empty() && formats.front()->video() && formats.front()->video()->color.isFullRange;
    return isFull ? CVPixelFormatType::planar420YpCbCr8FullRange : CVPixelFormatType::planar420YpCbCr8;
}

// The encoder takes at most 8 channels and the rates that the format has; what is beyond is mixed and resampled.
AudioSettings audioSettings(const AVAssetTrack& track)
{
    constexpr double rates[] = {96000, 88200, 64000, 48000, 44100, 32000,
                                24000, 22050, 16000, 12000, 11025, 8000};
    AudioSettings settings{.AVFormatIDKey = kAudioFormatMPEG4AAC};
    auto formats = track.formatDescriptions();
    auto* format = formats.empty() || !formats.front()->audio() ? nullptr : &*formats.front()->audio();
    if (format && std::ranges::find(rates, format->sampleRate) == std::end(rates))
        settings.AVSampleRateKey = format->sampleRate < 8000 ? 8000 : 48000;
    if (format && (format->channels > 8 || format->channels < 1))
        settings.AVNumberOfChannelsKey = 2;
    return settings;
}

AudioSettings readingSettings(const AudioSettings& settings)
{
    return {.AVSampleRateKey = settings.AVSampleRateKey,
            .AVNumberOfChannelsKey = settings.AVNumberOfChannelsKey,
            .AVLinearPCMBitDepthKey = 32,
            .AVLinearPCMIsFloatKey = true,
            .AVLinearPCMIsNonInterleaved = true};
}

bool takesPictures(AVFileType type)
{
    return type == AVFileType::quickTimeMovie || type == AVFileType::mpeg4;
}

// The track's ticks, parted where they are coarse: a range may start between two.
std::int32_t timeScale(const AVAssetTrack& track)
{
    auto scale = std::max(track.naturalTimeScale(), 1);
    while (scale < 10'000)
        scale *= 2;
    return scale;
}

using PipeEnds = std::pair<std::shared_ptr<AVAssetReaderTrackOutput>, std::shared_ptr<AVAssetWriterInput>>;

PipeEnds asStored(const std::shared_ptr<AVAssetTrack>& track)
{
    auto formats = track->formatDescriptions();
    return {std::make_shared<AVAssetReaderTrackOutput>(track, std::monostate()),
            std::make_shared<AVAssetWriterInput>(track->mediaType(), std::monostate(),
                                                 formats.empty() ? nullptr : formats.front())};
}

PipeEnds makePipe(const std::shared_ptr<AVAssetTrack>& track, const ExportPlan& plan)
{
    if (!plan.largestSize)
        return asStored(track);
    if (track->mediaType() == AVMediaType::audio) {
        auto settings = audioSettings(*track);
        return {std::make_shared<AVAssetReaderTrackOutput>(track, readingSettings(settings)),
                std::make_shared<AVAssetWriterInput>(AVMediaType::audio, settings)};
    }
    if (plan.copiesWherePossible) {
        if (auto smart = planSmartReading(*track, plan.range, *plan.largestSize)) {
            auto format = smart->format;
            return {std::make_shared<SmartTrackOutput>(track, std::move(*smart)),
                    std::make_shared<AVAssetWriterInput>(AVMediaType::video, std::monostate(), format)};
        }
    }
    return {
        std::make_shared<AVAssetReaderTrackOutput>(
            track, PixelBufferAttributes{.kCVPixelBufferPixelFormatTypeKey = pixelFormat(*track)}),
        std::make_shared<AVAssetWriterInput>(AVMediaType::video, videoSettings(*track, *plan.largestSize))};
}

// The track's, for pictures that are smaller by so much: where the turned picture lies is measured in pixels.
CGAffineTransform transformOf(const AVAssetTrack& track, const AVAssetWriterInput& input)
{
    auto transform = track.preferredTransform();
    auto* settings = std::get_if<VideoSettings>(&input.outputSettings());
    auto natural = track.naturalSize();
    if (!settings || natural.width <= 0 || natural.height <= 0)
        return transform;
    auto scale =
        std::max(*settings->AVVideoWidthKey / natural.width, *settings->AVVideoHeightKey / natural.height);
    transform.tx *= scale;
    transform.ty *= scale;
    return transform;
}

} // namespace

struct ExportPipeline::Key { };

ExportPipeline::ExportPipeline(const Key&, std::shared_ptr<AVAssetReader> reader,
                               std::shared_ptr<AVAssetWriter> writer, CMTimeRange range)
    : reader_(std::move(reader))
    , writer_(std::move(writer))
    , range_(std::move(range))
{
}

Result<std::shared_ptr<ExportPipeline>> ExportPipeline::make(const ExportPlan& plan)
{
    auto reader = TRY(AVAssetReader::make(plan.asset));
    reader->setTimeRange(plan.range);
    auto writer = TRY(AVAssetWriter::make(plan.outputURL, plan.fileType));
    writer->setMetadata(plan.asset->metadata());
    writer->setShouldOptimizeForNetworkUse(plan.indexAtFront);
    auto pipeline = std::make_shared<ExportPipeline>(Key{}, std::move(reader), std::move(writer), plan.range);
    TRY(pipeline->addTracks(plan));
    return pipeline;
}

Result<void> ExportPipeline::addTracks(const ExportPlan& plan)
{
    for (auto& track : plan.asset->tracks()) {
        auto type = track->mediaType();
        if (type != AVMediaType::video && type != AVMediaType::audio)
            continue;
        if (type == AVMediaType::video && !takesPictures(plan.fileType))
            continue;
        auto [output, input] = makePipe(track, plan);
        input->setTransform(transformOf(*track, *input));
        input->setLanguageCode(track->languageCode());
        if (type == AVMediaType::video)
            input->setMediaTimeScale(timeScale(*track));
        if (!reader_->canAdd(*output) || !writer_->canAdd(*input))
            return failure(AVError::operationNotSupportedForAsset);
        reader_->add(output);
        writer_->add(input);
        pipes_.push_back({.output = std::move(output), .input = std::move(input)});
    }
    if (pipes_.empty())
        return failure(AVError::noSourceTrack);
    return {};
}

void ExportPipeline::start(std::function<void(std::optional<Error>)> completion)
{
    completion_ = std::move(completion);
    if (!reader_->startReading())
        return complete(reader_->error());
    if (!writer_->startWriting()) {
        reader_->cancelReading();
        return complete(writer_->error());
    }
    madeFile_ = true;
    writer_->startSession(range_.start);
    for (std::size_t i = 0; i < pipes_.size(); ++i) {
        pipes_[i].input->requestMediaDataWhenReady(DispatchQueue::make("org.zelk.avfoundation.export-track"),
                                                   [self = shared_from_this(), i] { self->feed(i); });
    }
}

void ExportPipeline::feed(std::size_t index)
{
    auto& pipe = pipes_[index];
    for (int count = 0; count < samplesInTurn && pipe.input->isReadyForMoreMediaData(); ++count) {
        auto sample = pipe.output->copyNextSampleBuffer();
        if (!sample || !pipe.input->append(*sample))
            return pipeEnded(index);
    }
    if (writer_->status() != AVAssetWriterStatus::writing)
        pipeEnded(index);
}

// The first pipe that meets a failure or a cancellation ends the export; otherwise the last pipe does.
void ExportPipeline::pipeEnded(std::size_t index)
{
    pipes_[index].input->markAsFinished();
    bool hasFailed = reader_->status() == AVAssetReaderStatus::failed
        || reader_->status() == AVAssetReaderStatus::cancelled
        || writer_->status() != AVAssetWriterStatus::writing;
    {
        std::lock_guard lock(mutex_);
        pipes_[index].isDone = true;
        bool isLast = std::ranges::all_of(pipes_, [](const Pipe& pipe) { return pipe.isDone; });
        if (isFinishing_ || !(isLast || hasFailed))
            return;
        isFinishing_ = true;
    }
    if (!hasFailed)
        return finish();
    auto error = writer_->error() ? writer_->error() : reader_->error();
    reader_->cancelReading();
    writer_->cancelWriting();
    complete(std::move(error));
}

void ExportPipeline::finish()
{
    writer_->finishWriting([self = shared_from_this()] { self->complete(self->writer_->error()); });
}

void ExportPipeline::complete(std::optional<Error> error)
{
    std::function<void(std::optional<Error>)> completion;
    bool isCancelled = false;
    {
        std::lock_guard lock(mutex_);
        completion = std::exchange(completion_, nullptr);
        isCancelled = isCancelled_;
    }
    if (!completion)
        return;
    bool isComplete = writer_->status() == AVAssetWriterStatus::completed;
    if (!isComplete && isCancelled)
        error = Error(AVError::operationCancelled);
    else if (!isComplete && !error)
        error = Error(AVError::exportFailed);
    if (error && madeFile_)
        ::unlink(writer_->outputURL().path().c_str());
    completion(std::move(error));
}

void ExportPipeline::cancel()
{
    {
        std::lock_guard lock(mutex_);
        isCancelled_ = true;
    }
    reader_->cancelReading();
}

double ExportPipeline::progress() const
{
    return reader_->progress();
}

} // namespace platform
