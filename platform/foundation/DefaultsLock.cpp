// SPDX-License-Identifier: MIT
#include "platform/foundation/DefaultsLock_p.h"

#include "platform/foundation/FileWriting_p.h"
#include "platform/foundation/URL.h"

#include <cerrno>
#include <chrono>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

namespace {

using namespace std::chrono_literals;

// The system can wait for a lock, but not for at most so long. A write takes a few milliseconds.
constexpr auto pause = 1ms;
constexpr auto patience = 10s;

// Whether the name still leads to the file that is open: whoever clears a folder may remove a lock that is held.
bool isStillThere(int descriptor, const std::string& path)
{
    struct stat held, named;
    return ::fstat(descriptor, &held) == 0 && ::stat(path.c_str(), &named) == 0 && held.st_ino == named.st_ino
        && held.st_dev == named.st_dev;
}

} // namespace

Result<DefaultsLock> DefaultsLock::take(const URL& file)
{
    auto path = TRY(writablePath(file, "locked"));
    auto deadline = std::chrono::steady_clock::now() + patience;
    while (true) {
        // For writing: network file systems give no exclusive lock otherwise.
        int descriptor =
            ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY, 0600);
        if (descriptor < 0 && errno == EINTR)
            continue;
        if (descriptor < 0)
            return std::unexpected(fileWriteError(errno, file, "locked"));
        DefaultsLock lock(descriptor);
        while (::flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
            if (errno != EWOULDBLOCK && errno != EINTR)
                return std::unexpected(fileWriteError(errno, file, "locked"));
            if (std::chrono::steady_clock::now() >= deadline)
                return std::unexpected(fileWriteError(NSCocoaError::fileWriteUnknown, file, "locked",
                                                      "another process has held it too long"));
            std::this_thread::sleep_for(pause);
        }
        if (isStillThere(descriptor, path))
            return lock;
    }
}

DefaultsLock::DefaultsLock(DefaultsLock&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1))
{
}

DefaultsLock::~DefaultsLock()
{
    if (descriptor_ >= 0)
        ::close(descriptor_);
}

} // namespace platform
