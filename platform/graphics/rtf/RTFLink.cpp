// SPDX-License-Identifier: MIT
#include "platform/graphics/rtf/RTFLink_p.h"

#include "platform/foundation/URL.h"

#include <algorithm>
#include <string>

namespace platform {

namespace {

bool isBlank(char byte)
{
    return byte == ' ' || byte == '\t' || byte == '\n';
}

// One word, or one text in quotation marks with its backslashes resolved.
std::optional<std::string> takeWord(std::string_view& rest)
{
    rest.remove_prefix(static_cast<std::size_t>(std::ranges::find_if_not(rest, isBlank) - rest.begin()));
    if (rest.empty())
        return std::nullopt;
    auto isQuoted = rest.front() == '"';
    auto isSwitch = rest.front() == '\\';
    std::string word;
    std::size_t at = isQuoted ? 1 : 0;
    for (; at < rest.size() && (isQuoted ? rest[at] != '"' : !isBlank(rest[at])); ++at) {
        if (rest[at] == '\\' && !isSwitch && at + 1 < rest.size())
            ++at;
        word += rest[at];
    }
    rest.remove_prefix(std::min(rest.size(), at + (isQuoted ? 1 : 0)));
    return word;
}

bool isHyperlink(std::string_view word)
{
    constexpr std::string_view name = "HYPERLINK";
    return std::ranges::equal(word, name, {}, [](char byte) {
        return byte >= 'a' && byte <= 'z' ? static_cast<char>(byte - 'a' + 'A') : byte;
    });
}

} // namespace

std::optional<AttributeValue> linkValue(std::string_view target)
{
    if (target.empty())
        return std::nullopt;
    if (auto url = URL::parse(target))
        return AttributeValue(std::move(*url));
    return AttributeValue(std::string(target));
}

std::optional<AttributeValue> linkOfField(std::string_view instruction)
{
    auto kind = takeWord(instruction);
    if (!kind || !isHyperlink(*kind))
        return std::nullopt;
    std::string target;
    std::string part;
    while (auto word = takeWord(instruction)) {
        if (*word == "\\l")
            part = takeWord(instruction).value_or("");
        else if (*word == "\\o" || *word == "\\t") // a tip, a window
            takeWord(instruction);
        else if (!word->starts_with('\\') && target.empty())
            target = std::move(*word);
    }
    if (!part.empty())
        target += "#" + part;
    return linkValue(target);
}

} // namespace platform
