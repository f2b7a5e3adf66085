// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <stop_token>
#include <string>
#include <vector>

namespace platform {

struct MediaKinds {
    bool photos = false;
    bool videos = false;
    bool operator==(const MediaKinds&) const = default;
};

// A photo or a video in the user's folders.
struct LibraryFile {
    std::string path;
    bool isVideo = false;
    std::int64_t modified = 0; // nanoseconds, for comparing alone
    std::string name() const;
    bool operator==(const LibraryFile&) const = default;
};

// The desktop's folders for photos and for videos that exist, each once.
std::vector<std::string> mediaFolders();

// The files with names of such media in these folders and below, the newest first; hidden ones and what is behind symbolic
// links to folders are left out. What cannot be read is passed over. Ends early, with what it has, when it is asked to stop
// or has found a quarter of a million. Any thread; takes time.
std::vector<LibraryFile> listMedia(const std::vector<std::string>& folders, MediaKinds kinds,
                                   const std::stop_token& stop = {});

} // namespace platform
