// SPDX-License-Identifier: MIT
#include "platform/foundation/FileWriting.h"

#include "platform/foundation/FileReading_p.h"
#include "platform/foundation/FileWriting_p.h"
#include "platform/foundation/URL.h"
#include "platform/foundation/UUID.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

namespace {

constexpr std::string_view saved = "saved";

struct WriteFault {
    NSCocoaError code;
    std::string clause;
};

WriteFault writeFaultOf(int errorNumber)
{
    switch (errorNumber) {
    case ENOENT:
    case ENOTDIR:
        return {NSCocoaError::fileNoSuchFile, "there is no such file or folder"};
    case EACCES:
    case EPERM:
        return {NSCocoaError::fileWriteNoPermission, "you don’t have permission"};
    case EEXIST:
    case ENOTEMPTY:
        return {NSCocoaError::fileWriteFileExists, "something with this name exists already"};
    case ENAMETOOLONG:
    case EINVAL:
        return {NSCocoaError::fileWriteInvalidFileName, "its name is not one that a file can have"};
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return {NSCocoaError::fileWriteOutOfSpace, "there is not enough free space"};
    case EROFS:
        return {NSCocoaError::fileWriteVolumeReadOnly, "the disk is read-only"};
    case EISDIR:
        return {NSCocoaError::fileWriteUnknown, "it is a folder"};
    default: {
        char buffer[256];
        return {NSCocoaError::fileWriteUnknown,
                "the system answered “" + std::string(strerror_r(errorNumber, buffer, sizeof buffer)) + "”"};
    }
    }
}

// Where the bytes have to go, and what is there. Fails with an error number.
struct Destination {
    std::string path;
    std::optional<struct stat> present;
};

std::expected<Destination, int> destinationOf(std::string path)
{
    // A link that leads nowhere is replaced: what it meant cannot be told from here.
    std::unique_ptr<char, decltype(&std::free)> resolved(::realpath(path.c_str(), nullptr), &std::free);
    if (!resolved) {
        if (errno == ENOENT)
            return Destination{std::move(path), std::nullopt};
        return std::unexpected(errno);
    }
    Destination found{resolved.get(), std::nullopt};
    struct stat status;
    if (::stat(found.path.c_str(), &status) == 0)
        found.present = status;
    else if (errno != ENOENT)
        return std::unexpected(errno);
    if (found.present && !S_ISREG(found.present->st_mode))
        return std::unexpected(S_ISDIR(found.present->st_mode) ? EISDIR : ENODEV);
    return found;
}

std::string directoryOf(const std::string& path)
{
    auto slash = path.rfind('/');
    return slash == path.npos ? "." : path.substr(0, std::max<std::size_t>(slash, 1));
}

// A file that is made, and removed unless it is kept. Members give 0 or an error number.
class DraftFile {
public:
    explicit DraftFile(std::string path)
        : path_(std::move(path))
    {
    }
    ~DraftFile()
    {
        if (descriptor_ >= 0)
            ::close(descriptor_);
        if (isMade_)
            ::unlink(path_.c_str());
    }
    DraftFile(const DraftFile&) = delete; // it removes its file
    DraftFile& operator=(const DraftFile&) = delete;

    int create(unsigned permissions)
    {
        descriptor_ = ::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW,
                             static_cast<mode_t>(permissions));
        isMade_ = descriptor_ >= 0;
        return descriptor_ >= 0 ? 0 : errno;
    }
    // Without a name, which link() gives it. Where the file system cannot, there is a fault.
    int createNameless(unsigned permissions)
    {
        descriptor_ = ::open(directoryOf(path_).c_str(), O_WRONLY | O_TMPFILE | O_CLOEXEC,
                             static_cast<mode_t>(permissions));
        return descriptor_ >= 0 ? 0 : errno;
    }
    int link()
    {
        // The first is for the system's administrator, and for everybody on a system of today; the second needs /proc.
        auto place = "/proc/self/fd/" + std::to_string(descriptor_);
        isMade_ = ::linkat(descriptor_, "", AT_FDCWD, path_.c_str(), AT_EMPTY_PATH) == 0
            || (errno == ENOENT
                && ::linkat(AT_FDCWD, place.c_str(), AT_FDCWD, path_.c_str(), AT_SYMLINK_FOLLOW) == 0);
        return isMade_ ? 0 : errno;
    }
    int takeAfter(const struct stat& other)
    {
        struct stat own;
        if (::fstat(descriptor_, &own) != 0)
            return errno;
        auto permissions = other.st_mode & 07777;
        // Without its group, what the group was allowed would be allowed to strangers.
        if (own.st_gid != other.st_gid && ::fchown(descriptor_, static_cast<uid_t>(-1), other.st_gid) != 0)
            permissions &= ~static_cast<mode_t>(S_IRWXG | S_ISGID);
        // Some file systems have no permissions to set: nothing is lost then.
        if (::fchmod(descriptor_, permissions) != 0 && errno != EPERM && errno != ENOTSUP)
            return errno;
        return 0;
    }
    int write(std::string_view bytes)
    {
        while (!bytes.empty()) {
            auto count = ::write(descriptor_, bytes.data(), bytes.size());
            if (count < 0 && errno == EINTR)
                continue;
            if (count < 0)
                return errno;
            bytes.remove_prefix(static_cast<std::size_t>(count));
        }
        return 0;
    }
    int sync() { return ::fsync(descriptor_) == 0 ? 0 : errno; }
    int close()
    {
        // Network file systems tell of a full disk here at the latest.
        return ::close(std::exchange(descriptor_, -1)) == 0 || errno == EINTR ? 0 : errno;
    }
    int rename(const std::string& path)
    {
        if (::rename(path_.c_str(), path.c_str()) != 0)
            return errno;
        keep();
        return 0;
    }
    void keep() { isMade_ = false; }

private:
    std::string path_;
    int descriptor_ = -1;
    bool isMade_ = false;
};

int syncDirectory(const std::string& directory)
{
    int descriptor = ::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    // A directory that may be written but not read cannot be synced: the rename stands all the same.
    if (descriptor < 0)
        return 0;
    int fault = ::fsync(descriptor) == 0 ? 0 : errno;
    ::close(descriptor);
    return fault == EINVAL || fault == EBADF || fault == ENOTSUP ? 0 : fault; // cannot sync directories
}

int replaceContents(std::string path, std::string_view bytes, unsigned permissions)
{
    auto destination = destinationOf(std::move(path));
    if (!destination)
        return destination.error();
    auto directory = directoryOf(destination->path);
    DraftFile draft(directory + "/" + std::string(draftPrefix) + UUID().string());
    int fault = draft.create(permissions);
    if (!fault && destination->present)
        fault = draft.takeAfter(*destination->present);
    if (!fault)
        fault = draft.write(bytes);
    // Before the rename: after a loss of power the new name must not stand on contents that never arrived.
    if (!fault)
        fault = draft.sync();
    if (!fault)
        fault = draft.close();
    if (!fault)
        fault = draft.rename(destination->path);
    return fault ? fault : syncDirectory(directory);
}

enum class Making { inOneStep, inSight };

int makeFile(const std::string& path, std::string_view bytes, unsigned permissions, Making making)
{
    DraftFile file(path);
    bool isNameless = making == Making::inOneStep;
    int fault = isNameless ? file.createNameless(permissions) : file.create(permissions);
    if (!fault)
        fault = file.write(bytes);
    if (!fault && isNameless)
        fault = file.link();
    if (!fault)
        fault = file.close();
    if (!fault)
        file.keep();
    return fault;
}

} // namespace

Error fileWriteError(NSCocoaError code, const URL& file, std::string_view deed, std::string_view clause)
{
    std::string reason(clause);
    if (!reason.empty() && reason[0] >= 'a' && reason[0] <= 'z')
        reason[0] = static_cast<char>(reason[0] - 'a' + 'A');
    auto description = "“" + shownName(file) + "” couldn’t be " + std::string(deed) + " because "
        + std::string(clause) + ".";
    return NSError(code,
                   {{std::string(NSLocalizedDescriptionKey), std::move(description)},
                    {std::string(NSLocalizedFailureReasonErrorKey), std::move(reason)},
                    {std::string(NSFilePathErrorKey), file.lastPathComponent()}});
}

Error fileWriteError(int errorNumber, const URL& file, std::string_view deed)
{
    auto fault = writeFaultOf(errorNumber);
    return fileWriteError(fault.code, file, deed, fault.clause);
}

Result<std::string> writablePath(const URL& url, std::string_view deed)
{
    if (!url.isFileURL())
        return std::unexpected(fileWriteError(NSCocoaError::fileWriteUnsupportedScheme, url, deed,
                                              "URLs of type “" + url.scheme() + "” aren’t supported"));
    auto path = url.path();
    if (path.find('\0') != std::string::npos)
        return std::unexpected(fileWriteError(EINVAL, url, deed));
    return path;
}

std::string withoutSlashAtEnd(std::string path)
{
    while (path.size() > 1 && path.back() == '/')
        path.pop_back();
    return path;
}

Result<void> writeFileAtomically(const URL& url, std::string_view bytes, FileWritingOptions options)
{
    auto path = TRY(writablePath(url, saved));
    if (path.ends_with('/'))
        return std::unexpected(fileWriteError(EISDIR, url, saved));
    if (int fault = replaceContents(std::move(path), bytes, options.permissions))
        return std::unexpected(fileWriteError(fault, url, saved));
    return {};
}

Result<void> writeNewFile(const URL& url, std::string_view bytes, FileWritingOptions options)
{
    auto path = withoutSlashAtEnd(TRY(writablePath(url, saved)));
    int fault = makeFile(path, bytes, options.permissions, Making::inOneStep);
    // Not every file system can. Where this fails for another reason, that is found again.
    if (fault && fault != EEXIST)
        fault = makeFile(path, bytes, options.permissions, Making::inSight);
    if (fault)
        return std::unexpected(fileWriteError(fault, url, saved));
    return {};
}

} // namespace platform
