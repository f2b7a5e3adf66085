// SPDX-License-Identifier: MIT
#include "platform/foundation/FileReading_p.h"

#include "platform/foundation/URL.h"
#include "platform/foundation/UTF8.h"

#include <cerrno>
#include <cstring>
#include <optional>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

namespace {

// What a file is, if it is not one that may be read.
std::optional<std::string_view> refusal(mode_t mode)
{
    if (S_ISREG(mode))
        return std::nullopt;
    if (S_ISDIR(mode))
        return "it is a directory";
    if (S_ISFIFO(mode))
        return "it is a named pipe";
    if (S_ISSOCK(mode))
        return "it is a socket";
    return "it is a device";
}

Result<std::string> usablePath(const URL& url)
{
    if (!url.isFileURL())
        return std::unexpected(fileError(NSCocoaError::fileReadUnsupportedScheme, url,
                                         "URLs of type “" + url.scheme() + "” aren’t supported"));
    auto path = url.path();
    if (path.find('\0') != std::string::npos)
        return std::unexpected(fileError(EINVAL, url));
    return path;
}

} // namespace

std::string shownName(const URL& file)
{
    auto name = repairedUTF8(file.lastPathComponent());
    for (char& character : name) {
        if (static_cast<unsigned char>(character) < ' ' || character == 0x7F)
            character = '?';
    }
    return name;
}

FileFault faultOf(int errorNumber)
{
    switch (errorNumber) {
    case ENOENT:
    case ENOTDIR:
        return {NSCocoaError::fileReadNoSuchFile, "there is no such file"};
    case EACCES:
    case EPERM:
        return {NSCocoaError::fileReadNoPermission, "you don’t have permission to view it"};
    case ENAMETOOLONG:
    case EINVAL:
        return {NSCocoaError::fileReadInvalidFileName, "its name is not one that a file can have"};
    case EFBIG:
    case EOVERFLOW:
    case ENOMEM:
        return {NSCocoaError::fileReadTooLarge, "it is too large"};
    case EISDIR:
        return {NSCocoaError::fileReadUnknown, "it is a directory"};
    case ELOOP:
        return {NSCocoaError::fileReadUnknown, "its symbolic links lead in a circle"};
    default: {
        char buffer[256];
        const char* text = strerror_r(errorNumber, buffer, sizeof buffer);
        return {NSCocoaError::fileReadUnknown, "the system answered “" + std::string(text) + "”"};
    }
    }
}

Error fileError(NSCocoaError code, const URL& file, std::string_view clause)
{
    std::string reason(clause);
    if (!reason.empty() && reason[0] >= 'a' && reason[0] <= 'z')
        reason[0] = static_cast<char>(reason[0] - 'a' + 'A');
    auto description =
        "The file “" + shownName(file) + "” couldn’t be opened because " + std::string(clause) + ".";
    return NSError(code,
                   {{std::string(NSLocalizedDescriptionKey), std::move(description)},
                    {std::string(NSLocalizedFailureReasonErrorKey), std::move(reason)},
                    {std::string(NSFilePathErrorKey), file.lastPathComponent()}});
}

Error fileError(int errorNumber, const URL& file)
{
    auto fault = faultOf(errorNumber);
    return fileError(fault.code, file, fault.clause);
}

ssize_t readSome(ByteSource& source, std::span<char> into, std::uint64_t offset)
{
    while (true) {
        auto count = source.read(into, offset);
        if (count != -EINTR)
            return count;
    }
}

ssize_t readFully(ByteSource& source, std::span<char> into, std::uint64_t offset)
{
    std::size_t filled = 0;
    while (filled < into.size()) {
        auto count = readSome(source, into.subspan(filled), offset + filled);
        if (count < 0)
            return count;
        if (count == 0)
            break;
        filled += static_cast<std::size_t>(count);
    }
    return static_cast<ssize_t>(filled);
}

Result<RegularFile> RegularFile::open(const URL& url)
{
    auto path = TRY(usablePath(url));
    // Looking first keeps devices unopened (opening alone can rewind a tape); looking again at what was opened
    // catches a file that was exchanged in between, and O_NONBLOCK keeps a pipe from blocking then.
    struct stat status;
    if (::stat(path.c_str(), &status) != 0)
        return std::unexpected(fileError(errno, url));
    if (auto what = refusal(status.st_mode))
        return std::unexpected(fileError(NSCocoaError::fileReadUnknown, url, *what));
    int descriptor;
    do {
        descriptor = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    } while (descriptor < 0 && errno == EINTR);
    if (descriptor < 0)
        return std::unexpected(fileError(errno, url));
    RegularFile file(descriptor);
    if (::fstat(descriptor, &status) != 0)
        return std::unexpected(fileError(errno, url));
    if (auto what = refusal(status.st_mode))
        return std::unexpected(fileError(NSCocoaError::fileReadUnknown, url, *what));
    return file;
}

RegularFile::RegularFile(RegularFile&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1))
{
}

RegularFile::~RegularFile()
{
    if (descriptor_ >= 0)
        ::close(descriptor_);
}

std::expected<ByteSource::Status, int> RegularFile::status()
{
    struct stat status;
    if (::fstat(descriptor_, &status) != 0)
        return std::unexpected(errno);
    return Status{
        .size = static_cast<std::uint64_t>(status.st_size),
        .modified = static_cast<std::int64_t>(status.st_mtim.tv_sec) * 1'000'000'000 + status.st_mtim.tv_nsec,
    };
}

ssize_t RegularFile::read(std::span<char> into, std::uint64_t offset)
{
    auto count = ::pread(descriptor_, into.data(), into.size(), static_cast<off_t>(offset));
    return count < 0 ? -errno : count;
}

Result<std::string> readFileHead(const URL& url, std::size_t limit)
{
    auto file = TRY(RegularFile::open(url));
    auto status = file.status();
    if (!status)
        return std::unexpected(fileError(status.error(), url));
    // A file in /proc says 0 and has more: read up to the end, not up to the size.
    std::string bytes;
    for (std::size_t wanted = static_cast<std::size_t>(status->size) + 1; bytes.size() < limit; wanted *= 2) {
        auto begin = bytes.size();
        bytes.resize(std::min(std::max<std::size_t>(wanted, 4096), limit));
        auto count = readFully(file, std::span(bytes).subspan(begin), begin);
        if (count < 0)
            return std::unexpected(fileError(static_cast<int>(-count), url));
        bool isAtEnd = begin + static_cast<std::size_t>(count) < bytes.size();
        bytes.resize(begin + static_cast<std::size_t>(count));
        if (isAtEnd)
            break;
    }
    return bytes;
}

Result<void> requireDirectory(const URL& url)
{
    auto path = TRY(usablePath(url));
    struct stat status;
    if (::stat(path.c_str(), &status) != 0)
        return std::unexpected(fileError(errno, url));
    if (!S_ISDIR(status.st_mode))
        return std::unexpected(fileError(NSCocoaError::fileReadUnknown, url, "it is not a directory"));
    return {};
}

} // namespace platform
