// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/StringTable.h"

#include <optional>
#include <string>
#include <string_view>

namespace platform {

// Reads one table; used once. Recovers from a fault at the next line, or at the ";" that ends the broken entry.
class StringTableParser {
public:
    explicit StringTableParser(const StringTableLimits& limits);

    void parse(std::string_view bytes);
    ParsedStringTable finish() &&;

private:
    // A text in quotes or a bare word.
    struct Token {
        std::string text;
        std::size_t begin = 0;
        bool isEnded = true; // false when its closing quote is missing; reading goes on with the next line
        bool isWhole = true; // false when it holds an escape that means nothing
    };

    void parsePropertyListForm(std::string_view bytes);
    void parseEntries();
    void parseEntry();
    void add(Token key, std::string value);

    // Steps over white space and comments. Gives whether anything is left.
    bool skipSpace();
    bool skipComment();
    void skipBrokenEntry();

    std::optional<Token> token();
    Token quoted();
    Token word();
    void appendEscape(Token& token);
    void appendUnicodeEscape(Token& token);
    void appendOctalEscape(Token& token);
    std::optional<char32_t> utf16Unit();

    void report(std::size_t offset, std::string message);
    void reportWithoutPlace(std::string message);
    std::size_t lineAt(std::size_t offset);

    const StringTableLimits limits_;
    std::string_view text_;
    std::size_t at_ = 0;
    // A place whose line is known, from which others are counted.
    std::size_t lineOffset_ = 0;
    std::size_t line_ = 1;
    std::size_t faults_ = 0;
    bool isFull_ = false;
    ParsedStringTable result_;
};

} // namespace platform
