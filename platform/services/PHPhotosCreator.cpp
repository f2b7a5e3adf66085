// SPDX-License-Identifier: MIT
#include "platform/services/PHPhotosCreator_p.h"

#include "platform/foundation/Bundle.h"
#include "platform/foundation/ProcessInfo.h"

#include <array>
#include <string_view>

#include <sys/xattr.h>

namespace platform {

namespace {

constexpr const char* attribute = "user.zelk.creator";

std::string program()
{
    auto identifier = Bundle::main()->bundleIdentifier();
    return identifier ? *identifier : ProcessInfo::processInfo().processName();
}

} // namespace

void markAsAddedByThisProgram(int descriptor)
{
    auto name = program();
    if (::fsetxattr(descriptor, attribute, name.data(), name.size(), 0) != 0)
        return; // the file is whole without it
}

bool wasAddedByThisProgram(const std::string& path)
{
    std::array<char, 512> value;
    auto length = ::lgetxattr(path.c_str(), attribute, value.data(), value.size());
    return length > 0 && program() == std::string_view(value.data(), static_cast<std::size_t>(length));
}

} // namespace platform
