// SPDX-License-Identifier: MIT
#include "platform/quicklook/looksLikeTimedText.h"

#include <cstddef>

namespace platform {

namespace {

// A header and notes may come before the first cue.
constexpr std::size_t searchedSize = 64 * 1024;
constexpr std::string_view arrow = " --> ";

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

} // namespace

bool looksLikeTimedText(std::string_view head)
{
    head = head.substr(0, searchedSize);
    for (auto at = head.find(arrow); at != std::string_view::npos; at = head.find(arrow, at + 1)) {
        auto after = head.substr(at + arrow.size());
        if (at > 0 && isDigit(head[at - 1]) && !after.empty() && (isDigit(after[0]) || after[0] == '-'))
            return true;
    }
    return false;
}

} // namespace platform
