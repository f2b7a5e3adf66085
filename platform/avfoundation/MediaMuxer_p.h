// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVFileType.h"
#include "platform/avfoundation/AVMetadataItem.h"
#include "platform/avfoundation/FFmpegHandles_p.h"
#include "platform/avfoundation/FFmpegTime_p.h"
#include "platform/foundation/Result.h"
#include "platform/graphics/Geometry.h"

#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace platform {

// What the file says of one track. Parameters and time base are known when the track's first sample is.
struct MuxerTrack {
    CodecParameters codec;
    AVRational timeBase{0, 1};
    AVRational averageFrameRate{0, 1};
    CGAffineTransform transform;
    std::string languageCode = "und";
};

struct MuxerOptions {
    bool indexAtFront = false;
    std::vector<AVMetadataItem> metadata;
};

// Puts the packets of several tracks into a new file, in the order of their decode times. The header is written when each
// track has been described or dropped; packets wait until then. Any thread.
class MediaMuxer {
public:
    // Makes the file. AVError::fileAlreadyExists when there is one.
    static Result<std::unique_ptr<MediaMuxer>> create(const std::string& path, AVFileType type,
                                                      std::size_t trackCount, MuxerOptions options);
    ~MediaMuxer();

    // Once for each track, by its number from 0.
    [[nodiscard]] Result<void> describe(std::size_t track, MuxerTrack description);
    // The track has no samples and does not appear in the file. Not after describe.
    [[nodiscard]] Result<void> drop(std::size_t track);
    // Takes what `packet` holds; its times are in the described time base. Requires describe.
    [[nodiscard]] Result<void> write(std::size_t track, AVPacket& packet);
    // Completes the file. No call may follow. AVError::invalidSourceMedia when all tracks were dropped.
    [[nodiscard]] Result<void> finish();
    // Removes the file.
    void remove();

    // Whether the movie may be given negative times, which it then hides.
    static const AVOutputFormat* outputFormat(AVFileType type);
    // Whether times mean something in such a file.
    static bool hasTimes(AVFileType type) { return type != AVFileType::wave; }

private:
    struct OutputFile;
    struct Track {
        std::optional<MuxerTrack> description;
        bool isDropped = false;
        int stream = -1;
        std::deque<Packet> waiting;
    };

    MediaMuxer(std::unique_ptr<OutputFile> file, FormatOutput format, AVFileType type, std::size_t trackCount,
               MuxerOptions options);
    Result<void> writeHeaderIfKnown();
    Result<void> writeNow(const Track& track, AVPacket& packet);
    // The error of the file, where it was that.
    Error failureOf(int code) const;

    // guarded by mutex_
    std::mutex mutex_;
    std::unique_ptr<OutputFile> file_; // outlives format_
    FormatOutput format_;
    const AVFileType type_;
    const MuxerOptions options_;
    std::vector<Track> tracks_;
    bool hasHeader_ = false;
};

} // namespace platform
