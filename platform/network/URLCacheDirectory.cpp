// SPDX-License-Identifier: MIT
#include "platform/network/URLCacheDirectory_p.h"

#include "platform/foundation/FileManager.h"
#include "platform/network/HTTPCaching.h"
#include "platform/network/URLCacheKey_p.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <random>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

namespace platform {

namespace {

constexpr std::size_t digestSize = 40;
constexpr std::string_view suffix = ".answer";
constexpr std::string_view draftSuffix = ".draft";
// A process that is killed leaves its draft; no write takes this long.
constexpr std::int64_t abandonedAfter = 3600LL * 1'000'000'000;
// No capacity is larger by far, and a file that claims more is none of ours.
constexpr off_t largestFile = off_t(1) << 30;
// Trimming removes a little more than it must, so that it is not needed again at once.
constexpr std::int64_t trimFraction = 16;
// Until the next scan, which is the first to ask.
constexpr std::size_t mostUsesNoted = 8192;

class Descriptor {
public:
    explicit Descriptor(int number)
        : number_(number)
    {
    }
    Descriptor(const Descriptor&) = delete; // closed once
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor()
    {
        if (number_ >= 0)
            ::close(number_);
    }
    int get() const { return number_; }
    // False when the file system reports now that a write has failed.
    bool close() { return ::close(std::exchange(number_, -1)) == 0; }

private:
    int number_;
};

bool isDigest(std::string_view text)
{
    return text.size() == digestSize && std::all_of(text.begin(), text.end(), [](char c) {
               return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f');
           });
}

// Whether caches give files such names: DIGEST.answer, DIGEST-DIGEST.answer.
bool isAnswerName(std::string_view name)
{
    if (!name.ends_with(suffix))
        return false;
    name.remove_suffix(suffix.size());
    return isDigest(name)
        || (name.size() == 2 * digestSize + 1 && name[digestSize] == '-'
            && isDigest(name.substr(0, digestSize)) && isDigest(name.substr(digestSize + 1)));
}

bool isDraftName(std::string_view name)
{
    return name.ends_with(draftSuffix) && name.size() > digestSize && isDigest(name.substr(0, digestSize));
}

std::int64_t nanoseconds(const timespec& time)
{
    return std::int64_t(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

std::int64_t presentNanoseconds()
{
    timespec time{};
    ::clock_gettime(CLOCK_REALTIME, &time);
    return nanoseconds(time);
}

void touch(int descriptor)
{
    constexpr std::array<timespec, 2> onlyModified{timespec{0, UTIME_OMIT}, timespec{0, UTIME_NOW}};
    ::futimens(descriptor, onlyModified.data()); // whose file it is not may keep its time
}

std::string nameOfKey(const std::string& key)
{
    return urlCacheDigest(key).append(suffix);
}

std::string variantDigest(const URLCacheVariants& variants, const URLRequest& request)
{
    return urlCacheDigest(
        std::string(variants.generation).append(httpcaching::selection(request, variants.fields)));
}

std::string nameOfVariant(const std::string& key, const std::string& variant)
{
    return urlCacheDigest(key).append("-").append(variant).append(suffix);
}

std::string newGeneration()
{
    std::random_device random;
    std::array<char, 33> text{};
    std::snprintf(text.data(), text.size(), "%08x%08x%08x%08x", random(), random(), random(), random());
    return text.data();
}

// The rest of a file; nothing when it cannot be read.
std::optional<std::string> contents(int descriptor, std::size_t size)
{
    std::string bytes(size, '\0');
    std::size_t filled = 0;
    while (filled < size) {
        auto count = ::read(descriptor, bytes.data() + filled, size - filled);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return std::nullopt;
        filled += static_cast<std::size_t>(count);
    }
    return bytes;
}

bool writeAll(int descriptor, std::string_view bytes)
{
    while (!bytes.empty()) {
        auto count = ::write(descriptor, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

} // namespace

URLCacheDirectory::URLCacheDirectory(const URL& directory)
    : directory_(directory.path())
{
}

std::string URLCacheDirectory::path(std::string_view name) const
{
    return std::string(directory_).append("/").append(name);
}

URLCacheRecord URLCacheDirectory::read(const std::string& name) const
{
    auto path = this->path(name);
    Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY));
    struct stat status{};
    if (file.get() < 0 || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode))
        return {};
    URLCacheRecord record;
    if (status.st_size <= largestFile)
        if (auto bytes = contents(file.get(), static_cast<std::size_t>(status.st_size)))
            record = decodeURLCacheRecord(*std::move(bytes));
    // At worst a sound one goes that another process has put there meanwhile.
    if (std::holds_alternative<std::monostate>(record))
        ::unlink(path.c_str());
    else
        touch(file.get());
    return record;
}

std::optional<URLCacheDirectory::Found> URLCacheDirectory::find(const std::string& key,
                                                                const URLRequest& request) const
{
    auto record = read(nameOfKey(key));
    if (auto answer = std::get_if<URLCacheAnswer>(&record)) {
        if (answer->url != key || !answer->variant.empty())
            return std::nullopt;
        return Found{std::move(answer->response), {}};
    }
    auto variants = std::get_if<URLCacheVariants>(&record);
    if (!variants || variants->url != key)
        return std::nullopt;
    auto variant = variantDigest(*variants, request);
    auto chosen = read(nameOfVariant(key, variant));
    auto answer = std::get_if<URLCacheAnswer>(&chosen);
    if (!answer || answer->url != key || answer->variant != variant)
        return std::nullopt;
    return Found{std::move(answer->response), std::move(variants->fields)};
}

void URLCacheDirectory::noteUse(const std::string& key)
{
    std::lock_guard lock(mutex_);
    if (used_.size() < mostUsesNoted)
        used_.insert(key);
}

void URLCacheDirectory::store(const std::string& key, const URLRequest& request,
                              const std::vector<std::string>& fields, const CachedURLResponse& response,
                              std::int64_t capacity)
{
    if (fields.empty())
        write(nameOfKey(key), encodedHead({key, {}, response}), response.data());
    else
        writeVariant(key, request, fields, response);
    // Other processes write too: what they wrote is seen at the next scan at the latest.
    if (!usageAtScan_ || writtenSinceScan_ > capacity / trimFraction
        || *usageAtScan_ + writtenSinceScan_ > capacity)
        trim(capacity);
}

void URLCacheDirectory::writeVariant(const std::string& key, const URLRequest& request,
                                     const std::vector<std::string>& fields,
                                     const CachedURLResponse& response)
{
    auto name = nameOfKey(key);
    auto record = read(name);
    auto present = std::get_if<URLCacheVariants>(&record);
    auto isSameList = present && present->url == key && present->fields == fields;
    auto variants = isSameList ? *present : URLCacheVariants{key, newGeneration(), fields};
    auto variant = variantDigest(variants, request);
    if (write(nameOfVariant(key, variant), encodedHead({key, variant, response}), response.data())
        && !isSameList)
        write(name, encoded(variants), {});
}

// Without bringing it to the disk: what a loss of power leaves is whole or fails its checksum, and is only a cache.
// What is in that place is outdated, and goes even when the new file cannot be written.
bool URLCacheDirectory::write(const std::string& name, std::string_view head, std::string_view body)
{
    static std::atomic<unsigned> counter;
    auto target = path(name);
    auto draft = std::string(target).append(".").append(std::to_string(::getpid()));
    draft.append("-").append(std::to_string(++counter)).append(draftSuffix);
    constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW;
    int number = ::open(draft.c_str(), flags, 0600);
    if (number < 0 && errno == ENOENT) {
        auto directory = URL::fileURL(directory_);
        auto parent = directory.deletingLastPathComponent();
        if (FileManager::defaultManager().createDirectory(parent, IntermediateDirectories::created)
            && (::mkdir(directory_.c_str(), 0700) == 0 || errno == EEXIST))
            number = ::open(draft.c_str(), flags, 0600);
    }
    Descriptor file(number);
    if (number >= 0 && writeAll(number, head) && writeAll(number, body) && file.close()
        && ::rename(draft.c_str(), target.c_str()) == 0) {
        writtenSinceScan_ += static_cast<std::int64_t>(head.size() + body.size());
        return true;
    }
    if (number >= 0)
        ::unlink(draft.c_str());
    ::unlink(target.c_str());
    return false;
}

void URLCacheDirectory::remove(const std::string& key)
{
    // Variants are found by this file only; they go when they have not been used for longest.
    ::unlink(path(nameOfKey(key)).c_str());
}

void URLCacheDirectory::clear()
{
    for (const auto& file : files())
        ::unlink(path(file.name).c_str());
    usageAtScan_ = 0;
    writtenSinceScan_ = 0;
}

std::int64_t URLCacheDirectory::usage() const
{
    std::int64_t usage = 0;
    for (const auto& file : files())
        usage += file.size;
    return usage;
}

// Removes drafts that nobody writes any more on the way.
std::vector<URLCacheDirectory::File> URLCacheDirectory::files() const
{
    std::vector<File> files;
    auto* directory = ::opendir(directory_.c_str());
    if (!directory)
        return files;
    auto now = presentNanoseconds();
    while (auto* entry = ::readdir(directory)) {
        std::string_view name = entry->d_name;
        struct stat status{};
        if ((!isAnswerName(name) && !isDraftName(name))
            || ::fstatat(::dirfd(directory), entry->d_name, &status, AT_SYMLINK_NOFOLLOW) != 0
            || !S_ISREG(status.st_mode))
            continue;
        auto modified = nanoseconds(status.st_mtim);
        if (isAnswerName(name))
            files.push_back({std::string(name), status.st_size, modified});
        else if (now - modified > abandonedAfter)
            ::unlinkat(::dirfd(directory), entry->d_name, 0);
    }
    ::closedir(directory);
    return files;
}

// What was used in memory counts as used on disk.
void URLCacheDirectory::passOnUses(std::vector<File>& files)
{
    std::set<std::string> used;
    {
        std::lock_guard lock(mutex_);
        used.swap(used_);
    }
    std::set<std::string> digests;
    for (const auto& key : used)
        digests.insert(urlCacheDigest(key));
    if (digests.empty())
        return;
    auto now = presentNanoseconds();
    for (auto& file : files) {
        if (!digests.contains(file.name.substr(0, digestSize)))
            continue;
        file.lastUse = now;
        if (Descriptor opened(
                ::open(path(file.name).c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
            opened.get() >= 0)
            touch(opened.get());
    }
}

void URLCacheDirectory::trim(std::int64_t capacity)
{
    auto files = this->files();
    passOnUses(files);
    std::int64_t usage = 0;
    for (const auto& file : files)
        usage += file.size;
    if (usage > capacity) {
        std::sort(files.begin(), files.end(),
                  [](const File& a, const File& b) { return a.lastUse < b.lastUse; });
        auto target = capacity - capacity / trimFraction;
        for (auto file = files.begin(); file != files.end() && usage > target; ++file) {
            ::unlink(path(file->name).c_str());
            usage -= file->size;
        }
    }
    usageAtScan_ = usage;
    writtenSinceScan_ = 0;
}

} // namespace platform
