// SPDX-License-Identifier: MIT
#include "platform/foundation/Precondition.h"

#include <cstdio>
#include <cstdlib>

namespace platform {

void preconditionFailure(std::string_view reason, std::source_location at)
{
    std::string_view file = at.file_name();
    if (auto slash = file.rfind('/'); slash != std::string_view::npos)
        file.remove_prefix(slash + 1);
    std::fprintf(stderr, "Fatal: %.*s (%.*s:%u)\n", static_cast<int>(reason.size()), reason.data(),
                 static_cast<int>(file.size()), file.data(), static_cast<unsigned>(at.line()));
    std::abort();
}

} // namespace platform
