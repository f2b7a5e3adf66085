// SPDX-License-Identifier: MIT
#include "platform/foundation/URL.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <utility>

#include <unistd.h>

namespace platform {

namespace {

constexpr bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

constexpr bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isHexadecimalDigit(char c)
{
    return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

int hexadecimalValue(char c)
{
    return isDigit(c) ? c - '0' : (c | 0x20) - 'a' + 10;
}

char lowerCase(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

std::string lowerCase(std::string_view text)
{
    std::string result(text);
    std::ranges::transform(result, result.begin(), [](char c) { return lowerCase(c); });
    return result;
}

using CharacterSet = std::array<bool, 256>;

// Letters, digits and `marks`.
constexpr CharacterSet lettersAnd(std::string_view marks)
{
    CharacterSet result{};
    for (std::size_t i = 0; i < result.size(); ++i) {
        auto c = static_cast<char>(i);
        result[i] = isLetter(c) || isDigit(c) || marks.find(c) != std::string_view::npos;
    }
    return result;
}

constexpr auto schemeCharacters = lettersAnd("+-.");
// What may stand in a path as it is.
constexpr auto pathCharacters = lettersAnd("-._~!$&'()*+,;=:@/");
constexpr auto pathCharactersAndEscapes = lettersAnd("%-._~!$&'()*+,;=:@/");
// What may stand in a whole URL that is encoded already.
constexpr auto encodedCharacters = lettersAnd("%-._~!$&'()*+,;=:@/?#[]");

// How many characters at the beginning are of the set.
std::size_t prefixLength(std::string_view text, const CharacterSet& set)
{
    auto end = std::ranges::find_if_not(text, [&](char c) { return set[static_cast<unsigned char>(c)]; });
    return static_cast<std::size_t>(end - text.begin());
}

void appendEncoded(std::string& result, std::string_view bytes, const CharacterSet& standing)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    for (;;) {
        auto count = prefixLength(bytes, standing);
        result.append(bytes.substr(0, count));
        if (count == bytes.size())
            return;
        auto byte = static_cast<unsigned char>(bytes[count]);
        result += '%';
        result += digits[byte >> 4];
        result += digits[byte & 15];
        bytes.remove_prefix(count + 1);
    }
}

// Requires: every percent sign has its two digits.
std::string decoded(std::string_view text)
{
    std::string result;
    result.reserve(text.size());
    for (;;) {
        auto escape = std::min(text.find('%'), text.size());
        result.append(text.substr(0, escape));
        if (escape == text.size())
            return result;
        result +=
            static_cast<char>(hexadecimalValue(text[escape + 1]) << 4 | hexadecimalValue(text[escape + 2]));
        text.remove_prefix(escape + 3);
    }
}

bool areEscapesWhole(std::string_view text)
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%')
            continue;
        if (i + 2 >= text.size() || !isHexadecimalDigit(text[i + 1]) || !isHexadecimalDigit(text[i + 2]))
            return false;
    }
    return true;
}

// The length of "scheme" when `text` begins with "scheme:".
std::optional<std::size_t> schemeLength(std::string_view text)
{
    auto colon = text.find(':');
    if (colon == std::string_view::npos || colon == 0 || !isLetter(text[0]))
        return std::nullopt;
    return prefixLength(text, schemeCharacters) == colon ? std::optional(colon) : std::nullopt;
}

std::string_view withoutSlashesAtEnd(std::string_view path)
{
    while (path.size() > 1 && path.back() == '/')
        path.remove_suffix(1);
    return path;
}

std::string workingDirectory()
{
    std::unique_ptr<char, decltype(&std::free)> directory(::getcwd(nullptr, 0), &std::free);
    // The working directory may have been deleted or be out of reach; this name still leads to it.
    if (!directory || directory.get()[0] != '/')
        return "/proc/self/cwd";
    return directory.get();
}

} // namespace

URL::URL(std::string text, std::size_t pathBegin, std::size_t pathEnd)
    : text_(std::make_shared<const std::string>(std::move(text)))
    , pathBegin_(pathBegin)
    , pathEnd_(pathEnd)
{
}

URL URL::fileURL(std::string_view path)
{
    std::string absolute;
    if (path.empty() || path.front() != '/') {
        absolute = workingDirectory();
        while (path.starts_with("./"))
            path.remove_prefix(2);
        if (absolute.back() != '/' && !path.empty())
            absolute += '/';
    }
    absolute += path;
    std::string text;
    text.reserve(7 + absolute.size());
    text += "file://";
    appendEncoded(text, absolute, pathCharacters);
    auto end = text.size();
    return URL(std::move(text), 7, end);
}

std::optional<URL> URL::parse(std::string_view text)
{
    auto scheme = schemeLength(text);
    if (!scheme || !areEscapesWhole(text))
        return std::nullopt;
    if (std::ranges::any_of(text, [](char c) { return static_cast<unsigned char>(c) < ' ' || c == 0x7F; }))
        return std::nullopt;

    std::string canonical;
    canonical.reserve(text.size() + 2); // enough for most
    canonical.append(lowerCase(text.substr(0, *scheme))).append(":");
    bool isFile = canonical == "file:";
    auto rest = text.substr(*scheme + 1);
    if (rest.starts_with("//")) {
        auto authority = rest.substr(2, std::min(rest.find_first_of("/?#", 2), rest.size()) - 2);
        rest.remove_prefix(2 + authority.size());
        if (isFile && !authority.empty() && lowerCase(authority) != "localhost")
            return std::nullopt;
        canonical += "//";
        if (!isFile) {
            auto host = authority.rfind('@') + 1; // 0 when there is no user
            appendEncoded(canonical, authority.substr(0, host), encodedCharacters);
            std::string encodedHost;
            appendEncoded(encodedHost, authority.substr(host), encodedCharacters);
            canonical += lowerCase(encodedHost); // escapes too, so that reading it again changes nothing
        }
    } else if (isFile) {
        canonical += "//";
    }

    auto path = rest.substr(0, std::min(rest.find_first_of("?#"), rest.size()));
    rest.remove_prefix(path.size());
    if (isFile && !path.starts_with('/'))
        return std::nullopt;
    auto pathBegin = canonical.size();
    if (isFile) {
        appendEncoded(canonical, decoded(path), pathCharacters);
    } else {
        // An escape may mean something to the server that its character does not: it stays.
        appendEncoded(canonical, path, pathCharactersAndEscapes);
    }
    auto pathEnd = canonical.size();
    appendEncoded(canonical, rest, encodedCharacters);
    return URL(std::move(canonical), pathBegin, pathEnd);
}

std::string URL::scheme() const
{
    return text_->substr(0, text_->find(':'));
}

bool URL::isFileURL() const
{
    return text_->starts_with("file:");
}

std::string URL::host() const
{
    auto begin = text_->find(':') + 1;
    if (text_->compare(begin, 2, "//") != 0)
        return {};
    auto authority = std::string_view(*text_).substr(begin + 2, pathBegin_ - begin - 2);
    if (auto at = authority.rfind('@'); at != std::string_view::npos)
        authority.remove_prefix(at + 1);
    // the colons of an address in brackets do not begin a port
    auto colon =
        authority.find(':', authority.starts_with('[') ? std::min(authority.find(']'), authority.size()) : 0);
    return std::string(authority.substr(0, colon));
}

std::string_view URL::encodedPath() const
{
    return std::string_view(*text_).substr(pathBegin_, pathEnd_ - pathBegin_);
}

URL URL::withEncodedPath(std::string_view path) const
{
    std::string text;
    text.reserve(pathBegin_ + path.size());
    text.append(*text_, 0, pathBegin_).append(path);
    auto end = text.size();
    return URL(std::move(text), pathBegin_, end);
}

std::string URL::path() const
{
    return decoded(encodedPath());
}

std::string URL::lastPathComponent() const
{
    auto path = withoutSlashesAtEnd(encodedPath());
    return path == "/" ? "/" : decoded(path.substr(path.rfind('/') + 1));
}

std::string URL::pathExtension() const
{
    auto name = lastPathComponent();
    auto dot = name.rfind('.');
    return dot == std::string::npos || dot == 0 ? std::string() : name.substr(dot + 1);
}

URL URL::appendingPathComponent(std::string_view component) const
{
    while (component.starts_with('/'))
        component.remove_prefix(1);
    std::string path;
    path.reserve(encodedPath().size() + 1 + component.size());
    path += encodedPath();
    if (!path.ends_with('/'))
        path += '/';
    appendEncoded(path, component, pathCharacters);
    return withEncodedPath(path);
}

URL URL::deletingLastPathComponent() const
{
    auto path = withoutSlashesAtEnd(encodedPath());
    auto slash = path.rfind('/');
    if (slash == std::string_view::npos)
        return withEncodedPath("");
    return withEncodedPath(path.substr(0, std::max<std::size_t>(slash, 1)));
}

} // namespace platform
