// SPDX-License-Identifier: MIT
#include "platform/network/DownloadFile_p.h"

#include "platform/foundation/FileManager.h"
#include "platform/foundation/FileWriting.h"
#include "platform/foundation/UUID.h"
#include "platform/network/NSURLErrorCodes.h"

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <filesystem>
#include <mutex>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace platform {

namespace {

constexpr auto growing = ".download";
// For going on with: resume data, a background session's.
constexpr auto kept = ".partial";
constexpr auto keptBySession = ".part";
constexpr auto longestKept = std::chrono::hours(7 * 24);
// Bytes in memory of each that grows, rests or waits for its delegate.
constexpr std::size_t mostHeld = 64 * 1024;

NSError writeError(int reason, const std::string& path)
{
    if (reason == ENOSPC || reason == EDQUOT)
        return {NSPOSIXErrorDomain,
                ENOSPC,
                {{std::string(NSLocalizedDescriptionKey), "No space left on device"}}};
    return urlError(NSURLErrorCannotWriteToFile, URL::fileURL(path));
}

bool isAbandoned(const std::filesystem::directory_entry& entry)
{
    auto kind = entry.path().extension();
    if (kind == growing)
        return true;
    std::error_code error;
    return (kind == kept || kind == keptBySession)
        && entry.last_write_time(error) < std::filesystem::file_time_type::clock::now() - longestKept
        && !error;
}

// For this user alone. It holds nothing but downloads, as what nobody owns there is removed.
bool isPreparedDirectory(const URL& place)
{
    if (!FileManager::defaultManager().createDirectory(place, IntermediateDirectories::created))
        return false;
    return ::chmod(place.path().c_str(), 0700) == 0 && ::access(place.path().c_str(), W_OK | X_OK) == 0;
}

// Memory for small files, used again: the thread that lets go of it is another than that which takes it.
class HeldMemory {
public:
    static HeldMemory& shared()
    {
        static auto& instance = *new HeldMemory; // threads may still run while the process exits
        return instance;
    }

    std::string take()
    {
        std::lock_guard lock(mutex_);
        if (spare_.empty())
            return {};
        auto memory = std::move(spare_.back());
        spare_.pop_back();
        return memory;
    }
    void giveBack(std::string memory)
    {
        if (memory.capacity() <= std::string().capacity())
            return;
        memory.clear();
        std::lock_guard lock(mutex_);
        if (spare_.size() < mostSpare)
            spare_.push_back(std::move(memory));
    }

private:
    static constexpr std::size_t mostSpare = 16;
    std::mutex mutex_;
    std::vector<std::string> spare_; // guarded by mutex_
};

std::string makeDownloadDirectory()
{
    auto& manager = FileManager::defaultManager();
    auto caches = manager.urls(SearchPathDirectory::caches, SearchPathDomain::user);
    // With what else this program keeps there: the temporary directory has the program's name.
    auto name = manager.temporaryDirectory().lastPathComponent();
    if (!caches.empty()) {
        auto place = caches.front().appendingPathComponent(name).appendingPathComponent("downloads");
        if (isPreparedDirectory(place))
            return place.path() + "/";
    }
    auto place = manager.temporaryDirectory().appendingPathComponent("downloads");
    isPreparedDirectory(place); // where it is not, no file can be made there, which says why
    return place.path() + "/";
}

} // namespace

void removeAbandonedDownloads(const std::string& directory)
{
    std::error_code error; // what cannot be listed or removed now is found again by the next program
    std::filesystem::recursive_directory_iterator place(
        directory, std::filesystem::directory_options::skip_permission_denied, error);
    for (; !error && place != std::filesystem::recursive_directory_iterator(); place.increment(error)) {
        if (!isAbandoned(*place))
            continue;
        auto path = place->path();
        int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
        if (descriptor < 0)
            continue;
        if (::flock(descriptor, LOCK_EX | LOCK_NB) == 0)
            ::unlink(path.c_str());
        ::close(descriptor);
    }
}

std::string downloadDirectory()
{
    // Never destroyed: threads may still run while the process exits.
    static const auto& directory = *new std::string([] {
        auto made = makeDownloadDirectory();
        removeAbandonedDownloads(made);
        return made;
    }());
    return directory;
}

Result<std::unique_ptr<DownloadFile>> DownloadFile::open(std::string path)
{
    auto file = std::make_unique<DownloadFile>();
    TRY(file->attach(std::move(path)));
    return file;
}

Result<void> DownloadFile::attach(std::string path)
{
    int descriptor = ::open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NOFOLLOW, 0666);
    struct stat facts{};
    bool isOurs = descriptor >= 0 && ::flock(descriptor, LOCK_EX | LOCK_NB) == 0
        && ::fstat(descriptor, &facts) == 0 && S_ISREG(facts.st_mode);
    if (!isOurs) {
        int reason = errno;
        if (descriptor >= 0)
            ::close(descriptor);
        if (reason == ENOSPC || reason == EDQUOT)
            return failure(writeError(reason, path));
        return failure(urlError(NSURLErrorCannotCreateFile, URL::fileURL(path)));
    }
    // Another program that starts may have taken it for an abandoned one before it was locked.
    if (facts.st_nlink == 0) {
        ::close(descriptor);
        return attach(std::move(path));
    }
    descriptor_ = descriptor;
    path_ = std::move(path);
    size_ = facts.st_size;
    return {};
}

DownloadFile::~DownloadFile()
{
    HeldMemory::shared().giveBack(std::move(held_));
    if (descriptor_ < 0)
        return;
    // While it is locked, so that what is removed is ours. Its delegate may have moved it away: then there is nothing to remove.
    if (!isKept_ && ::access(path_.c_str(), F_OK) == 0) // to look is cheaper than to fail
        ::unlink(path_.c_str());
    ::close(descriptor_);
}

Result<void> DownloadFile::append(std::string_view bytes)
{
    if (descriptor_ < 0 && held_.size() + bytes.size() <= mostHeld) {
        if (size_ == 0)
            held_ = HeldMemory::shared().take();
        // In one or two steps, and never twice of what may be held.
        if (auto needed = held_.size() + bytes.size(); needed > held_.capacity())
            held_.reserve(size_ == 0 ? needed : mostHeld);
        held_ += bytes;
        size_ += static_cast<std::int64_t>(bytes.size());
        return {};
    }
    TRY(writeOut());
    return write(bytes);
}

Result<void> DownloadFile::writeOut()
{
    if (descriptor_ >= 0)
        return {};
    auto path = [] { return downloadDirectory() + UUID().string() + growing; };
    auto made = attach(path());
    // Another program that starts may be looking at it right now, whether it is an abandoned one.
    if (!made)
        TRY(attach(path()));
    if (auto written = write(held_); !written) {
        ::unlink(path_.c_str());
        ::close(std::exchange(descriptor_, -1));
        size_ = static_cast<std::int64_t>(held_.size());
        return written;
    }
    HeldMemory::shared().giveBack(std::exchange(held_, {}));
    return {};
}

Result<void> DownloadFile::giveTo(const URL& destination)
{
    return descriptor_ < 0 ? writeNewFile(destination, held_)
                           : FileManager::defaultManager().moveItem(url(), destination);
}

Result<void> DownloadFile::write(std::string_view bytes)
{
    while (!bytes.empty()) {
        auto count = ::write(descriptor_, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return failure(writeError(errno, path_));
        size_ += count;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return {};
}

Result<void> DownloadFile::truncate(std::int64_t size)
{
    if (descriptor_ < 0)
        held_.resize(static_cast<std::size_t>(size));
    else if (::ftruncate(descriptor_, size) != 0)
        return failure(writeError(errno, path_));
    size_ = size;
    return {};
}

bool DownloadFile::moveTo(const std::string& path)
{
    if (::rename(path_.c_str(), path.c_str()) != 0)
        return false;
    path_ = path;
    return true;
}

} // namespace platform
