// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/rtf/RTFCodePages_p.h"
#include "platform/graphics/rtf/RTFStyle_p.h"
#include "platform/graphics/rtf/RTFTokenizer_p.h"
#include "platform/graphics/rtf/RTFWords_p.h"

#include <cstdint>
#include <expected>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

// Reads Rich Text Format as far as text and the look of characters go; docs/formats/rtf.md says what that is.
// Groups are a stack of states, not of calls, so a document cannot exhaust the stack of the program.
class RTFReader {
public:
    // The text, or why the bytes are no such document: it completes "because ...".
    static std::expected<NSAttributedString, std::string> read(std::string_view bytes);

private:
    struct Group {
        RTFStyle style;
        RTFDestination destination = RTFDestination::text;
        std::int32_t unicodeSkip = 1; // characters that stand in for one of Unicode
        std::size_t field = 0;        // number of the field that the group is in, 0: none
        bool isOptional = false;      // began with \*: skipped unless its word is known
    };
    struct Field {
        std::string instruction = {};
        RTFDestination around = RTFDestination::text;
        std::optional<std::size_t> link = {}; // its number among the links, once it was asked for
    };

    explicit RTFReader(std::string_view bytes)
        : tokens_(bytes)
    {
    }
    std::expected<void, std::string> run();
    std::expected<void, std::string> openGroup();
    void closeGroup();

    void handle(const RTFToken& token);
    void handleWord(const RTFToken& token);
    void handleSymbol(char sign);
    void handleStyle(const RTFWord& word, std::optional<std::int32_t> parameter);
    void handleTables(const RTFWord& word, std::optional<std::int32_t> parameter);
    void enter(RTFDestination destination);
    void beginField();
    void enterFieldResult();
    RTFFont& namedFont();
    void handleUnicode(std::int32_t unit);
    void handleBytes(std::string_view bytes);

    // Takes text to where the group's text goes.
    void emit(std::string_view text);
    void emitFontNames(std::string_view text);
    void emitColorSigns(std::string_view text);
    // What waits for its second half: bytes of a character, the first unit of a pair.
    void flushBytes();
    void flushSurrogate();
    std::int32_t currentCodePage() const;
    Group& group() { return groups_.back(); }

    RTFTokenizer tokens_;
    RTFTables tables_;
    RTFTextBuilder text_{tables_};
    RTFCodePages codePages_;
    std::vector<Group> groups_;
    std::vector<Field> fields_{Field{}};
    std::int32_t codePage_ = 1252;
    std::int32_t defaultFont_ = 0;

    std::string bytes_;
    char16_t highSurrogate_ = 0;
    std::int32_t toSkip_ = 0; // stand-ins that follow
    // of the tables
    std::int32_t namedFontNumber_ = 0;
    ColorComponents color_;
    bool hasColor_ = false;
};

} // namespace platform
