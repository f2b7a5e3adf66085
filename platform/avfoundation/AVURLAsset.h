// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVAsset.h"
#include "platform/foundation/URL.h"

#include <mutex>

namespace platform {

class MediaSource;

struct AVURLAssetOptions {
    // Whether to find out the duration exactly where the file only lets it be estimated, at the price of reading
    // it through once.
    bool AVURLAssetPreferPreciseDurationAndTimingKey = false;
};

// The media of a file. The file is opened at the first query, once, and looked at as far as needed; it must be a
// regular file, and what it refers to outside of itself is not read. Any thread.
class AVURLAsset : public AVAsset {
public:
    explicit AVURLAsset(URL url, AVURLAssetOptions options = {});
    ~AVURLAsset() override;

    const URL& url() const { return url_; }
    CMTime duration() const override;
    std::vector<std::shared_ptr<AVAssetTrack>> tracks() const override;
    std::vector<AVMetadataItem> metadata() const override;
    // NSCocoaErrorDomain when the file cannot be opened, AVFoundationErrorDomain when it is no media.
    std::optional<Error> loadError() const override;

private:
    void ensureLoaded() const;

    // fixed after construction
    const URL url_;
    const AVURLAssetOptions options_;
    // written once, by whoever asks first
    mutable std::once_flag loaded_;
    mutable std::shared_ptr<const MediaSource> source_;
    mutable std::vector<std::shared_ptr<AVAssetTrack>> tracks_;
    mutable std::optional<Error> loadError_;
};

} // namespace platform
