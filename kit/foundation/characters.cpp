// SPDX-License-Identifier: MIT
#include "kit/foundation/characters.h"

#include "platform/foundation/GraphemeClusters.h"
#include "platform/foundation/Utf16Count.h"

namespace zelk {

using namespace platform;

std::vector<NSAttributedString> characters(const NSAttributedString& text)
{
    std::vector<NSAttributedString> pieces;
    GraphemeClusters walk(text.string());
    std::int64_t offset = 0;
    while (auto character = walk.next()) {
        auto length = utf16Count(*character);
        pieces.push_back(text.attributedSubstring({offset, length}));
        offset += length;
    }
    return pieces;
}

} // namespace zelk
