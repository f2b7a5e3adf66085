// SPDX-License-Identifier: MIT
#include "platform/uikit/text/TextStorage.h"

#include <algorithm>
#include <cstring>

namespace platform {

std::string_view TextStorage::keep(String text)
{
    if (!text.isEmpty())
        texts_.push_back(text);
    return text.utf8();
}

std::string_view TextStorage::keep(std::string_view text)
{
    if (text.empty())
        return {};
    if (text.size() > room_) {
        constexpr std::size_t blockSize = 64 * 1024;
        room_ = std::max(blockSize, text.size());
        free_ = blocks_.emplace_back(std::make_unique_for_overwrite<char[]>(room_)).get();
    }
    std::memcpy(free_, text.data(), text.size());
    std::string_view kept(free_, text.size());
    free_ += text.size();
    room_ -= text.size();
    return kept;
}

} // namespace platform
