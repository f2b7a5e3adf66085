// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/FFmpegHandles_p.h"
#include "platform/foundation/Result.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>

namespace platform {

// Which file it was, and which state of it.
struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t node = 0;
    std::int64_t size = 0;
    std::int64_t modified = 0; // nanoseconds
    bool operator==(const FileIdentity&) const = default;
};

// The bytes of a regular file for the codec library, which reads nothing else. One thread at a time.
class MediaFile {
public:
    // Symbolic links are followed; a device, a pipe, a directory is refused (NSCocoaError::fileReadUnknown) without
    // being waited for.
    static Result<std::unique_ptr<MediaFile>> open(const std::string& path);
    ~MediaFile();
    // The reading context points to this object.
    MediaFile(const MediaFile&) = delete;
    MediaFile& operator=(const MediaFile&) = delete;

    AVIOContext* context() { return context_; }
    const FileIdentity& identity() const { return identity_; }
    void setStopToken(std::stop_token stop) { stop_ = std::move(stop); }
    bool isStopped() const { return stop_.stop_requested(); }
    // A negative number of the codec library: what went wrong with the file itself, 0 while nothing did. A file that has
    // become shorter than it was when opened is an error.
    int readFailure() const { return failure_; }

private:
    MediaFile(int descriptor, const FileIdentity& identity);
    static int read(void* self, std::uint8_t* bytes, int size);
    static std::int64_t seek(void* self, std::int64_t offset, int whence);

    const int descriptor_;
    const FileIdentity identity_;
    AVIOContext* context_ = nullptr;
    std::stop_token stop_;
    std::int64_t offset_ = 0;
    int failure_ = 0;
};

} // namespace platform
