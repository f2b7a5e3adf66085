// SPDX-License-Identifier: MIT
#include "platform/foundation/FileManager.h"

#include "platform/foundation/FileReading_p.h"
#include "platform/foundation/FileWriting_p.h"
#include "platform/foundation/UUID.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace platform {

namespace {

namespace fs = std::filesystem;

std::unexpected<Error> fault(const std::error_code& error, const URL& url, std::string_view deed)
{
    return std::unexpected(fileWriteError(error.value(), url, deed));
}

std::int64_t product(std::uint64_t count, std::uint64_t size)
{
    std::uint64_t bytes = 0;
    if (__builtin_mul_overflow(count, size, &bytes) || bytes > INT64_MAX)
        return INT64_MAX;
    return static_cast<std::int64_t>(bytes);
}

// Whether `path` is `directory` or below it, both being resolved.
bool isWithin(const fs::path& path, const fs::path& directory)
{
    return std::ranges::mismatch(path, directory).in2 == directory.end();
}

// Refuses to take the place of what exists, whatever it is. Gives 0 or an error number.
int renameToFree(const char* from, const char* to)
{
    if (::renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL && errno != ENOSYS)
        return errno;
    // A file system that cannot refuse: looking first is the best there is.
    struct stat status;
    if (::lstat(to, &status) == 0)
        return EEXIST;
    return ::rename(from, to) == 0 ? 0 : errno;
}

std::error_code copyAll(const std::string& from, const std::string& to)
{
    std::error_code error;
    auto source = fs::symlink_status(from, error);
    if (!fs::exists(source))
        return error ? error : std::make_error_code(std::errc::no_such_file_or_directory);
    if (fs::exists(fs::symlink_status(to, error)))
        return std::make_error_code(std::errc::file_exists);
    if (fs::is_directory(source)) {
        // A directory that is copied into itself would have no end.
        auto resolved = fs::canonical(from, error);
        auto parent = error ? fs::path() : fs::canonical(fs::path(to).parent_path(), error);
        if (error)
            return error;
        if (isWithin(parent, resolved))
            return std::make_error_code(std::errc::invalid_argument);
    }
    fs::copy(from, to, fs::copy_options::recursive | fs::copy_options::copy_symlinks, error);
    if (error) {
        std::error_code ignored; // the first failure is the one to tell of
        fs::remove_all(to, ignored);
    }
    return error;
}

// So that a new name never stands on contents that have not arrived.
std::error_code syncFile(const std::string& path)
{
    int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
    int fault = descriptor >= 0 && ::fsync(descriptor) == 0 ? 0 : errno;
    if (descriptor >= 0)
        ::close(descriptor);
    return {fault, std::generic_category()};
}

} // namespace

DirectoryEnumerator::DirectoryEnumerator(std::string directory)
    : directory_(std::move(directory))
{
    enter("");
}

void DirectoryEnumerator::enter(const std::string& relativePath)
{
    auto path = relativePath.empty() ? directory_ : directory_ + "/" + relativePath;
    // The directory itself may be given as a link; those below are not followed.
    int follow = relativePath.empty() ? 0 : O_NOFOLLOW;
    int descriptor = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | follow);
    if (descriptor < 0)
        return;
    auto* stream = ::fdopendir(descriptor);
    if (!stream) {
        ::close(descriptor);
        return;
    }
    Level level{relativePath.empty() ? std::string() : relativePath + "/", {}};
    while (auto* entry = ::readdir(stream)) {
        std::string_view name = entry->d_name;
        if (name != "." && name != "..")
            level.names.emplace_back(name);
    }
    ::closedir(stream);
    std::ranges::sort(level.names, std::ranges::greater());
    levels_.push_back(std::move(level));
}

std::optional<std::string> DirectoryEnumerator::next()
{
    if (previous_)
        enter(*std::exchange(previous_, std::nullopt));
    while (!levels_.empty() && levels_.back().names.empty())
        levels_.pop_back();
    if (levels_.empty())
        return std::nullopt;
    auto& level = levels_.back();
    previous_ = level.prefix + level.names.back();
    level.names.pop_back();
    return previous_;
}

FileManager& FileManager::defaultManager()
{
    // Never destroyed: threads may still run while the process exits.
    static auto& instance = *new FileManager([](const std::string& name) -> std::optional<std::string> {
        auto* value = std::getenv(name.c_str());
        return value ? std::optional<std::string>(value) : std::nullopt;
    });
    return instance;
}

FileManager::FileManager(Environment environment)
    : environment_(std::move(environment))
{
}

bool FileManager::fileExists(std::string_view path) const
{
    struct stat status;
    return ::stat(std::string(path).c_str(), &status) == 0;
}

std::unique_ptr<DirectoryEnumerator> FileManager::enumerator(std::string_view path) const
{
    std::string directory(path);
    int descriptor = ::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return nullptr;
    ::close(descriptor);
    return std::make_unique<DirectoryEnumerator>(withoutSlashAtEnd(std::move(directory)));
}

Result<void> FileManager::createDirectory(const URL& directory, IntermediateDirectories intermediate) const
{
    constexpr std::string_view deed = "created";
    auto path = TRY(writablePath(directory, deed));
    std::error_code error;
    if (intermediate == IntermediateDirectories::created)
        fs::create_directories(withoutSlashAtEnd(path), error);
    else if (!fs::create_directory(path, error) && !error)
        error = std::make_error_code(std::errc::file_exists);
    if (error)
        return fault(error, directory, deed);
    return {};
}

Result<void> FileManager::removeItem(const URL& item) const
{
    constexpr std::string_view deed = "removed";
    auto path = TRY(writablePath(item, deed));
    std::error_code error;
    auto count = fs::remove_all(withoutSlashAtEnd(path), error);
    if (!error && count == 0)
        error = std::make_error_code(std::errc::no_such_file_or_directory);
    if (error)
        return fault(error, item, deed);
    return {};
}

Result<void> FileManager::moveItem(const URL& from, const URL& to) const
{
    constexpr std::string_view deed = "moved";
    auto source = withoutSlashAtEnd(TRY(writablePath(from, deed)));
    auto destination = withoutSlashAtEnd(TRY(writablePath(to, deed)));
    int failure = renameToFree(source.c_str(), destination.c_str());
    std::error_code error(failure, std::generic_category());
    if (failure == EXDEV) {
        error = copyAll(source, destination);
        if (!error)
            fs::remove_all(source, error);
    }
    if (error)
        return fault(error, failure == EEXIST ? to : from, deed);
    return {};
}

Result<void> FileManager::copyItem(const URL& from, const URL& to) const
{
    constexpr std::string_view deed = "copied";
    auto source = withoutSlashAtEnd(TRY(writablePath(from, deed)));
    auto destination = withoutSlashAtEnd(TRY(writablePath(to, deed)));
    if (auto error = copyAll(source, destination))
        return fault(error, error == std::errc::file_exists ? to : from, deed);
    return {};
}

Result<void> FileManager::replaceItem(const URL& original, const URL& replacement) const
{
    constexpr std::string_view deed = "replaced";
    auto source = withoutSlashAtEnd(TRY(writablePath(replacement, deed)));
    auto destination = withoutSlashAtEnd(TRY(writablePath(original, deed)));
    struct stat own{};
    struct stat old{};
    if (::lstat(source.c_str(), &own) != 0)
        return std::unexpected(fileWriteError(errno, replacement, "moved"));
    if (::lstat(destination.c_str(), &old) != 0)
        return std::unexpected(fileWriteError(errno, original, deed));
    if (own.st_dev == old.st_dev && own.st_ino == old.st_ino)
        return {};
    if (S_ISREG(own.st_mode) && S_ISREG(old.st_mode))
        ::chmod(source.c_str(), old.st_mode & 0777); // some file systems have no permissions
    std::error_code error;
    fs::rename(source, destination, error);
    if (error == std::errc::cross_device_link) {
        auto draft = fs::path(destination).replace_filename(std::string(draftPrefix) + UUID().string());
        error = copyAll(source, draft);
        if (!error)
            error = syncFile(draft);
        if (!error)
            fs::rename(draft, destination, error);
        std::error_code ignored; // the first failure is the one to tell of
        fs::remove_all(error ? draft.string() : source, error ? ignored : error);
    }
    if (error)
        return fault(error, original, deed);
    return {};
}

Result<PropertyListDictionary> FileManager::attributesOfFileSystem(std::string_view path) const
{
    struct statvfs status;
    int answer;
    do {
        answer = ::statvfs(std::string(path).c_str(), &status);
    } while (answer != 0 && errno == EINTR);
    if (answer != 0)
        return std::unexpected(fileError(errno, URL::fileURL(path)));
    auto number = [](std::int64_t value) { return PropertyListValue(PropertyListValue::Storage(value)); };
    return PropertyListDictionary{
        {std::string(NSFileSystemSize), number(product(status.f_blocks, status.f_frsize))},
        {std::string(NSFileSystemFreeSize), number(product(status.f_bavail, status.f_frsize))},
        {std::string(NSFileSystemNodes), number(product(status.f_files, 1))},
        {std::string(NSFileSystemFreeNodes), number(product(status.f_favail, 1))},
    };
}

} // namespace platform
