// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVAssetReader.h"
#include "platform/avfoundation/AVURLAsset.h"

#include <cstring>
#include <string>
#include <vector>

namespace tests {

// All that a reader gives for one track, and how it ended.
struct Reading {
    std::vector<std::shared_ptr<const platform::CMSampleBuffer>> buffers;
    platform::AVAssetReaderStatus status = platform::AVAssetReaderStatus::unknown;
    std::optional<platform::Error> error;

    std::string bytes() const
    {
        std::string all;
        for (auto& buffer : buffers)
            all.append(reinterpret_cast<const char*>(buffer->data.bytes.data()), buffer->data.bytes.size());
        return all;
    }
    template <class Sample>
    std::vector<Sample> samples() const
    {
        auto all = bytes();
        std::vector<Sample> result(all.size() / sizeof(Sample));
        std::memcpy(result.data(), all.data(), result.size() * sizeof(Sample));
        return result;
    }
};

inline const platform::CMTimeRange everything{platform::CMTime::zero(), platform::CMTime::positiveInfinity()};
inline const platform::AudioSettings mono16k{.AVSampleRateKey = 16000, .AVNumberOfChannelsKey = 1};

inline Reading read(const std::shared_ptr<platform::AVAsset>& asset,
                    const std::shared_ptr<platform::AVAssetTrack>& track,
                    const platform::AVAssetReaderTrackOutput::OutputSettings& settings,
                    const platform::CMTimeRange& range = everything)
{
    Reading reading;
    auto reader = platform::AVAssetReader::make(asset);
    if (!reader) {
        reading.error = reader.error();
        return reading;
    }
    auto output = std::make_shared<platform::AVAssetReaderTrackOutput>(track, settings);
    (*reader)->setTimeRange(range);
    (*reader)->add(output);
    if ((*reader)->startReading())
        while (auto buffer = output->copyNextSampleBuffer())
            reading.buffers.push_back(buffer);
    reading.status = (*reader)->status();
    reading.error = (*reader)->error();
    return reading;
}

// The first track of a type of a file.
inline Reading readFile(const std::string& path, platform::AVMediaType type,
                        const platform::AVAssetReaderTrackOutput::OutputSettings& settings,
                        const platform::CMTimeRange& range = everything)
{
    auto asset = std::make_shared<platform::AVURLAsset>(platform::URL::fileURL(path));
    auto tracks = asset->tracksWithMediaType(type);
    if (tracks.empty())
        return {.error = asset->loadError()};
    return read(asset, tracks.front(), settings, range);
}

} // namespace tests
