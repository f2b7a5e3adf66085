// SPDX-License-Identifier: MIT
#include "platform/foundation/URLComponents.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace platform {

namespace {

constexpr std::string_view pathMarks = "-._~!$&'()*+,;=:@/";
constexpr std::string_view itemMarks = "-._~!$'()*,:@/?";

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

void appendEncoded(std::string& text, std::string_view bytes, std::string_view marks)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    for (char byte : bytes) {
        if (isLetter(byte) || isDigit(byte) || (byte != '\0' && marks.find(byte) != marks.npos)) {
            text += byte;
            continue;
        }
        auto value = static_cast<unsigned char>(byte);
        text += '%';
        text += digits[value >> 4];
        text += digits[value & 15];
    }
}

bool isScheme(std::string_view text)
{
    return !text.empty() && isLetter(text.front()) && std::ranges::all_of(text, [](char c) {
        return isLetter(c) || isDigit(c) || c == '+' || c == '-' || c == '.';
    });
}

} // namespace

std::optional<URL> URLComponents::url() const
{
    if (!isScheme(scheme) || path.starts_with("//"))
        return std::nullopt;
    auto text = scheme;
    text += ':';
    appendEncoded(text, path, pathMarks);
    char mark = '?';
    for (const auto& item : queryItems) {
        text += std::exchange(mark, '&');
        appendEncoded(text, item.name, itemMarks);
        if (item.value) {
            text += '=';
            appendEncoded(text, *item.value, itemMarks);
        }
    }
    return URL::parse(text);
}

} // namespace platform
