// SPDX-License-Identifier: MIT
#include "platform/services/PHPhotosDraft_p.h"

#include "platform/foundation/UUID.h"
#include "platform/services/PHPhotosCreator_p.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <ctime>
#include <utility>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

namespace {

constexpr mode_t permissions = 0666; // less what the process's mask takes away

// A file that grows beyond the process's limit sends a signal, which ends the process unless it expects it; while this
// lives only the error comes.
class NoSizeSignal {
public:
    NoSizeSignal()
    {
        sigemptyset(&signal_);
        sigaddset(&signal_, SIGXFSZ);
        sigset_t pending;
        sigpending(&pending);
        wasPending_ = sigismember(&pending, SIGXFSZ) == 1;
        pthread_sigmask(SIG_BLOCK, &signal_, &former_);
    }
    ~NoSizeSignal()
    {
        constexpr timespec atOnce{};
        if (!wasPending_) {
            while (sigtimedwait(&signal_, nullptr, &atOnce) < 0 && errno == EINTR) { }
        }
        pthread_sigmask(SIG_SETMASK, &former_, nullptr);
    }
    NoSizeSignal(const NoSizeSignal&) = delete;
    NoSizeSignal& operator=(const NoSizeSignal&) = delete;

private:
    sigset_t signal_;
    sigset_t former_;
    bool wasPending_ = false;
};

bool writeAll(int descriptor, const char* bytes, std::size_t count)
{
    while (count > 0) {
        auto written = ::write(descriptor, bytes, count);
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return false;
        bytes += written;
        count -= static_cast<std::size_t>(written);
    }
    return true;
}

} // namespace

PHPhotosDraft::PHPhotosDraft(std::string folder, int descriptor, std::string hiddenPath)
    : folder_(std::move(folder))
    , descriptor_(descriptor)
    , hiddenPath_(std::move(hiddenPath))
{
}

PHPhotosDraft::PHPhotosDraft(PHPhotosDraft&& other) noexcept
    : folder_(std::move(other.folder_))
    , descriptor_(std::exchange(other.descriptor_, -1))
    , hiddenPath_(std::exchange(other.hiddenPath_, {}))
    , placedPath_(std::exchange(other.placedPath_, {}))
    , isKept_(other.isKept_)
{
}

PHPhotosDraft::~PHPhotosDraft()
{
    if (!hiddenPath_.empty())
        ::unlink(hiddenPath_.c_str());
    if (!placedPath_.empty() && !isKept_)
        ::unlink(placedPath_.c_str());
    if (descriptor_ >= 0)
        ::close(descriptor_);
}

std::expected<PHPhotosDraft, int> PHPhotosDraft::make(const std::string& folder)
{
    auto descriptor = ::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, permissions);
    if (descriptor >= 0)
        return PHPhotosDraft(folder, descriptor, {});
    if (errno != EOPNOTSUPP && errno != EISDIR && errno != EINVAL && errno != ENOSYS)
        return std::unexpected(errno);
    auto hidden = folder;
    hidden.append("/.zelk-").append(UUID().string());
    descriptor = ::open(hidden.c_str(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, permissions);
    if (descriptor < 0)
        return std::unexpected(errno);
    return PHPhotosDraft(folder, descriptor, std::move(hidden));
}

std::expected<void, PHPhotosDraft::CopyFault> PHPhotosDraft::copyFrom(int source)
{
    NoSizeSignal guard;
    struct stat status;
    if (::fstat(source, &status) != 0)
        return std::unexpected(CopyFault{errno, true});
    if (::ioctl(descriptor_, FICLONE, source) != 0) {
        std::array<char, 1 << 16> buffer;
        // Not to wherever the end is by then: somebody may go on writing for ever.
        for (off_t offset = 0; offset < status.st_size;) {
            auto wanted = std::min(static_cast<off_t>(buffer.size()), status.st_size - offset);
            auto count = ::pread(source, buffer.data(), static_cast<std::size_t>(wanted), offset);
            if (count < 0 && errno == EINTR)
                continue;
            if (count < 0)
                return std::unexpected(CopyFault{errno, true});
            if (count == 0)
                break;
            if (!writeAll(descriptor_, buffer.data(), static_cast<std::size_t>(count)))
                return std::unexpected(CopyFault{errno, false});
            offset += count;
        }
    }
    const timespec times[] = {status.st_mtim, status.st_mtim};
    ::futimens(descriptor_, times); // a library without it is in another order, and whole
    markAsAddedByThisProgram(descriptor_);
    return {};
}

std::expected<void, int> PHPhotosDraft::finish()
{
    if (::fsync(descriptor_) != 0)
        return std::unexpected(errno);
    return {};
}

std::string PHPhotosDraft::readablePath() const
{
    return "/proc/self/fd/" + std::to_string(descriptor_);
}

std::expected<void, int> PHPhotosDraft::place(const std::string& name)
{
    auto path = folder_ + "/" + name;
    int fault = 0;
    if (hiddenPath_.empty()) {
        if (::linkat(AT_FDCWD, readablePath().c_str(), AT_FDCWD, path.c_str(), AT_SYMLINK_FOLLOW) != 0)
            fault = errno;
    } else if (::renameat2(AT_FDCWD, hiddenPath_.c_str(), AT_FDCWD, path.c_str(), RENAME_NOREPLACE) == 0) {
        hiddenPath_.clear();
    } else if (errno != EINVAL && errno != ENOSYS) {
        fault = errno;
    } else if (::link(hiddenPath_.c_str(), path.c_str()) != 0) {
        fault = errno; // the hidden name goes with this object
    }
    if (fault != 0)
        return std::unexpected(fault);
    placedPath_ = std::move(path);
    return {};
}

void PHPhotosDraft::keep()
{
    isKept_ = true;
}

void synchronizeFolder(const std::string& folder)
{
    auto descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return; // the files themselves are on the disk
    ::fsync(descriptor);
    ::close(descriptor);
}

} // namespace platform
