// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/NSAttributedString.h"
#include "platform/foundation/Result.h"
#include "platform/foundation/URL.h"

#include <cstddef>
#include <string_view>

namespace platform {

// What a document's bytes are read as. Nothing is guessed from a name or from the bytes.
enum class NSDocumentType {
    plain, // text in any encoding that String::contentsOf knows; no attributes
    html,  // in the encoding of its byte-order mark or its meta element, else UTF-8, else Windows-1252
    rtf,   // Rich Text Format, see docs/formats/rtf.md
};

// Documents larger than these are refused.
inline constexpr std::size_t largestHTMLDocument = std::size_t{4} << 20; // bytes
inline constexpr std::size_t largestRTFDocument = std::size_t{64} << 20;

// Reads a document as a styled text: fonts, colours, links, lines under and through, raised and lowered text, by the
// keys of TextAttributes.h. Paragraphs end in "\n", forced line breaks are U+2028, pictures U+FFFC. What else a
// document has (pictures, margins, scripts, forms) is left out. Never opens, fetches or runs anything that the
// document names. Points: a pixel of HTML is one, and text without a size has 12.
// Errors: the file-read codes; fileReadCorruptFile with the reason for what is not such a document, ends too
// early or is nested too deeply; fileReadTooLarge.
// Threads: HTML on the main thread only, since it asks for fonts; the others any.
[[nodiscard]] Result<NSAttributedString> readAttributedString(const URL& url, NSDocumentType type);

// The same from bytes in memory.
[[nodiscard]] Result<NSAttributedString> readAttributedString(std::string_view bytes, NSDocumentType type);

} // namespace platform
