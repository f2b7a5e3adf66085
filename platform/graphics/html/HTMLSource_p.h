// SPDX-License-Identifier: MIT
#pragma once

#include <expected>
#include <string>
#include <string_view>

namespace platform {

// The bytes of an HTML document as UTF-8: by the byte-order mark, else by what a meta element at the beginning
// names, else as UTF-8 where they are that, else as Windows-1252. Never fails; what is no character is U+FFFD.
std::string decodeHTML(std::string_view bytes);

// The document as the parsing library can be trusted with it: tables are paragraphs, of which it would make as
// many cells as their attributes say; pictures are U+FFFC; a "<" that begins no element is a sign of the text;
// style sheets of more rules than the elements can bear are left out. The text stays the same.
// Fails with a reason that completes "because ..." when the elements are too many or nested too deeply: the
// library would take minutes.
std::expected<std::string, std::string> guardedHTML(std::string_view html);

} // namespace platform
