// SPDX-License-Identifier: MIT
#include "platform/network/HTTPMessage_p.h"

#include "platform/foundation/UTF8.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace platform {

namespace {

// Longer ones are refused by many file systems.
constexpr std::size_t longestFilename = 255;

std::string lowered(std::string_view text)
{
    std::string result(text);
    for (char& c : result)
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
    return result;
}

std::optional<std::int64_t> parseCount(std::string_view digits)
{
    std::int64_t count = 0;
    if (digits.empty() || digits.front() < '0' || digits.front() > '9')
        return std::nullopt;
    auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), count);
    bool isWhole = error == std::errc() && end == digits.data() + digits.size();
    return isWhole ? std::optional(count) : std::nullopt;
}

// Takes the part up to `separator` off the front; what stands between quotation marks separates nothing.
std::string_view takePart(std::string_view& text, char separator)
{
    bool isQuoted = false;
    std::size_t end = 0;
    for (; end < text.size() && (isQuoted || text[end] != separator); ++end) {
        if (text[end] == '"')
            isQuoted = !isQuoted;
        else if (isQuoted && text[end] == '\\' && end + 1 < text.size())
            ++end;
    }
    auto part = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return trimmed(part);
}

std::string unquoted(std::string_view value)
{
    if (value.size() < 2 || value.front() != '"' || value.back() != '"')
        return std::string(value);
    std::string result;
    for (auto rest = value.substr(1, value.size() - 2); !rest.empty(); rest.remove_prefix(1)) {
        if (rest.front() == '\\' && rest.size() > 1)
            rest.remove_prefix(1);
        result += rest.front();
    }
    return result;
}

// The parameters of "value; name=parameter; ...", names in lower case; calls `receive` with each.
template <class Receive>
void forEachParameter(std::string_view text, Receive receive)
{
    takePart(text, ';');
    while (!text.empty()) {
        auto part = takePart(text, ';');
        auto equals = part.find('=');
        if (equals != std::string_view::npos)
            receive(lowered(trimmed(part.substr(0, equals))), unquoted(trimmed(part.substr(equals + 1))));
    }
}

std::optional<int> hexDigit(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    c = static_cast<char>(c | 0x20);
    return c >= 'a' && c <= 'f' ? std::optional(c - 'a' + 10) : std::nullopt;
}

std::optional<std::string> percentDecoded(std::string_view text)
{
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            result += text[i];
            continue;
        }
        auto high = i + 2 < text.size() ? hexDigit(text[i + 1]) : std::nullopt;
        auto low = i + 2 < text.size() ? hexDigit(text[i + 2]) : std::nullopt;
        if (!high || !low)
            return std::nullopt;
        result += static_cast<char>(*high * 16 + *low);
        i += 2;
    }
    return result;
}

std::string utf8FromLatin1(std::string_view bytes)
{
    std::string result;
    for (char c : bytes) {
        auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            result += c;
        } else {
            result += static_cast<char>(0xC0 | (byte >> 6));
            result += static_cast<char>(0x80 | (byte & 0x3F));
        }
    }
    return result;
}

// charset'language'percent-encoded
std::optional<std::string> extendedValue(std::string_view value)
{
    auto charsetEnd = value.find('\'');
    auto languageEnd = charsetEnd == std::string_view::npos ? charsetEnd : value.find('\'', charsetEnd + 1);
    if (languageEnd == std::string_view::npos)
        return std::nullopt;
    auto bytes = percentDecoded(value.substr(languageEnd + 1));
    auto charset = lowered(value.substr(0, charsetEnd));
    if (bytes && charset == "iso-8859-1")
        return utf8FromLatin1(*bytes);
    return charset == "utf-8" ? bytes : std::nullopt;
}

} // namespace

std::string_view trimmed(std::string_view text)
{
    auto isBlank = [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; };
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

ContentType parseContentType(std::string_view value)
{
    ContentType result;
    auto rest = value;
    auto type = lowered(takePart(rest, ';'));
    auto slash = type.find('/');
    auto isBad = [](char c) { return static_cast<unsigned char>(c) <= ' ' || c == ',' || c == 0x7F; };
    if (slash != std::string::npos && slash > 0 && slash + 1 < type.size()
        && std::ranges::none_of(type, isBad))
        result.mimeType = std::move(type);
    forEachParameter(value, [&](const std::string& name, const std::string& parameter) {
        if (name == "charset" && result.charset.empty())
            result.charset = parameter;
    });
    return result;
}

std::optional<std::int64_t> parseContentLength(std::string_view value)
{
    std::optional<std::int64_t> length;
    while (!value.empty()) {
        auto next = parseCount(takePart(value, ','));
        if (!next || (length && *length != *next))
            return std::nullopt;
        length = next;
    }
    return length;
}

std::optional<ContentRange> parseContentRange(std::string_view value)
{
    value = trimmed(value);
    if (lowered(value.substr(0, 6)) != "bytes ")
        return std::nullopt;
    value = trimmed(value.substr(6));
    auto dash = value.find('-');
    auto slash = value.find('/');
    if (dash == std::string_view::npos || slash == std::string_view::npos || slash < dash)
        return std::nullopt;
    auto first = parseCount(trimmed(value.substr(0, dash)));
    auto last = parseCount(trimmed(value.substr(dash + 1, slash - dash - 1)));
    auto totalText = trimmed(value.substr(slash + 1));
    auto total = parseCount(totalText);
    if (!first || !last || *last < *first || (!total && totalText != "*") || (total && *total <= *last))
        return std::nullopt;
    return ContentRange{*first, *last, total};
}

std::optional<std::string> parseDispositionFilename(std::string_view value)
{
    std::optional<std::string> plain;
    std::optional<std::string> extended;
    forEachParameter(value, [&](const std::string& name, const std::string& parameter) {
        if (name == "filename" && !plain)
            plain = parameter;
        else if (name == "filename*" && !extended)
            extended = extendedValue(parameter);
    });
    if (extended)
        return extended;
    if (plain && !isWellFormedUTF8(*plain))
        plain = utf8FromLatin1(*plain);
    return plain;
}

std::string safeFilename(std::string_view name)
{
    // Both kinds of slash: a name may come from either kind of system.
    if (auto slash = name.find_last_of("/\\"); slash != std::string_view::npos)
        name.remove_prefix(slash + 1);
    std::string result;
    for (char c : name) {
        if (static_cast<unsigned char>(c) >= 0x20 && c != 0x7F)
            result += c;
    }
    result = trimmed(result);
    while (result.size() > longestFilename) {
        // Whole characters go, so that what is left stays valid.
        do {
            result.pop_back();
        } while (!result.empty() && !isWellFormedUTF8(result));
    }
    bool isUnusable = result == "." || result == ".." || !isWellFormedUTF8(result);
    return isUnusable ? std::string() : result;
}

std::optional<std::string> strongValidator(const HTTPHeaderFields& fields)
{
    auto tag = valueForHTTPHeaderField(fields, "ETag");
    if (!tag || tag->size() < 2 || tag->front() != '"' || tag->back() != '"'
        || !isValidHTTPHeaderField("ETag", *tag))
        return std::nullopt;
    return tag;
}

} // namespace platform
