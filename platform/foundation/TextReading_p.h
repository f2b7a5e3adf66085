// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/AnonymousMemory_p.h"
#include "platform/foundation/FileReading_p.h"
#include "platform/foundation/LegacyGuess_p.h"
#include "platform/foundation/TextDecoding.h"
#include "platform/foundation/TextScan_p.h"

#include <cstddef>
#include <expected>
#include <functional>
#include <optional>

namespace platform {

template <class Value>
using FileOutcome = std::expected<Value, FileFault>;

FileFault unknownEncoding();

// The UTF-8 in `memory` from `begin`, of which the survey is, as a text.
DecodedText decoded(AnonymousMemory memory, std::size_t begin, TextSurvey survey,
                    const TextDetection& detection);

// Decodes `size` bytes at the beginning of `memory`, in the encoding that was detected. The UTF-8 of a file is
// scanned while it is read; `scanned` is then what that gave, and the bytes are not walked again.
FileOutcome<DecodedText> decodeDetected(AnonymousMemory memory, std::size_t size,
                                        const TextDetection& detection, const TextScanResult* scanned,
                                        const TextScanOptions& options);

// What is known of a text besides its bytes.
struct TextReadingHints {
    std::optional<TextEncoding> demanded; // or the error
    std::optional<TextEncoding> chosen;   // when the bytes agree
    std::function<LegacyHints()> languages;
};
// What the file's name, its extended attribute and the user's languages say. `url` must outlive it.
TextReadingHints readingHintsFor(const URL& url);

// Decodes `size` bytes at the beginning of `memory` that are not Unicode as a whole, by what else speaks for an
// encoding.
FileOutcome<DecodedText> decodeOtherText(AnonymousMemory memory, std::size_t size,
                                         const TextReadingHints& hints, const TextScanOptions& options);
// Whether bytes that are not Unicode are no text at all.
bool isBinary(std::string_view bytes);
// Whether the bytes are to be decoded by decodeOtherText although they look like UTF-8.
bool speaksAgainstUTF8(std::string_view head, const TextReadingHints& hints);

// readText, from any source.
FileOutcome<DecodedText> readTextFrom(ByteSource& source, const TextReadingHints& hints,
                                      const TextScanOptions& options);

} // namespace platform
