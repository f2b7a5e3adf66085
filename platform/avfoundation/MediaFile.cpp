// SPDX-License-Identifier: MIT
#include "platform/avfoundation/MediaFile_p.h"

#include "platform/avfoundation/FFmpegError_p.h"
#include "platform/foundation/Precondition.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

namespace {

constexpr int bufferSize = 1 << 16;

FileIdentity identityOf(const struct stat& status)
{
    return {.device = status.st_dev,
            .node = status.st_ino,
            .size = status.st_size,
            .modified = status.st_mtim.tv_sec * 1'000'000'000LL + status.st_mtim.tv_nsec};
}

} // namespace

Result<std::unique_ptr<MediaFile>> MediaFile::open(const std::string& path)
{
    auto name = std::string_view(path).substr(path.rfind('/') + 1);
    if (path.find('\0') != std::string::npos)
        return failure(NSCocoaError::fileReadInvalidFileName);
    // Without O_NONBLOCK a pipe would be waited for.
    int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0)
        return failure(mediaError(AVERROR(errno), MediaWork::open, name));
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(descriptor);
        return failure(NSCocoaError::fileReadUnknown,
                       {{std::string(NSFilePathErrorKey), std::string(name)},
                        {std::string(NSLocalizedFailureReasonErrorKey), "Not a regular file"}});
    }
    return std::unique_ptr<MediaFile>(new MediaFile(descriptor, identityOf(status)));
}

MediaFile::MediaFile(int descriptor, const FileIdentity& identity)
    : descriptor_(descriptor)
    , identity_(identity)
{
    auto* buffer = static_cast<unsigned char*>(av_malloc(bufferSize));
    precondition(buffer != nullptr, "no memory for a read buffer");
    context_ = avio_alloc_context(buffer, bufferSize, 0, this, read, nullptr, seek);
    precondition(context_ != nullptr, "no memory for a reading context");
}

MediaFile::~MediaFile()
{
    av_freep(&context_->buffer);
    avio_context_free(&context_);
    ::close(descriptor_);
}

int MediaFile::read(void* self, std::uint8_t* bytes, int size)
{
    auto& file = *static_cast<MediaFile*>(self);
    if (file.isStopped())
        return AVERROR_EXIT;
    // What is appended later is not part of the file that was opened.
    auto left = file.identity_.size - file.offset_;
    if (left <= 0 || size <= 0)
        return AVERROR_EOF;
    ssize_t count = 0;
    do {
        count = ::pread(file.descriptor_, bytes, static_cast<std::size_t>(std::min<std::int64_t>(size, left)),
                        file.offset_);
    } while (count < 0 && errno == EINTR);
    if (count <= 0) {
        file.failure_ = count < 0 ? AVERROR(errno) : AVERROR(EIO); // the file has shrunk
        return file.failure_;
    }
    file.offset_ += count;
    return static_cast<int>(count);
}

std::int64_t MediaFile::seek(void* self, std::int64_t offset, int whence)
{
    auto& file = *static_cast<MediaFile*>(self);
    switch (whence & ~AVSEEK_FORCE) {
    case AVSEEK_SIZE:
        return file.identity_.size;
    case SEEK_CUR:
        offset += file.offset_;
        break;
    case SEEK_END:
        offset += file.identity_.size;
        break;
    default:
        break;
    }
    if (offset < 0)
        return AVERROR(EINVAL);
    return file.offset_ = offset;
}

} // namespace platform
