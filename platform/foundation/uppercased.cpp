// SPDX-License-Identifier: MIT
#include "platform/foundation/uppercased.h"

#include "platform/foundation/Precondition.h"

#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/stringpiece.h>

#include <cstdint>

namespace platform {

std::string uppercased(std::string_view text)
{
    precondition(text.size() <= INT32_MAX, "a text of more than 2 GiB is put in capitals");
    std::string upper;
    icu::StringByteSink<std::string> sink(&upper);
    auto status = U_ZERO_ERROR;
    icu::CaseMap::utf8ToUpper("", 0, icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())),
                              sink, nullptr, status);
    precondition(U_SUCCESS(status), "ICU has no memory for the capitals of a text");
    return upper;
}

} // namespace platform
