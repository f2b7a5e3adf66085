// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/UIImage.h"
#include "platform/services/MediaListing.h"

#include <cstddef>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace platform {

class DispatchQueue;

// How large small pictures are: squares from the middle of the media. Of a medium that has fewer pixels they are what it has.
struct ThumbnailSize {
    int side = 1;      // pixels
    CGFloat scale = 1; // pixels a point
    bool operator==(const ThumbnailSize&) const = default;
};

// A small picture of a medium.
struct Thumbnail {
    UIImage image;        // empty where it could not be read
    ThumbnailSize size;   // that it was made for
    double seconds = 0;   // of a video
    bool isMedium = true; // false: the file is not what its name says
};

// Makes small pictures of media on a few threads and keeps the last few hundred. What was asked for last comes first, for
// that is what the user looks at. Main thread only.
class ThumbnailLoader : public std::enable_shared_from_this<ThumbnailLoader> {
public:
    static std::shared_ptr<ThumbnailLoader> make();
    ~ThumbnailLoader();

    ThumbnailSize size() const { return size_; }
    // Of what is loaded from now on.
    void setSize(ThumbnailSize size);

    // The last one of it, of whatever size.
    std::optional<Thumbnail> cached(const LibraryFile& file);
    // Calls `handler` later, on the main thread, unless it is cancelled: once with one of the present size, before that perhaps
    // with one of a size that was asked for earlier.
    using Handler = std::function<void(const Thumbnail&)>;
    void load(const LibraryFile& file, Handler handler);
    // Nobody wants it any more. Work that has begun goes on, for the cache.
    void cancel(const LibraryFile& file);

private:
    ThumbnailLoader();
    struct Queue; // what the threads share
    void finish(const LibraryFile& file, const Thumbnail& thumbnail);

    const std::shared_ptr<Queue> queue_;
    ThumbnailSize size_;
    std::unordered_map<std::string, Handler> wanted_;
    std::list<std::pair<LibraryFile, Thumbnail>> recent_; // the last used first
    std::unordered_map<std::string, std::list<std::pair<LibraryFile, Thumbnail>>::iterator> places_;
};

// Reads one on the calling thread. A file that is no plain file, or is not what its name says, is no medium.
Thumbnail makeThumbnail(const LibraryFile& file, ThumbnailSize size);

} // namespace platform
