// SPDX-License-Identifier: MIT
#include "platform/foundation/NSData.h"

#include "platform/foundation/FileReading_p.h"
#include "platform/foundation/Precondition.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <limits>
#include <utility>

#include <sys/mman.h>
#include <sys/vfs.h>

namespace platform {

namespace {

// Files of other machines can go away under a mapping at any time.
bool isOnThisMachine(int descriptor)
{
    constexpr std::array<unsigned long, 6> networks{0x6969 /* NFS */,      0xFF534D42 /* CIFS */,
                                                    0xFE534D42 /* SMB2 */, 0x65735546 /* FUSE */,
                                                    0x01021997 /* 9P */,   0x00C36400 /* Ceph */};
    struct statfs status;
    return ::fstatfs(descriptor, &status) == 0
        && std::ranges::find(networks, static_cast<unsigned long>(status.f_type) & 0xFFFFFFFF)
        == networks.end();
}

} // namespace

NSData::NSData(Token, std::string bytes)
    : own_(std::move(bytes))
    , length_(own_.size())
{
}

NSData::NSData(Token, std::unique_ptr<RegularFile> file, void* mapping, std::size_t length)
    : file_(std::move(file))
    , mapping_(mapping)
    , length_(length)
{
}

NSData::~NSData()
{
    if (mapping_)
        ::munmap(mapping_, length_);
}

std::shared_ptr<const NSData> NSData::dataWithBytes(std::string bytes)
{
    return std::make_shared<const NSData>(Token{}, std::move(bytes));
}

Result<std::shared_ptr<const NSData>> NSData::contentsOf(const URL& url, NSDataReadingOptions options)
{
    auto file = std::make_unique<RegularFile>(TRY(RegularFile::open(url)));
    auto status = file->status();
    if (!status)
        return std::unexpected(fileError(status.error(), url));
    auto isMapped = options == NSDataReadingOptions::alwaysMapped
        || (options == NSDataReadingOptions::mappedIfSafe && isOnThisMachine(file->descriptor()));
    // An empty mapping does not exist; a file in /proc says 0 and has more.
    if (!isMapped || status->size == 0)
        return dataWithBytes(TRY(readFileHead(url, std::numeric_limits<std::size_t>::max())));
    auto length = static_cast<std::size_t>(status->size);
    auto* mapping = ::mmap(nullptr, length, PROT_READ, MAP_PRIVATE, file->descriptor(), 0);
    if (mapping == MAP_FAILED)
        return std::unexpected(fileError(errno, url));
    return std::make_shared<const NSData>(Token{}, std::move(file), mapping, length);
}

std::span<const std::byte> NSData::bytes() const
{
    return mapping_ ? std::span(static_cast<const std::byte*>(mapping_), length_)
                    : std::as_bytes(std::span(own_));
}

bool NSData::copyBytes(std::span<char> into) const
{
    precondition(into.size() == length_, "the copy takes exactly length() bytes");
    if (!file_) {
        std::ranges::copy(own_, into.begin());
        return true;
    }
    // Not from the mapping, where a page that is gone is a signal instead of an answer.
    return readFully(*file_, into, 0) == static_cast<ssize_t>(length_);
}

} // namespace platform
