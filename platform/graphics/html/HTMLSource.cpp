// SPDX-License-Identifier: MIT
#include "platform/graphics/html/HTMLSource_p.h"

#include "platform/foundation/CharsetDecoder.h"
#include "platform/foundation/TextDecoding.h"
#include "platform/foundation/UTF8.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <vector>

namespace platform {

namespace {

constexpr std::size_t metaReach = 1024; // bytes, as browsers look
// The library's time grows with elements times their depth, and with elements times the rules of style sheets:
// within these limits it takes a second or two at worst.
constexpr std::size_t deepestElement = 256;
constexpr std::size_t mostElements = 200'000;
constexpr std::size_t mostRuleChecks = 2'000'000;

char lower(char byte)
{
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}

bool isLetter(char byte)
{
    return lower(byte) >= 'a' && lower(byte) <= 'z';
}

bool isBlank(char byte)
{
    return byte == ' ' || byte == '\t' || byte == '\n' || byte == '\r' || byte == '\f';
}

// The value after "charset" and an equals sign in a meta element at the beginning.
std::optional<std::string> charsetOfMeta(std::string_view bytes)
{
    std::string head(bytes.substr(0, metaReach));
    std::ranges::transform(head, head.begin(), lower);
    auto meta = head.find("<meta");
    while (meta != head.npos) {
        auto end = std::min(head.find('>', meta), head.size());
        std::string_view element(head.data() + meta, end - meta);
        if (auto at = element.find("charset"); at != element.npos) {
            element.remove_prefix(at + 7);
            auto skip = [&](auto isSkipped) {
                auto kept = std::ranges::find_if_not(element, isSkipped);
                element.remove_prefix(static_cast<std::size_t>(kept - element.begin()));
            };
            skip([](char byte) { return isBlank(byte) || byte == '=' || byte == '"' || byte == '\''; });
            auto last = std::ranges::find_if(element, [](char byte) {
                return isBlank(byte) || byte == '"' || byte == '\'' || byte == ';' || byte == '/';
            });
            return std::string(element.begin(), last);
        }
        meta = head.find("<meta", end);
    }
    return std::nullopt;
}

// Names that documents give and browsers take for another set.
std::string_view meantCharset(std::string_view name)
{
    constexpr std::string_view windows1252[] = {"iso-8859-1", "latin1", "latin-1", "us-ascii", "ascii"};
    if (std::ranges::find(windows1252, name) != std::end(windows1252))
        return "windows-1252";
    if (name == "iso-8859-9")
        return "windows-1254";
    if (name == "gb2312" || name == "gbk")
        return "gb18030";
    if (name == "shift_jis" || name == "shift-jis")
        return "windows-31j";
    // Whoever reads the name in ASCII has no such encoding before him.
    if (name.starts_with("utf-16") || name.starts_with("utf-32"))
        return "utf-8";
    return name;
}

// The name of an element in lower case; nothing where "<" or "</" is followed by no letter. A name that has
// more than letters, digits and few signs is "x": the library would resolve entities in it.
std::string elementName(std::string_view text)
{
    if (text.empty() || !isLetter(text.front()))
        return {};
    std::string name;
    auto isPlain = true;
    for (auto byte : text) {
        if (isBlank(byte) || byte == '>' || byte == '/' || byte == '<')
            break;
        isPlain = isPlain && (isLetter(byte) || (byte >= '0' && byte <= '9') || byte == '-' || byte == ':');
        name += lower(byte);
    }
    return isPlain ? name : std::string(name.size(), 'x');
}

struct Replacement {
    std::string_view name;
    std::string_view by;
};
// Elements that the library is not shown, and what does the same for text. A "meta" does nothing and has no end.
constexpr Replacement replacements[] = {
    // Of a table's cells as many as its attributes say would be made, a memory's worth if they say so.
    {"table", "div"},
    {"caption", "p"},
    {"colgroup", "meta"},
    {"tbody", "meta"},
    {"thead", "meta"},
    {"tfoot", "meta"},
    {"tr", "p"},
    {"td", "p"},
    {"th", "p"},
    // The library does not know that these have no end, and puts what follows into them.
    {"area", "meta"},
    {"base", "meta"},
    {"basefont", "meta"},
    {"col", "meta"},
    {"embed", "meta"},
    {"frame", "meta"},
    {"img", "meta"},
    {"input", "meta"},
    {"keygen", "meta"},
    {"link", "meta"},
    {"param", "meta"},
    {"source", "meta"},
    {"track", "meta"},
    {"wbr", "meta"},
    {"option", "p"},
};

std::string_view shownName(std::string_view name)
{
    auto found = std::ranges::find(replacements, name, &Replacement::name);
    return found == std::end(replacements) ? name : found->by;
}

// The elements that are open, as the library sees it.
class OpenElements {
public:
    // False when they are too many.
    bool open(std::string_view name)
    {
        if (nests(name))
            names_.emplace_back(name);
        return names_.size() <= deepestElement;
    }
    // With all inside it; one that is not open changes nothing.
    void close(std::string_view name)
    {
        auto found = std::ranges::find(names_.rbegin(), names_.rend(), name);
        if (found != names_.rend())
            names_.erase(std::prev(found.base()), names_.end());
    }

private:
    // The others have no end, or end where the next begins.
    static bool nests(std::string_view name)
    {
        constexpr std::string_view flat[] = {"br", "dd", "dt", "hr", "li", "meta", "p"};
        return std::ranges::find(flat, name) == std::end(flat);
    }

    std::vector<std::string> names_;
};

struct Census {
    std::size_t elements = 0;
    std::size_t rules = 0; // of style sheets, each selector counted
};

Census takeCensus(std::string_view html)
{
    Census census;
    auto isStyle = false;
    for (std::size_t at = 0; at < html.size(); ++at) {
        if (html[at] == '<') {
            auto name = elementName(html.substr(at + 1, 6));
            census.elements += name.empty() ? 0 : 1;
            isStyle = name == "style"
                || (isStyle && elementName(html.substr(std::min(at + 2, html.size()), 6)) != "style");
        } else if (isStyle) {
            census.rules += html[at] == '{' || html[at] == ',' ? 1 : 0;
        }
    }
    return census;
}

} // namespace

std::string decodeHTML(std::string_view bytes)
{
    auto detected = detectTextEncoding(bytes);
    if (detected && detected->evidence == TextEvidence::mark) {
        if (auto decoded = decodeText(bytes))
            return decoded->text.toStdString();
        if (detected->encoding == TextEncoding::utf8)
            return repairedUTF8(bytes.substr(detected->markSize));
    }
    if (auto named = charsetOfMeta(bytes)) {
        auto meant = meantCharset(*named);
        if (meant == "utf-8" || meant == "utf8")
            return repairedUTF8(bytes);
        if (auto decoder = CharsetDecoder::open(meant))
            return decoder->decode(bytes);
    }
    if (isWellFormedUTF8(bytes))
        return std::string(bytes);
    auto decoder = CharsetDecoder::open("windows-1252");
    return decoder ? decoder->decode(bytes) : repairedUTF8(bytes);
}

std::expected<std::string, std::string> guardedHTML(std::string_view html)
{
    auto census = takeCensus(html);
    if (census.elements > mostElements)
        return std::unexpected("it has more than " + std::to_string(mostElements) + " elements");
    auto ignoresStyles = census.rules > 0 && census.elements > mostRuleChecks / census.rules;

    std::string guarded;
    guarded.reserve(html.size() + html.size() / 16);
    OpenElements openElements;
    for (;;) {
        auto at = std::min(html.find('<'), html.size());
        guarded += html.substr(0, at);
        if (at == html.size())
            return guarded;
        html.remove_prefix(at + 1);
        auto isEnd = html.starts_with('/');
        auto name = elementName(html.substr(isEnd ? 1 : 0));
        if (name.empty()) {
            // A comment, a declaration, or a sign of the text.
            guarded += html.starts_with('!') || html.starts_with('?') ? "<" : "&lt;";
            continue;
        }
        html.remove_prefix(name.size() + (isEnd ? 1 : 0));
        if (name == "img" && !isEnd)
            guarded += "\uFFFC";
        // What a script has inside is never shown.
        auto shown = name == "style" && ignoresStyles ? std::string_view("script") : shownName(name);
        (guarded += isEnd ? "</" : "<") += shown;
        if (isEnd)
            openElements.close(shown);
        else if (!openElements.open(shown))
            return std::unexpected("its elements are nested more than " + std::to_string(deepestElement)
                                   + " deep");
    }
}

} // namespace platform
