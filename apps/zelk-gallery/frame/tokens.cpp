// SPDX-License-Identifier: MIT
#include "apps/zelk-gallery/frame/tokens.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace gallery {

namespace {

bool isWordCharacter(char each)
{
    return std::isalnum(static_cast<unsigned char>(each)) || each == '_';
}

TokenKind kindOf(std::string_view word)
{
    static constexpr std::array<std::string_view, 24> keywords{
        "auto",   "bool",   "case",     "const",  "constexpr", "double", "else",   "enum",
        "false",  "for",    "if",       "inline", "int",       "return", "static", "std",
        "struct", "switch", "template", "true",   "using",     "void",   "while",  "nullptr"};
    if (std::isdigit(static_cast<unsigned char>(word.front())))
        return TokenKind::number;
    if (std::ranges::find(keywords, word) != keywords.end())
        return TokenKind::keyword;
    return std::isupper(static_cast<unsigned char>(word.front())) ? TokenKind::type : TokenKind::plain;
}

std::size_t textLength(std::string_view rest)
{
    for (std::size_t index = 1; index < rest.size(); ++index) {
        if (rest[index] == '\\')
            ++index;
        else if (rest[index] == rest.front())
            return index + 1;
    }
    return rest.size();
}

} // namespace

std::vector<Token> tokens(std::string_view line)
{
    std::vector<Token> found;
    auto take = [&](TokenKind kind, std::size_t length) {
        found.push_back({kind, line.substr(0, length)});
        line.remove_prefix(length);
    };
    while (!line.empty()) {
        if (line.starts_with("//"))
            take(TokenKind::comment, line.size());
        else if (line.front() == '"' || line.front() == '\'')
            take(TokenKind::text, textLength(line));
        else if (isWordCharacter(line.front())) {
            auto end = std::ranges::find_if_not(line, isWordCharacter) - line.begin();
            take(kindOf(line.substr(0, static_cast<std::size_t>(end))), static_cast<std::size_t>(end));
        } else {
            auto stop = [](char each) {
                return isWordCharacter(each) || each == '"' || each == '\'' || each == '/';
            };
            auto end = std::ranges::find_if(line.substr(1), stop) - line.substr(1).begin();
            take(TokenKind::plain, static_cast<std::size_t>(end) + 1);
        }
    }
    return found;
}

} // namespace gallery
