// SPDX-License-Identifier: MIT
// Texts that are not Unicode from the first byte to the last.
#include "platform/foundation/ByteScan_p.h"
#include "platform/foundation/LegacyDecoding_p.h"
#include "platform/foundation/TextReading_p.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

namespace platform {

namespace {

using namespace std::string_view_literals;

constexpr std::string_view replacement = "\uFFFD";

bool isControl(char c)
{
    auto byte = static_cast<unsigned char>(c);
    return byte < 0x20 && !(byte >= '\t' && byte <= '\r') && byte != 0x1B
        && byte != 0x1A; // 1A: DOS ended files so
}

std::optional<TextEncoding> encodingByEscapes(std::string_view bytes)
{
    struct Escape {
        std::string_view bytes;
        TextEncoding encoding;
    };
    constexpr Escape escapes[] = {
        {"\x1B$@", TextEncoding::iso2022JP},
        {"\x1B$B", TextEncoding::iso2022JP},
        {"\x1B$(D", TextEncoding::iso2022JP},
        {"\x1B$)C", TextEncoding::iso2022KR},
    };
    if (bytes.find('\x1B') == std::string_view::npos
        || std::ranges::any_of(bytes, [](char c) { return c < 0; }))
        return std::nullopt;
    for (auto& escape : escapes) {
        if (bytes.find(escape.bytes) != std::string_view::npos)
            return escape.encoding;
    }
    return std::nullopt;
}

struct SequenceCounts {
    std::size_t good = 0; // beyond ASCII
    std::size_t bad = 0;
    std::size_t badBytes = 0;
    bool endsCut = false; // the last bad one is what is left of a sequence at the very end
};

SequenceCounts countSequences(std::string_view bytes)
{
    SequenceCounts counts;
    std::size_t wrong = 0;
    while (!bytes.empty()) {
        if (bytes.front() >= 0) {
            bytes.remove_prefix(1);
            continue;
        }
        auto length = sequenceLength(bytes, wrong);
        if (length == 0) {
            ++counts.bad;
            counts.badBytes += wrong;
            counts.endsCut = wrong == bytes.size() && openSequenceSize(bytes) == wrong;
        } else {
            ++counts.good;
        }
        bytes.remove_prefix(length > 0 ? length : wrong);
    }
    return counts;
}

// Another encoding's bytes are hardly ever UTF-8 by chance, so a few that are not change nothing.
bool isNearlyUTF8(const SequenceCounts& counts)
{
    return counts.bad * 4 <= counts.good || (counts.endsCut && counts.bad == 1);
}

FileOutcome<DecodedText> repaired(AnonymousMemory memory, std::string_view bytes,
                                  const SequenceCounts& counts, const TextScanOptions& options)
{
    auto output = AnonymousMemory::allocate(bytes.size() + counts.bad * replacement.size());
    if (!output)
        return std::unexpected(faultOf(ENOMEM));
    auto* at = output->data();
    std::size_t wrong = 0;
    while (!bytes.empty()) {
        auto good = wellFormedPrefixByByte(bytes);
        std::memcpy(at, bytes.data(), good);
        at += good;
        bytes.remove_prefix(good);
        if (bytes.empty())
            break;
        sequenceLength(bytes, wrong);
        bytes.remove_prefix(wrong);
        at = std::ranges::copy(replacement, at).out;
    }
    auto size = static_cast<std::size_t>(at - output->data());
    auto released = std::move(memory); // two texts in memory are enough
    output->trim(size);
    auto survey = surveyText({output->data(), size}, options);
    auto text = decoded(std::move(*output), 0, std::move(survey),
                        {.encoding = TextEncoding::utf8, .evidence = TextEvidence::nearlyWellFormed});
    text.replacements = counts.bad;
    return text;
}

// Nothing when some byte has no meaning in the encoding.
std::optional<FileOutcome<DecodedText>> decodedIn(TextEncoding encoding, TextEvidence evidence,
                                                  std::string_view bytes, const TextScanOptions& options)
{
    auto output = AnonymousMemory::allocate(legacyCapacity(bytes.size()));
    if (!output)
        return std::unexpected(faultOf(ENOMEM));
    auto size = decodeLegacy(encoding, bytes, output->data());
    if (!size)
        return std::nullopt;
    output->trim(*size);
    auto survey = surveyText({output->data(), *size}, options);
    return decoded(std::move(*output), 0, std::move(survey), {.encoding = encoding, .evidence = evidence});
}

FileFault notIn(TextEncoding encoding)
{
    return {NSCocoaError::fileReadInapplicableStringEncoding,
            "its contents are not valid in the text encoding " + std::string(localizedName(encoding))};
}

FileOutcome<DecodedText> decodeDemanded(AnonymousMemory memory, std::size_t size, TextEncoding encoding,
                                        const TextScanOptions& options)
{
    std::string_view bytes(memory.data(), size);
    if (!isUnicode(encoding)) {
        auto text = decodedIn(encoding, TextEvidence::chosen, bytes, options);
        return text ? std::move(*text) : std::unexpected(notIn(encoding));
    }
    TextDetection detection{.encoding = encoding, .evidence = TextEvidence::chosen};
    if (auto found = detectTextEncoding(bytes);
        found && found->evidence == TextEvidence::mark && found->encoding == encoding)
        detection.markSize = found->markSize;
    auto text = decodeDetected(std::move(memory), size, detection, nullptr, options);
    if (!text)
        return std::unexpected(notIn(encoding));
    return text;
}

} // namespace

// Texts hold no zero bytes but in Unicode's wide forms, and control characters only by accident.
bool isBinary(std::string_view bytes)
{
    auto controls = std::ranges::count_if(bytes, isControl);
    return bytes.find('\0') != std::string_view::npos
        || (controls > 8 && static_cast<std::size_t>(controls) > bytes.size() / 50);
}

bool speaksAgainstUTF8(std::string_view head, const TextReadingHints& hints)
{
    return (hints.chosen && !isUnicode(*hints.chosen)) || encodingByEscapes(head);
}

FileOutcome<DecodedText> decodeOtherText(AnonymousMemory memory, std::size_t size,
                                         const TextReadingHints& hints, const TextScanOptions& options)
{
    if (hints.demanded)
        return decodeDemanded(std::move(memory), size, *hints.demanded, options);
    std::string_view bytes(memory.data(), size);
    if (hints.chosen && !isUnicode(*hints.chosen)) {
        if (auto text = decodedIn(*hints.chosen, TextEvidence::chosen, bytes, options))
            return std::move(*text);
    }
    if (isBinary(bytes))
        return std::unexpected(unknownEncoding());
    if (auto encoding = encodingByEscapes(bytes)) {
        if (auto text = decodedIn(*encoding, TextEvidence::escapes, bytes, options))
            return std::move(*text);
    }
    auto counts = countSequences(bytes);
    if (counts.bad == 0) // it was something else that spoke against it, and was wrong
        return decodeDetected(std::move(memory), size, {TextEncoding::utf8, TextEvidence::wellFormed},
                              nullptr, options);
    if (isNearlyUTF8(counts))
        return repaired(std::move(memory), bytes, counts, options);
    auto candidates = guessLegacyEncodings(bytes, hints.languages ? hints.languages() : LegacyHints());
    for (auto candidate : candidates) {
        auto text = decodedIn(candidate, TextEvidence::guess, bytes, options);
        if (!text)
            continue;
        if (*text)
            (*text)->candidates = std::move(candidates);
        return std::move(*text);
    }
    return std::unexpected(unknownEncoding());
}

} // namespace platform
