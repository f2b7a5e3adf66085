// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Result.h"

#include <cstddef>
#include <cstdint>
#include <expected>
#include <span>
#include <string>
#include <string_view>

#include <sys/types.h>

namespace platform {

// A file's name as it may be shown: well-formed, and without characters that would break a line or drive a terminal.
std::string shownName(const URL& file);

// Why a file gave nothing. Whoever knows its name makes the error.
struct FileFault {
    NSCocoaError code;
    std::string clause; // completes "couldn’t be opened because ..."
};
FileFault faultOf(int errorNumber);

// The error of a file that could not be read. `clause` completes "couldn’t be opened because ..." and, with a
// capital letter, is the failure reason.
Error fileError(NSCocoaError code, const URL& file, std::string_view clause);
// The same from an error number of the system.
Error fileError(int errorNumber, const URL& file);

// Bytes that may be read anywhere, by any thread, and may change meanwhile: a file, or a test's idea of one.
class ByteSource {
public:
    struct Status {
        std::uint64_t size = 0;
        std::int64_t modified = 0; // nanoseconds; any other value means that something was written

        bool operator==(const Status&) const = default;
    };

    virtual ~ByteSource() = default;
    // Fails with an error number.
    virtual std::expected<Status, int> status() = 0;
    // As pread does: how many bytes, 0 at the end, or a negated error number. May give fewer than asked for.
    virtual ssize_t read(std::span<char> into, std::uint64_t offset) = 0;
};

// Reads once, not counting reads that a signal interrupts.
ssize_t readSome(ByteSource& source, std::span<char> into, std::uint64_t offset);
// Reads until `into` is full or the end is met, and gives how many bytes, or a negated error number.
ssize_t readFully(ByteSource& source, std::span<char> into, std::uint64_t offset);

// A regular file, open for reading.
class RegularFile final : public ByteSource {
public:
    // Refuses everything but regular files, without opening it. Errors: the file-read codes.
    [[nodiscard]] static Result<RegularFile> open(const URL& url);

    RegularFile(RegularFile&& other) noexcept;
    RegularFile& operator=(RegularFile&&) = delete; // nothing needs it
    ~RegularFile() override;

    std::expected<Status, int> status() override;
    ssize_t read(std::span<char> into, std::uint64_t offset) override;
    // For what only the system can do with it; belongs to this.
    int descriptor() const { return descriptor_; }

private:
    explicit RegularFile(int descriptor)
        : descriptor_(descriptor)
    {
    }

    int descriptor_;
};

// The first bytes of a regular file, at most `limit`.
[[nodiscard]] Result<std::string> readFileHead(const URL& url, std::size_t limit);

// Succeeds when there is a directory at `url`. Errors: the file-read codes.
[[nodiscard]] Result<void> requireDirectory(const URL& url);

} // namespace platform
