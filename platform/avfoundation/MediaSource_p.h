// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVMetadataItem.h"
#include "platform/avfoundation/CMFormatDescription.h"
#include "platform/avfoundation/CMTimeRange.h"
#include "platform/avfoundation/MediaDemuxer_p.h"
#include "platform/foundation/Result.h"
#include "platform/graphics/Geometry.h"

#include <memory>
#include <mutex>
#include <stop_token>
#include <string>
#include <vector>

namespace platform {

// What a file's stream is. Fixed.
struct MediaStream {
    int index = 0; // of the file's streams, as the demuxer counts them
    CMPersistentTrackID trackID = kCMPersistentTrackID_Invalid;
    AVMediaType mediaType = AVMediaType::metadata;
    std::shared_ptr<const CMFormatDescription> format;
    CMTimeRange timeRange;
    // Whether the range is what is to be played, or an account of the data, which may go on for longer.
    bool isTimeRangeBinding = false;
    CGSize naturalSize;
    CGAffineTransform preferredTransform;
    double frameRate = 0;
    double dataRate = 0;
    std::string languageCode = "und";
    bool isProtected = false;
    bool isDecodable = false;
};

enum class PreciseTiming { no, yes };

// A media file that was opened and looked at: what is in it, and a way to read it. Immutable; any thread.
class MediaSource {
public:
    static Result<std::shared_ptr<const MediaSource>> open(const std::string& path, PreciseTiming precise);

    const std::string& path() const { return path_; }
    // The tracks' streams; a MediaSegment's stream is a position in this list.
    const std::vector<MediaStream>& streams() const { return streams_; }
    CMTime duration() const { return duration_; }
    const std::vector<AVMetadataItem>& metadata() const { return metadata_; }

    // Opens the file for reading. The first caller gets the demuxer that looked at the file, at its start.
    // Fails when the file is no longer the one that was looked at.
    Result<std::unique_ptr<MediaDemuxer>> openDemuxer(std::stop_token stop) const;

    struct Key; // only `open` makes sources
    MediaSource(const Key&, std::string path);
    ~MediaSource();

private:
    void describe(const MediaDemuxer& demuxer);
    void keepDemuxer(std::unique_ptr<MediaDemuxer> demuxer);

    // fixed after opening
    const std::string path_;
    std::vector<MediaStream> streams_;
    CMTime duration_;
    std::vector<AVMetadataItem> metadata_;
    FileIdentity identity_;
    // guarded by mutex_
    mutable std::mutex mutex_;
    mutable std::unique_ptr<MediaDemuxer> demuxer_;
};

} // namespace platform
