// SPDX-License-Identifier: MIT
#include "platform/graphics/rtf/RTFTokenizer_p.h"

#include <algorithm>
#include <charconv>

namespace platform {

namespace {

constexpr std::size_t longestWord = 32; // letters, as the format's own description has it

bool isLetter(char byte)
{
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
}

bool isDigit(char byte)
{
    return byte >= '0' && byte <= '9';
}

bool meansNothing(char byte)
{
    return byte == '\r' || byte == '\n' || byte == '\0';
}

bool endsBytes(char byte)
{
    return byte == '{' || byte == '}' || byte == '\\' || byte == '\t' || meansNothing(byte);
}

} // namespace

RTFToken RTFTokenizer::next()
{
    for (;;) {
        auto token = anyToken();
        if (token.kind != RTFToken::Kind::word || token.text != "bin")
            return token;
    }
}

RTFToken RTFTokenizer::anyToken()
{
    while (at_ < bytes_.size() && meansNothing(bytes_[at_]))
        ++at_;
    if (at_ == bytes_.size())
        return {};
    switch (bytes_[at_]) {
    case '{':
        return {RTFToken::Kind::open, bytes_.substr(at_++, 1), {}};
    case '}':
        return {RTFToken::Kind::close, bytes_.substr(at_++, 1), {}};
    case '\t':
        ++at_;
        return {RTFToken::Kind::word, "tab", {}};
    case '\\':
        return control();
    default:
        return plainBytes();
    }
}

RTFToken RTFTokenizer::plainBytes()
{
    auto begin = at_;
    while (at_ < bytes_.size() && !endsBytes(bytes_[at_]))
        ++at_;
    return {RTFToken::Kind::bytes, bytes_.substr(begin, at_ - begin), {}};
}

RTFToken RTFTokenizer::control()
{
    if (at_ + 1 == bytes_.size())
        return fault("it ends with a lone backslash");
    auto sign = bytes_[at_ + 1];
    if (isLetter(sign))
        return word();
    if (sign == '\'')
        return numberedByte();
    auto text = bytes_.substr(at_ + 1, 1);
    at_ += 2;
    switch (sign) {
    case '\\':
    case '{':
    case '}':
        return {RTFToken::Kind::bytes, text, {}};
    case '\t':
        return {RTFToken::Kind::word, "tab", {}};
    case '\r':
    case '\n': // a paragraph's end; of the two after each other only the first has the backslash
        return {RTFToken::Kind::word, "par", {}};
    default:
        return {RTFToken::Kind::symbol, text, {}};
    }
}

RTFToken RTFTokenizer::numberedByte()
{
    if (at_ + 4 > bytes_.size())
        return fault("it ends inside a numbered character");
    auto* digits = bytes_.data() + at_ + 2;
    unsigned number = 0;
    auto [stopped, error] = std::from_chars(digits, digits + 2, number, 16);
    if (error != std::errc() || stopped != digits + 2)
        return fault("a numbered character is not written in two hexadecimal digits");
    at_ += 4;
    byte_ = static_cast<char>(number);
    return {RTFToken::Kind::bytes, {&byte_, 1}, {}};
}

std::optional<std::int32_t> RTFTokenizer::parameter(bool& isTooLarge)
{
    auto isNegative = at_ + 1 < bytes_.size() && bytes_[at_] == '-' && isDigit(bytes_[at_ + 1]);
    if (!isNegative && (at_ == bytes_.size() || !isDigit(bytes_[at_])))
        return std::nullopt;
    std::int32_t number = 0;
    auto [stopped, error] = std::from_chars(bytes_.data() + at_, bytes_.data() + bytes_.size(), number);
    isTooLarge = error != std::errc();
    at_ = static_cast<std::size_t>(stopped - bytes_.data());
    return number;
}

RTFToken RTFTokenizer::word()
{
    auto begin = at_;
    ++at_;
    while (at_ < bytes_.size() && isLetter(bytes_[at_]))
        ++at_;
    auto name = bytes_.substr(begin + 1, at_ - begin - 1);
    auto isTooLarge = false;
    auto number = name.size() > longestWord ? std::nullopt : parameter(isTooLarge);
    if (name.size() > longestWord || isTooLarge) {
        at_ = begin;
        return fault(isTooLarge ? "the number of a control word is too large" : "a control word is too long");
    }
    if (at_ < bytes_.size() && bytes_[at_] == ' ')
        ++at_;
    // Bytes that may look like anything.
    auto size = static_cast<std::size_t>(name == "bin" ? std::max(number.value_or(0), 0) : 0);
    if (size > bytes_.size() - at_) {
        at_ = begin;
        return fault("it ends inside binary data");
    }
    at_ += size;
    return {RTFToken::Kind::word, name, number};
}

} // namespace platform
