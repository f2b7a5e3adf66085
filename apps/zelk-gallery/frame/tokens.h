// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>
#include <vector>

namespace gallery {

enum class TokenKind { plain, keyword, type, text, number, comment };

struct Token {
    TokenKind kind;
    std::string_view word;
};

// A line of C++ in pieces that make it up. Texts and comments that go on over the end of a line are not followed.
std::vector<Token> tokens(std::string_view line);

} // namespace gallery
