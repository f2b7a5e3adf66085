// SPDX-License-Identifier: MIT
// Cuts a range out of a media file: a QuickTime movie, or a WAVE file of 16 kHz mono sound.
//
//   cut-media movie IN OUT.mov [--from SECONDS] [--to SECONDS] [--encode-all]
//   cut-media wave  IN OUT.wav [--from SECONDS] [--to SECONDS]
#include "platform/avfoundation/AVAssetExportSession.h"
#include "platform/avfoundation/AVAssetReader.h"
#include "platform/avfoundation/AVAssetWriter.h"
#include "platform/avfoundation/AVError.h"
#include "platform/avfoundation/AVURLAsset.h"

#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <unistd.h>

using namespace platform;

namespace {

struct Arguments {
    std::string_view kind, input, output;
    double from = 0;
    std::optional<double> to;
    bool encodesAll = false;
};

std::optional<double> secondsOf(std::string_view text)
{
    double seconds = 0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
    bool isNumber = error == std::errc() && end == text.data() + text.size() && std::isfinite(seconds);
    return isNumber ? std::optional(seconds) : std::nullopt;
}

std::optional<Arguments> parse(int count, char** values)
{
    if (count < 4)
        return std::nullopt;
    Arguments arguments{.kind = values[1], .input = values[2], .output = values[3]};
    if (arguments.kind != "movie" && arguments.kind != "wave")
        return std::nullopt;
    for (int i = 4; i < count; ++i) {
        std::string_view name = values[i];
        auto seconds = i + 1 < count ? secondsOf(values[i + 1]) : std::nullopt;
        if (name == "--encode-all")
            arguments.encodesAll = true;
        else if (name == "--from" && seconds && ++i)
            arguments.from = *seconds;
        else if (name == "--to" && seconds && ++i)
            arguments.to = *seconds;
        else
            return std::nullopt;
    }
    return arguments;
}

CMTimeRange rangeOf(const Arguments& arguments)
{
    auto start = CMTime::makeWithSeconds(arguments.from, 48000);
    auto end = arguments.to ? CMTime::makeWithSeconds(*arguments.to, 48000) : CMTime::positiveInfinity();
    return {start, end - start};
}

// Shows how far the work is until it is done; on a terminal only.
template <class Value>
Value watch(std::future<Value> done, const std::function<double()>& progress)
{
    constexpr int width = 40;
    bool isTerminal = ::isatty(STDERR_FILENO) == 1;
    while (done.wait_for(std::chrono::milliseconds(100)) != std::future_status::ready && isTerminal) {
        int filled = static_cast<int>(progress() * width);
        std::fprintf(stderr, "\r[%.*s%*s] %3d %%", filled, "########################################",
                     width - filled, "", filled * 100 / width);
    }
    if (isTerminal)
        std::fprintf(stderr, "\r%*s\r", width + 10, "");
    return done.get();
}

using Outcome = std::optional<Error>; // nothing: done

// An export session does it all.
Outcome cutMovie(const std::shared_ptr<AVURLAsset>& asset, const Arguments& arguments)
{
    auto session = AVAssetExportSession::make(asset, AVAssetExportPreset1920x1080);
    if (!session)
        return asset->loadError() ? asset->loadError() : Error(AVError::operationNotSupportedForAsset);
    session->setTimeRange(rangeOf(arguments));
    session->setOutputURL(URL::fileURL(arguments.output));
    session->setCopiesWherePossible(!arguments.encodesAll);
    std::promise<void> done;
    session->exportAsynchronously([&] { done.set_value(); });
    watch(done.get_future(), [&] { return session->progress(); });
    return session->error();
}

// A reader decodes, a writer writes; the writer's input asks for more when it is ready.
Outcome cutWave(const std::shared_ptr<AVURLAsset>& asset, const Arguments& arguments)
{
    constexpr AudioSettings settings{
        .AVSampleRateKey = 16000, .AVNumberOfChannelsKey = 1, .AVLinearPCMBitDepthKey = 16};
    auto reader = AVAssetReader::make(asset);
    if (!reader)
        return reader.error();
    auto writer = AVAssetWriter::make(URL::fileURL(arguments.output), AVFileTypeWAVE);
    if (!writer)
        return writer.error();
    auto tracks = asset->tracksWithMediaType(AVMediaType::audio);
    if (tracks.empty())
        return Error(AVError::noSourceTrack);
    auto output = std::make_shared<AVAssetReaderTrackOutput>(tracks.front(), settings);
    auto input = std::make_shared<AVAssetWriterInput>(AVMediaType::audio, settings);
    (*reader)->setTimeRange(rangeOf(arguments));
    (*reader)->add(output);
    (*writer)->add(input);
    if (!(*reader)->startReading())
        return (*reader)->error();
    if (!(*writer)->startWriting())
        return (*writer)->error();
    (*writer)->startSession(CMTime::zero());

    std::promise<void> done;
    input->requestMediaDataWhenReady(DispatchQueue::make("org.zelk.cut-media"), [&] {
        while (input->isReadyForMoreMediaData()) {
            auto sample = output->copyNextSampleBuffer();
            if (!sample || !input->append(*sample)) {
                input->markAsFinished();
                return (*writer)->finishWriting([&] { done.set_value(); });
            }
        }
    });
    watch(done.get_future(), [&] { return (*reader)->progress(); });
    return (*reader)->error() ? (*reader)->error() : (*writer)->error();
}

} // namespace

int main(int argc, char** argv)
{
    auto arguments = parse(argc, argv);
    if (!arguments) {
        std::fprintf(stderr,
                     "usage: cut-media movie|wave IN OUT [--from SECONDS] [--to SECONDS] [--encode-all]\n");
        return 2;
    }
    auto asset = std::make_shared<AVURLAsset>(URL::fileURL(arguments->input));
    auto outcome = arguments->kind == "movie" ? cutMovie(asset, *arguments) : cutWave(asset, *arguments);
    if (outcome) {
        std::fprintf(stderr, "cut-media: %.*s: %s\n", static_cast<int>(arguments->input.size()),
                     arguments->input.data(), outcome->localizedDescription().c_str());
        return 1;
    }
    return 0;
}
