// SPDX-License-Identifier: MIT
#include "kit/foundation/components.h"

#include "platform/foundation/Utf16Count.h"

namespace zelk {

using namespace platform;

std::vector<NSAttributedString> components(const NSAttributedString& text, std::string_view separatedBy)
{
    std::vector<NSAttributedString> pieces;
    auto rest = text.string();
    auto separatorLength = utf16Count(separatedBy);
    std::int64_t offset = 0;
    for (;;) {
        auto found = separatedBy.empty() ? rest.npos : rest.find(separatedBy);
        auto length = utf16Count(rest.substr(0, found));
        pieces.push_back(text.attributedSubstring({offset, length}));
        if (found == rest.npos)
            return pieces;
        offset += length + separatorLength;
        rest.remove_prefix(found + separatedBy.size());
    }
}

} // namespace zelk
