// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Result.h"
#include "platform/foundation/String.h"
#include "platform/foundation/TextEncoding.h"
#include "platform/foundation/TextSurvey.h"

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace platform {

// What speaks for an encoding.
enum class TextEvidence {
    mark,             // the bytes begin with its byte-order mark
    zeroBytes,        // the places of the zero bytes
    wellFormed,       // the bytes are well-formed in it
    chosen,           // somebody chose it for the file
    escapes,          // the bytes switch character sets as ISO 2022 has it
    nearlyWellFormed, // the bytes are UTF-8 but for rare ones
    guess,            // the bytes make most sense in it
};

struct TextDetection {
    TextEncoding encoding;
    TextEvidence evidence;
    std::size_t markSize = 0; // bytes to leave out at the beginning

    bool operator==(const TextDetection&) const = default;
};

// How much of the beginning of a text the detection looks at.
inline constexpr std::size_t textDetectionSample = 256 * 1024;

// Finds the encoding of a text from its beginning. Asks, in this order: a byte-order mark (FF FE 00 00 is
// UTF-32's); zero bytes in the places where UTF-32 or UTF-16 put them, and hardly anywhere else; whether the
// bytes are UTF-8, zero bytes included. Nothing when all say no: the bytes are binary or of an encoding that
// is not known here. What is found must still be checked by decoding.
// `head` is the whole text, or at least textDetectionSample bytes of it; no more are looked at.
std::optional<TextDetection> detectTextEncoding(std::string_view head);

struct DecodedText {
    String text; // with its survey, without the mark
    TextEncoding encoding;
    TextEvidence evidence;
    // Bytes that have no meaning in the encoding, and stand in the text as U+FFFD, a sequence each. Only where the
    // evidence is nearlyWellFormed.
    std::size_t replacements = 0;
    // Of a guess: what else the bytes could be decoded in, the likeliest first, beginning with what was.
    std::vector<TextEncoding> candidates;
    bool hadMark() const { return evidence == TextEvidence::mark; }
};

// Decodes Unicode strictly: every byte is understood or the whole is refused, so nothing is ever lost. Copies.
// Errors: fileReadUnknownStringEncoding when no encoding fits; fileReadInapplicableStringEncoding when
// mark or zero bytes name one that the bytes then break (a lone surrogate, an odd byte at the end, a number
// beyond Unicode, ill-formed UTF-8 after a UTF-8 mark).
[[nodiscard]] Result<DecodedText> decodeText(std::string_view bytes, const TextScanOptions& options = {});

// Reads a file as String::contentsOf does, and tells its encoding. What is not Unicode is, in this order: what the
// file's extended attribute user.charset names, when that decodes it (it also counts before Unicode without a mark); an
// encoding of ISO 2022, by its escapes; UTF-8 when at most one in ten sequences beyond ASCII is broken, which then are
// replaced; the encoding that makes most sense of the bytes, the language in the file's name and the user's weighing in,
// among those that can decode each byte. Bytes that are no text (zeroes, control characters by the hundred) are refused.
//
// Only regular files are read: a directory, device, pipe or socket is refused unopened. The file is copied,
// never mapped, so that it may shrink meanwhile. A file that was written to while it was read is read again,
// three times at most; then the text counts if the file still begins with it, as a growing log does, and
// is refused with fileReadUnknown if not: a text is not made of two states of a file.
// Errors: those of decodeText; fileReadNoSuchFile, fileReadNoPermission, fileReadInvalidFileName,
// fileReadUnsupportedScheme (not a file URL), fileReadTooLarge (does not fit into memory), fileReadUnknown (anything
// else). The user info has a description, a failure reason and under NSFilePath the last path component.
[[nodiscard]] Result<DecodedText> readText(const URL& url, const TextScanOptions& options = {});

// The same in an encoding that the caller chose; a byte-order mark of it is left out. Errors: also
// fileReadInapplicableStringEncoding when some byte has no meaning in it.
[[nodiscard]] Result<DecodedText> readText(const URL& url, TextEncoding encoding,
                                           const TextScanOptions& options = {});

// Keeps the choice of an encoding with the file, in its extended attribute user.charset, where readText finds it;
// nothing removes it. Errors: NSPOSIXErrorDomain, as the file system says.
[[nodiscard]] Result<void> keepTextEncoding(const URL& url, std::optional<TextEncoding> encoding);

} // namespace platform
