// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string_view>

namespace platform {

// What a control word does. Words that are not listed do nothing, as the format asks of readers.
enum class RTFAction {
    none,
    character,    // stands for the text
    paragraphEnd, // the same, and is never a stand-in for another character
    enter,        // what follows in the group is not text of the document: `value` is the RTFDestination
    // the style of characters
    bold,
    italic,
    underline, // `value` is the style
    strikethrough,
    raise, // `value` is 1, -1 or 0
    raiseBy,
    lowerBy,
    hide,
    plain,
    fontSize,
    font,
    textColor,
    backgroundColor,
    // the document
    codePage, // `value`, else the parameter
    defaultFont,
    unicode,
    unicodeSkip,
    // the font table
    fontCharset,
    fontCodePage,
    fontIsMonospaced,
    // the colour table
    red,
    green,
    blue,
    // a field begins
    field,
};

enum class RTFDestination : std::int32_t {
    text,
    skipped,
    fontTable,
    colorTable,
    fieldInstruction,
    fieldResult,
    picture,      // skipped, and U+FFFC stands in its place
    shapePicture, // text: holds the picture
};

struct RTFWord {
    std::string_view name;
    RTFAction action = RTFAction::none;
    std::int32_t value = 0;
    std::string_view text = {}; // of a character
};

RTFWord findRTFWord(std::string_view name);

} // namespace platform
