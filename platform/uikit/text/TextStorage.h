// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/String.h"

#include <memory>
#include <string_view>
#include <vector>

namespace platform {

// The bytes that the pieces of a text point to. Nothing is ever removed or moved while the storage lives, so
// undo keeps pieces and not copies.
class TextStorage {
public:
    // Shares.
    std::string_view keep(String text);
    // Copies. Texts kept one after the other are neighbours in memory as long as there is room.
    std::string_view keep(std::string_view text);

private:
    std::vector<String> texts_;
    std::vector<std::unique_ptr<char[]>> blocks_;
    char* free_ = nullptr; // in the last block
    std::size_t room_ = 0;
};

} // namespace platform
