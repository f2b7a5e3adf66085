// SPDX-License-Identifier: MIT
// Any bytes are media whose tracks can be read to an end, or refused with an error.
#include "platform/avfoundation/AVAssetReader.h"
#include "platform/avfoundation/AVURLAsset.h"
#include "platform/foundation/Precondition.h"

#include <cstdint>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

using namespace platform;

namespace {

// A file that is in memory and goes with this.
class MemoryFile {
public:
    MemoryFile(const std::uint8_t* data, std::size_t size)
        : descriptor_(::memfd_create("media", MFD_CLOEXEC))
    {
        precondition(descriptor_ >= 0 && ::write(descriptor_, data, size) == static_cast<ssize_t>(size),
                     "no file in memory");
    }
    ~MemoryFile() { ::close(descriptor_); }
    MemoryFile(const MemoryFile&) = delete; // closes
    MemoryFile& operator=(const MemoryFile&) = delete;
    URL url() const { return URL::fileURL("/proc/self/fd/" + std::to_string(descriptor_)); }

private:
    int descriptor_;
};

void readSome(const std::shared_ptr<AVAsset>& asset, const std::shared_ptr<AVAssetTrack>& track,
              AVAssetReaderTrackOutput::OutputSettings settings)
{
    auto reader = AVAssetReader::make(asset);
    precondition(reader.has_value(), "an asset with tracks has no reader");
    auto output = std::make_shared<AVAssetReaderTrackOutput>(track, std::move(settings));
    if (!(*reader)->canAdd(*output))
        return;
    (*reader)->add(output);
    if ((*reader)->startReading())
        for (int count = 0; count < 8 && output->copyNextSampleBuffer(); ++count) { }
    precondition(((*reader)->status() == AVAssetReaderStatus::failed) == (*reader)->error().has_value(),
                 "a reader failed without an error");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    MemoryFile file(data, size);
    auto asset = std::make_shared<AVURLAsset>(file.url());
    precondition(asset->loadError().has_value() == asset->tracks().empty(), "no tracks and no reason");
    for (auto& track : asset->tracks()) {
        readSome(asset, track, std::monostate{});
        readSome(asset, track, AudioSettings{.AVSampleRateKey = 16000, .AVNumberOfChannelsKey = 1});
        readSome(asset, track, PixelBufferAttributes{});
    }
    return 0;
}
