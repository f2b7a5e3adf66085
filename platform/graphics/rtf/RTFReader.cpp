// SPDX-License-Identifier: MIT
#include "platform/graphics/rtf/RTFReader_p.h"

#include "platform/foundation/appendUTF8.h"
#include "platform/graphics/rtf/RTFLink_p.h"

#include <algorithm>
#include <ranges>
#include <utility>

namespace platform {

namespace {

constexpr std::size_t deepestGroup = 256;
constexpr std::size_t mostFonts = 4096; // later ones are not told apart
constexpr std::size_t mostColors = 65'536;
constexpr std::size_t mostFields = 100'000; // later ones are no links
constexpr std::size_t mostRuns = 1'000'000;
constexpr std::size_t longestName = 256;           // of a font, bytes
constexpr std::size_t longestInstruction = 16'384; // of a field, bytes

// Limits what a table takes in; what is cut is no name and no link any more.
void appendUpTo(std::size_t limit, std::string& to, std::string_view text)
{
    if (to.size() + text.size() <= limit)
        to += text;
}

std::string utf8Of(char32_t character)
{
    std::string text;
    appendUTF8(text, character);
    return text;
}

} // namespace

std::expected<NSAttributedString, std::string> RTFReader::read(std::string_view bytes)
{
    if (!bytes.starts_with("{\\rtf"))
        return std::unexpected("it does not begin as Rich Text Format does");
    RTFReader reader(bytes);
    if (auto done = reader.run(); !done)
        return std::unexpected(std::move(done).error());
    return reader.text_.finish();
}

std::expected<void, std::string> RTFReader::run()
{
    for (;;) {
        auto token = tokens_.next();
        if (token.kind != RTFToken::Kind::bytes)
            flushBytes();
        switch (token.kind) {
        case RTFToken::Kind::end:
            return std::unexpected("it ends inside a group");
        case RTFToken::Kind::fault:
            return std::unexpected(std::string(token.text));
        case RTFToken::Kind::open:
            if (auto opened = openGroup(); !opened)
                return opened;
            break;
        case RTFToken::Kind::close:
            closeGroup();
            // What follows the document is padding.
            if (groups_.empty())
                return {};
            break;
        default:
            handle(token);
        }
        if (text_.runCount() > mostRuns)
            return std::unexpected("it changes its style more than " + std::to_string(mostRuns) + " times");
    }
}

std::expected<void, std::string> RTFReader::openGroup()
{
    flushSurrogate();
    toSkip_ = 0;
    if (groups_.size() >= deepestGroup)
        return std::unexpected("its groups are nested more than " + std::to_string(deepestGroup) + " deep");
    auto inner = groups_.empty() ? Group{} : group();
    inner.isOptional = false;
    groups_.push_back(inner);
    return {};
}

void RTFReader::closeGroup()
{
    flushSurrogate();
    toSkip_ = 0;
    groups_.pop_back();
}

void RTFReader::handle(const RTFToken& token)
{
    if (group().destination == RTFDestination::skipped)
        return;
    switch (token.kind) {
    case RTFToken::Kind::word:
        return handleWord(token);
    case RTFToken::Kind::symbol:
        return handleSymbol(token.text.front());
    default:
        return handleBytes(token.text);
    }
}

void RTFReader::handleBytes(std::string_view bytes)
{
    auto skipped = std::min(bytes.size(), static_cast<std::size_t>(toSkip_));
    toSkip_ -= static_cast<std::int32_t>(skipped);
    bytes.remove_prefix(skipped);
    if (bytes.empty())
        return;
    flushSurrogate();
    bytes_ += bytes;
}

void RTFReader::handleSymbol(char sign)
{
    if (sign == '*') {
        group().isOptional = true;
        return;
    }
    auto text = sign == '~' ? "\u00A0" : sign == '-' ? "\u00AD" : sign == '_' ? "\u2011" : "";
    if (*text == 0)
        return; // of an index and the like
    if (toSkip_ > 0)
        --toSkip_;
    else
        emit(text);
}

void RTFReader::handleWord(const RTFToken& token)
{
    auto word = findRTFWord(token.text);
    auto wasOptional = std::exchange(group().isOptional, false);
    if (wasOptional && word.action != RTFAction::enter) {
        group().destination = RTFDestination::skipped;
        return;
    }
    if (word.action == RTFAction::character && toSkip_ > 0) {
        --toSkip_;
        return;
    }
    if (word.action != RTFAction::unicode)
        toSkip_ = 0;
    switch (word.action) {
    case RTFAction::none:
        return;
    case RTFAction::character:
    case RTFAction::paragraphEnd:
        return emit(word.text);
    case RTFAction::enter:
        return enter(static_cast<RTFDestination>(word.value));
    case RTFAction::unicode:
        return handleUnicode(token.parameter.value_or(0xFFFD));
    case RTFAction::unicodeSkip:
        group().unicodeSkip = std::clamp(token.parameter.value_or(1), 0, 0xFFFF);
        return;
    case RTFAction::field:
        return beginField();
    default:
        handleStyle(word, token.parameter);
        handleTables(word, token.parameter);
    }
}

void RTFReader::handleStyle(const RTFWord& word, std::optional<std::int32_t> parameter)
{
    auto& style = group().style;
    auto isOn = parameter != 0;
    switch (word.action) {
    case RTFAction::bold:
        style.isBold = isOn;
        break;
    case RTFAction::italic:
        style.isItalic = isOn;
        break;
    case RTFAction::underline:
        style.underline = isOn ? word.value : 0;
        break;
    case RTFAction::strikethrough:
        style.strikethrough = isOn ? word.value : 0;
        break;
    case RTFAction::raise:
        style.raise = isOn ? word.value : 0;
        break;
    case RTFAction::raiseBy:
        style.raise = isOn ? 1 : 0;
        break;
    case RTFAction::lowerBy:
        style.raise = isOn ? -1 : 0;
        break;
    case RTFAction::hide:
        style.isHidden = isOn;
        break;
    case RTFAction::plain:
        style = {.font = defaultFont_, .link = style.link};
        break;
    case RTFAction::fontSize:
        style.halfPoints = parameter && *parameter > 0 ? *parameter : 24;
        break;
    case RTFAction::textColor:
        style.textColor = parameter.value_or(0);
        break;
    case RTFAction::backgroundColor:
        style.backgroundColor = parameter.value_or(0);
        break;
    default:
        break;
    }
}

void RTFReader::handleTables(const RTFWord& word, std::optional<std::int32_t> parameter)
{
    auto component = std::clamp(parameter.value_or(0), 0, 255) / 255.0;
    switch (word.action) {
    case RTFAction::font:
        if (group().destination == RTFDestination::fontTable)
            namedFontNumber_ = parameter.value_or(0);
        else
            group().style.font = parameter.value_or(0);
        break;
    case RTFAction::defaultFont:
        defaultFont_ = group().style.font = parameter.value_or(0);
        break;
    case RTFAction::codePage:
        codePage_ = word.value != 0 ? word.value : parameter && *parameter > 0 ? *parameter : 1252;
        break;
    case RTFAction::fontCharset:
        if (auto page = codePageOfFontCharset(parameter.value_or(0)))
            namedFont().codePage = page;
        break;
    case RTFAction::fontCodePage:
        namedFont().codePage = parameter;
        break;
    case RTFAction::fontIsMonospaced:
        namedFont().isMonospaced = true;
        break;
    case RTFAction::red:
        color_.red = component;
        hasColor_ = true;
        break;
    case RTFAction::green:
        color_.green = component;
        hasColor_ = true;
        break;
    case RTFAction::blue:
        color_.blue = component;
        hasColor_ = true;
        break;
    default:
        break;
    }
}

void RTFReader::enter(RTFDestination destination)
{
    switch (destination) {
    case RTFDestination::shapePicture:
        return;
    case RTFDestination::picture:
        emit("\uFFFC");
        group().destination = RTFDestination::skipped;
        return;
    case RTFDestination::fieldResult:
        return enterFieldResult();
    case RTFDestination::fieldInstruction:
        group().destination = group().field == 0 ? RTFDestination::skipped : destination;
        return;
    default:
        group().destination = destination;
    }
}

void RTFReader::beginField()
{
    if (fields_.size() >= mostFields) {
        group().field = 0;
        return;
    }
    fields_.push_back({.around = group().destination});
    group().field = fields_.size() - 1;
}

// A field shows its result where it stands: in the text, or inside another field's instruction.
void RTFReader::enterFieldResult()
{
    if (group().field == 0)
        return;
    auto& field = fields_[group().field];
    group().destination = field.around;
    // Once for each field, however many results it says to have.
    if (!field.link) {
        field.link = 0;
        if (auto link = linkOfField(field.instruction)) {
            tables_.links.push_back(std::move(link));
            field.link = tables_.links.size() - 1;
        }
    }
    group().style.link = *field.link;
}

RTFFont& RTFReader::namedFont()
{
    auto isFull = tables_.fonts.size() >= mostFonts && !tables_.fonts.contains(namedFontNumber_);
    return isFull ? tables_.fonts.begin()->second : tables_.fonts[namedFontNumber_];
}

void RTFReader::handleUnicode(std::int32_t number)
{
    toSkip_ = group().unicodeSkip;
    // Written in 16 bits with a sign; some writers leave the sign out, and some give the whole character.
    auto unit = number < 0 ? number + 0x10000 : number;
    auto isHigh = unit >= 0xD800 && unit < 0xDC00;
    auto isLow = unit >= 0xDC00 && unit < 0xE000;
    if (isLow && highSurrogate_ != 0) {
        auto character = 0x10000 + ((static_cast<char32_t>(highSurrogate_) - 0xD800) << 10)
            + (static_cast<char32_t>(unit) - 0xDC00);
        highSurrogate_ = 0;
        return emit(utf8Of(character));
    }
    flushSurrogate();
    if (isHigh)
        highSurrogate_ = static_cast<char16_t>(unit);
    else if (isLow || unit < 0 || unit > 0x10FFFF)
        emit("\uFFFD");
    else
        emit(utf8Of(static_cast<char32_t>(unit)));
}

void RTFReader::flushSurrogate()
{
    if (highSurrogate_ == 0)
        return;
    highSurrogate_ = 0;
    emit("\uFFFD");
}

std::int32_t RTFReader::currentCodePage() const
{
    auto isTable = groups_.back().destination == RTFDestination::fontTable;
    auto found = tables_.fonts.find(isTable ? namedFontNumber_ : groups_.back().style.font);
    return found == tables_.fonts.end() ? codePage_ : found->second.codePage.value_or(codePage_);
}

void RTFReader::flushBytes()
{
    if (bytes_.empty())
        return;
    auto bytes = std::exchange(bytes_, {});
    emit(codePages_.decode(bytes, currentCodePage()));
}

void RTFReader::emit(std::string_view text)
{
    flushSurrogate();
    switch (group().destination) {
    case RTFDestination::text:
        if (!group().style.isHidden)
            text_.append(text, group().style);
        return;
    case RTFDestination::fontTable:
        return emitFontNames(text);
    case RTFDestination::colorTable:
        return emitColorSigns(text);
    case RTFDestination::fieldInstruction:
        return appendUpTo(longestInstruction, fields_[group().field].instruction, text);
    default:
        return;
    }
}

void RTFReader::emitFontNames(std::string_view text)
{
    // A name ends with its semicolon.
    appendUpTo(longestName, namedFont().name, text.substr(0, text.find(';')));
}

void RTFReader::emitColorSigns(std::string_view text)
{
    for ([[maybe_unused]] auto end : text | std::views::filter([](char sign) { return sign == ';'; })) {
        if (tables_.colors.size() >= mostColors)
            return;
        tables_.colors.push_back(hasColor_ ? std::optional(UIColor(color_)) : std::nullopt);
        color_ = {};
        hasColor_ = false;
    }
}

} // namespace platform
