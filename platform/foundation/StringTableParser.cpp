// SPDX-License-Identifier: MIT
#include "platform/foundation/StringTableParser_p.h"

#include "platform/foundation/PropertyList.h"
#include "platform/foundation/StringTableEscapes_p.h"
#include "platform/foundation/TextDecoding.h"
#include "platform/foundation/appendUTF8.h"

#include <algorithm>
#include <utility>

namespace platform {

namespace {

bool isSpace(char unit)
{
    return unit == ' ' || (unit >= '\t' && unit <= '\r');
}

bool isWordUnit(char unit)
{
    return (unit >= '0' && unit <= '9') || (unit >= 'A' && unit <= 'Z') || (unit >= 'a' && unit <= 'z')
        || std::string_view("_$/:.-").contains(unit);
}

// Bytes that begin a line or end the text before it: CR LF is one end.
bool endsLine(std::string_view text, std::size_t offset)
{
    return text[offset] == '\n'
        || (text[offset] == '\r' && (offset + 1 == text.size() || text[offset + 1] != '\n'));
}

// A part of the user's text, for messages.
std::string shortened(std::string_view text)
{
    constexpr std::size_t limit = 60;
    if (text.size() <= limit)
        return std::string(text);
    auto end = limit;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80)
        --end;
    return std::string(text.substr(0, end)) + "…";
}

} // namespace

StringTableParser::StringTableParser(const StringTableLimits& limits)
    : limits_(limits)
{
}

void StringTableParser::parse(std::string_view bytes)
{
    if (bytes.size() > limits_.bytes)
        return reportWithoutPlace("the table is larger than " + std::to_string(limits_.bytes) + " bytes");
    auto decoded = decodeText(bytes);
    if (!decoded)
        return reportWithoutPlace(decoded.error().bridged().localizedFailureReason());
    text_ = decoded->text.utf8();
    auto first = std::ranges::find_if_not(text_, isSpace);
    if (first != text_.end() && *first == '<')
        parsePropertyListForm(bytes);
    else
        parseEntries();
    text_ = {};
}

ParsedStringTable StringTableParser::finish() &&
{
    if (faults_ > result_.diagnostics.size())
        reportWithoutPlace(std::to_string(faults_ - result_.diagnostics.size()) + " more faults");
    return std::move(result_);
}

// The platform's other form of the same: one dictionary of texts.
void StringTableParser::parsePropertyListForm(std::string_view bytes)
{
    auto value =
        parsePropertyList(bytes, {.bytes = limits_.bytes, .depth = 8, .values = 2 * limits_.entries + 1});
    if (!value)
        return reportWithoutPlace(value.error().bridged().localizedFailureReason());
    auto* dictionary = value->as<PropertyListDictionary>();
    if (!dictionary)
        return reportWithoutPlace("the root of the property list is not a dictionary");
    for (auto& [key, entry] : *dictionary) {
        if (auto* text = entry.as<std::string>())
            add({.text = key}, *text);
        else
            reportWithoutPlace("the value of \"" + shortened(key) + "\" is not text");
    }
}

void StringTableParser::parseEntries()
{
    while (!isFull_ && skipSpace())
        parseEntry();
}

// "key" = "value";  or  "key";  which stands for itself.
void StringTableParser::parseEntry()
{
    auto begin = at_;
    auto key = token();
    if (!key) {
        report(at_, text_[at_] == ';' ? "there is a \";\" without an entry" : "a key is expected here");
        return skipBrokenEntry();
    }
    if (!key->isEnded)
        return;
    std::string value = key->text;
    bool isWhole = key->isWhole;
    if (skipSpace() && text_[at_] == '=') {
        ++at_;
        skipSpace();
        auto token = this->token();
        if (!token) {
            report(at_, "the value of \"" + shortened(key->text) + "\" is missing");
            return skipBrokenEntry();
        }
        if (!token->isEnded)
            return;
        isWhole = isWhole && token->isWhole;
        value = std::move(token->text);
        skipSpace();
    } else if (at_ < text_.size() && text_[at_] != ';') {
        report(at_, "\"=\" is missing after the key \"" + shortened(key->text) + "\"");
        return skipBrokenEntry();
    }
    if (at_ == text_.size() || text_[at_] != ';') {
        // What follows may well be the next entry: it is tried as one.
        if (isWhole)
            report(begin, "\";\" is missing after the entry \"" + shortened(key->text) + "\"");
        return;
    }
    ++at_;
    if (isWhole)
        add(std::move(*key), std::move(value));
}

void StringTableParser::add(Token key, std::string value)
{
    auto& table = result_.table;
    if (table.entries().size() >= limits_.entries) {
        isFull_ = true;
        return report(key.begin, "the table has more than " + std::to_string(limits_.entries) + " entries");
    }
    auto name = shortened(key.text);
    auto line = lineAt(key.begin);
    auto earlier = table.add({.key = std::move(key.text), .value = std::move(value), .line = line});
    if (earlier)
        report(key.begin, "the key \"" + name + "\" was given before, in line " + std::to_string(earlier));
}

bool StringTableParser::skipSpace()
{
    while (at_ < text_.size()) {
        if (isSpace(text_[at_]))
            ++at_;
        else if (!skipComment())
            return true;
    }
    return false;
}

bool StringTableParser::skipComment()
{
    auto rest = text_.substr(at_);
    if (rest.starts_with("//")) {
        at_ = std::min(text_.find_first_of("\r\n", at_), text_.size());
        return true;
    }
    if (!rest.starts_with("/*"))
        return false;
    auto end = text_.find("*/", at_ + 2);
    if (end == std::string_view::npos)
        report(at_, "the comment has no end");
    at_ = end == std::string_view::npos ? text_.size() : end + 2;
    return true;
}

void StringTableParser::skipBrokenEntry()
{
    while (at_ < text_.size()) {
        auto offset = at_++;
        if (text_[offset] == ';' || endsLine(text_, offset))
            return;
    }
}

std::optional<StringTableParser::Token> StringTableParser::token()
{
    if (at_ == text_.size())
        return std::nullopt;
    if (text_[at_] == '"' || text_[at_] == '\'')
        return quoted();
    if (isWordUnit(text_[at_]))
        return word();
    return std::nullopt;
}

StringTableParser::Token StringTableParser::word()
{
    auto end = std::find_if_not(text_.begin() + static_cast<std::ptrdiff_t>(at_), text_.end(), isWordUnit);
    Token token{.text = std::string(text_.begin() + static_cast<std::ptrdiff_t>(at_), end), .begin = at_};
    at_ += token.text.size();
    return token;
}

StringTableParser::Token StringTableParser::quoted()
{
    Token token{.text = {}, .begin = at_};
    const char stops[] = {text_[at_++], '\\'};
    while (true) {
        auto end = std::min(text_.find_first_of({stops, 2}, at_), text_.size());
        token.text += text_.substr(at_, end - at_);
        at_ = end;
        if (at_ == text_.size())
            break;
        if (text_[at_++] == stops[0])
            return token;
        if (at_ < text_.size())
            appendEscape(token);
    }
    report(token.begin, "the text has no closing quote");
    token.isEnded = false;
    // The entries after it may be whole: they are tried from the next line on.
    at_ = token.begin;
    while (at_ < text_.size() && !endsLine(text_, at_))
        ++at_;
    return token;
}

// at_ is behind the backslash.
void StringTableParser::appendEscape(Token& token)
{
    constexpr std::string_view letters = "abfnrtv";
    constexpr std::string_view meanings = "\a\b\f\n\r\t\v";
    auto unit = text_[at_];
    if (unit == 'U' || unit == 'u')
        return appendUnicodeEscape(token);
    if (unit >= '0' && unit <= '7')
        return appendOctalEscape(token);
    if (auto place = letters.find(unit); place != std::string_view::npos)
        token.text += meanings[place];
    else if (std::string_view("\"'\\?\n\r").contains(unit))
        token.text += unit;
    else {
        report(at_ - 1, "the escape means nothing");
        token.isWhole = false;
        return; // what follows the backslash is read on as text
    }
    ++at_;
}

// Four hexadecimal digits behind a "U"; nothing when there are not.
std::optional<char32_t> StringTableParser::utf16Unit()
{
    auto digits = text_.substr(at_, 5);
    if (digits.size() != 5 || (digits[0] != 'U' && digits[0] != 'u'))
        return std::nullopt;
    auto unit = parseDigits(digits.substr(1), 16);
    if (unit)
        at_ += 5;
    return unit;
}

void StringTableParser::appendUnicodeEscape(Token& token)
{
    auto begin = at_ - 1;
    auto scalar = utf16Unit();
    if (scalar && isLeadingSurrogate(*scalar) && at_ < text_.size() && text_[at_] == '\\') {
        auto behindLeading = at_++;
        auto trailing = utf16Unit();
        scalar = trailing ? combinedSurrogates(*scalar, *trailing) : std::nullopt;
        if (!scalar)
            at_ = behindLeading; // another escape begins there
    }
    if (scalar && appendUTF8(token.text, *scalar))
        return;
    report(begin,
           scalar || at_ > begin + 1 ? "the escape is half of a surrogate pair"
                                     : "the escape needs four hexadecimal digits");
    token.isWhole = false;
}

void StringTableParser::appendOctalEscape(Token& token)
{
    std::size_t count = 1;
    while (count < 3 && at_ + count < text_.size() && text_[at_ + count] >= '0' && text_[at_ + count] <= '7')
        ++count;
    auto number = parseDigits(text_.substr(at_, count), 8);
    auto scalar = nextStepCharacter(*number);
    if (!scalar) {
        report(at_ - 1, "the escape stands for no character");
        token.isWhole = false;
    } else
        appendUTF8(token.text, *scalar);
    at_ += count;
}

std::size_t StringTableParser::lineAt(std::size_t offset)
{
    while (lineOffset_ > offset) // a step or two: faults are reported soon after they begin
        line_ -= endsLine(text_, --lineOffset_);
    for (; lineOffset_ < offset; ++lineOffset_)
        line_ += endsLine(text_, lineOffset_);
    return line_;
}

void StringTableParser::report(std::size_t offset, std::string message)
{
    if (++faults_ > limits_.diagnostics)
        return;
    auto line = lineAt(offset);
    auto begin = offset;
    while (begin > 0 && !endsLine(text_, begin - 1))
        --begin;
    auto column = 1 + std::ranges::count_if(text_.substr(begin, offset - begin), [](char unit) {
                      return (static_cast<unsigned char>(unit) & 0xC0) != 0x80;
                  });
    result_.diagnostics.push_back(
        {.line = line, .column = static_cast<std::size_t>(column), .message = std::move(message)});
}

void StringTableParser::reportWithoutPlace(std::string message)
{
    result_.diagnostics.push_back({.message = std::move(message)});
}

} // namespace platform
