// SPDX-License-Identifier: MIT
// Pictures from files and to files. The bytes are a stranger's.
#include "platform/graphics/UIImage_p.h"

#include "platform/graphics/decodeImage.h"

#include <QtCore/QBuffer>

#include <atomic>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

namespace {

constexpr off_t maximumFileSize = 512LL * 1024 * 1024;

class FileDescriptor {
public:
    explicit FileDescriptor(int descriptor)
        : descriptor_(descriptor)
    {
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor()
    {
        if (descriptor_ >= 0)
            ::close(descriptor_);
    }
    int get() const { return descriptor_; }
    // The result of closing, which is where some file systems report a failed write.
    int close() { return ::close(std::exchange(descriptor_, -1)); }

private:
    int descriptor_;
};

std::string lastComponent(std::string_view path)
{
    auto slash = path.find_last_of('/');
    return std::string(slash == std::string_view::npos ? path : path.substr(slash + 1));
}

NSError::UserInfo about(std::string_view path, std::string reason)
{
    NSError::UserInfo info{{std::string(NSLocalizedFailureReasonErrorKey), std::move(reason)}};
    if (!path.empty())
        info.emplace(NSFilePathErrorKey, lastComponent(path));
    return info;
}

std::unexpected<Error> readFailure(int code, std::string_view path)
{
    auto cocoa = code == ENOENT || code == ENOTDIR ? NSCocoaError::fileReadNoSuchFile
        : code == EACCES || code == EPERM          ? NSCocoaError::fileReadNoPermission
                                                   : NSCocoaError::fileReadUnknown;
    return failure(cocoa, about(path, std::strerror(code)));
}

std::unexpected<Error> writeFailure(int code, std::string_view path)
{
    return failure(NSError(NSPOSIXErrorDomain, code, about(path, std::strerror(code))));
}

bool writeAll(int descriptor, std::string_view bytes)
{
    while (!bytes.empty()) {
        auto written = ::write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

} // namespace

Result<UIImage> UIImage::fromData(std::span<const std::byte> data, CGFloat scale)
{
    return TRY(decodeImage(data, {.scale = scale})).image;
}

Result<UIImage> UIImage::fromFile(std::string_view path, CGFloat scale)
{
    // Without waiting, so that a pipe nobody writes to cannot stop us before we see what it is.
    FileDescriptor file(::open(std::string(path).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status{};
    if (file.get() < 0 || ::fstat(file.get(), &status) != 0)
        return readFailure(errno, path);
    if (!S_ISREG(status.st_mode))
        return failure(NSCocoaError::fileReadUnknown, about(path, "It is not a regular file."));
    if (status.st_size > maximumFileSize)
        return failure(NSCocoaError::fileReadTooLarge, about(path, "The file is too large for a picture."));

    std::vector<std::byte> data(static_cast<std::size_t>(status.st_size));
    std::size_t filled = 0;
    while (filled < data.size()) {
        auto count = ::read(file.get(), data.data() + filled, data.size() - filled);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return readFailure(errno, path);
        if (count == 0)
            break; // it shrank; the decoder judges what is left
        filled += static_cast<std::size_t>(count);
    }
    auto image = fromData(std::span(data).first(filled), scale);
    if (image)
        return image;
    auto& error = image.error().bridged();
    return failure(NSError(error.domain(), error.code(), about(path, error.localizedFailureReason())));
}

std::string UIImage::pngData() const
{
    if (isEmpty())
        return {};
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    // Light compression: a third larger than the best, and five times as fast.
    bitmap_->image().save(&buffer, "PNG", 80);
    return std::string(bytes.constData(), static_cast<std::size_t>(bytes.size()));
}

Result<void> UIImage::writePNG(std::string_view path) const
{
    auto bytes = pngData();
    if (bytes.empty())
        return failure(NSCocoaError::fileReadUnknown, about(path, "There is no picture to write."));

    static std::atomic<unsigned> counter;
    auto target = std::string(path);
    auto beside = target + "." + std::to_string(::getpid()) + "." + std::to_string(++counter) + ".part";
    FileDescriptor file(::open(beside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    if (file.get() < 0)
        return writeFailure(errno, path);
    if (!writeAll(file.get(), bytes) || file.close() != 0 || ::rename(beside.c_str(), target.c_str()) != 0) {
        auto code = errno;
        ::unlink(beside.c_str());
        return writeFailure(code, path);
    }
    return {};
}

} // namespace platform
