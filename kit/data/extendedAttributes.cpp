// SPDX-License-Identifier: MIT
#include "kit/data/extendedAttributes.h"

#include "platform/foundation/UTF8.h"

#include <cerrno>

#include <sys/xattr.h>

namespace zelk {

namespace {

bool isWhole(std::string_view text)
{
    return text.find('\0') == std::string_view::npos;
}

std::unexpected<platform::Error> posixFailure(int errorNumber)
{
    return platform::failure(platform::NSError(platform::NSPOSIXErrorDomain, errorNumber));
}

} // namespace

std::optional<std::string> getXAttr(const platform::FileManager&, std::string_view filePath,
                                    std::string_view key)
{
    if (!isWhole(filePath) || !isWhole(key))
        return std::nullopt;
    std::string path(filePath), name(key);
    auto size = ::getxattr(path.c_str(), name.c_str(), nullptr, 0);
    if (size < 0)
        return std::nullopt;
    std::string value(static_cast<std::size_t>(size), '\0');
    size = ::getxattr(path.c_str(), name.c_str(), value.data(), value.size());
    if (size < 0)
        return std::nullopt;
    // It may have become shorter since it was measured.
    if (static_cast<std::size_t>(size) < value.size())
        value.resize(static_cast<std::size_t>(size));
    return platform::isWellFormedUTF8(value) ? std::optional(std::move(value)) : std::nullopt;
}

platform::Result<void> setXAttr(const platform::FileManager&, std::string_view filePath, std::string_view key,
                                std::string_view value)
{
    if (!isWhole(filePath) || !isWhole(key))
        return posixFailure(EINVAL);
    if (::setxattr(std::string(filePath).c_str(), std::string(key).c_str(), value.data(), value.size(), 0)
        < 0)
        return posixFailure(errno);
    return {};
}

platform::Result<void> removeXattr(const platform::FileManager&, std::string_view filePath,
                                   std::string_view key)
{
    if (!isWhole(filePath) || !isWhole(key))
        return posixFailure(EINVAL);
    if (::removexattr(std::string(filePath).c_str(), std::string(key).c_str()) < 0)
        return posixFailure(errno);
    return {};
}

} // namespace zelk
