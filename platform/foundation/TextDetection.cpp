// SPDX-License-Identifier: MIT
#include "platform/foundation/ByteScan_p.h"
#include "platform/foundation/TextDecoding.h"
#include "platform/foundation/UTF8.h"

#include <array>

namespace platform {

namespace {

using namespace std::string_view_literals;

// Longest first: UTF-32's little-endian mark begins with UTF-16's.
struct Mark {
    TextEncoding encoding;
    std::string_view bytes;
};
constexpr Mark marks[] = {
    {TextEncoding::utf32LittleEndian, "\xFF\xFE\0\0"sv},
    {TextEncoding::utf32BigEndian, "\0\0\xFE\xFF"sv},
    {TextEncoding::utf8, "\xEF\xBB\xBF"sv},
    {TextEncoding::utf16LittleEndian, "\xFF\xFE"sv},
    {TextEncoding::utf16BigEndian, "\xFE\xFF"sv},
};

struct Sample {
    std::string_view bytes;
    bool isUTF8 = false; // as far as it goes: a character may be cut at the end
    bool isCut = false;  // more may follow
};

std::optional<TextDetection> detectMark(const Sample& sample)
{
    for (auto& mark : marks) {
        if (sample.bytes.starts_with(mark.bytes))
            return TextDetection{mark.encoding, TextEvidence::mark, mark.bytes.size()};
    }
    return std::nullopt;
}

bool isControl(unsigned char byte)
{
    return byte < 0x20 && !(byte >= '\t' && byte <= '\r') && byte != 0x1B;
}

// UTF-32 gives itself away in every character: the upper byte is zero and the next one the number of a plane in
// use. Planes 9, 10 and 13 would be tabs and line ends of UTF-16.
bool looksLikeUTF32(std::string_view bytes, std::size_t upper, std::size_t next)
{
    auto units = bytes.size() / 4;
    // A few zero bytes at the end of a short text are no proof when the size is no multiple of four either.
    if (units < (bytes.size() % 4 == 0 ? 1u : 2u))
        return false;
    std::size_t zeroes = 0;
    for (std::size_t i = 0; i < units; ++i) {
        auto unit = bytes.substr(i * 4, 4);
        auto plane = static_cast<unsigned char>(unit[next]);
        if (unit[upper] != 0 || (plane > 3 && plane != 14))
            return false;
        zeroes += unit == "\0\0\0\0"sv;
    }
    return zeroes * 2 < units;
}

// What the two halves of 16-bit units hold, when byte `upper` (0 or 1) of each is taken for the upper half.
struct HalfCounts {
    std::size_t units = 0;
    std::size_t upperZeroes = 0;   // ASCII and Latin-1
    std::size_t upperControls = 0; // the same, and most alphabets: Cyrillic is 4, Hebrew 5, Arabic 6
    std::size_t lowerZeroes = 0;   // with an upper half that is not zero
    std::size_t controls = 0;      // control characters, zero included
};

HalfCounts countHalves(std::string_view bytes, std::size_t upper)
{
    HalfCounts counts{.units = bytes.size() / 2};
    for (std::size_t i = 0; i < counts.units; ++i) {
        auto high = static_cast<unsigned char>(bytes[i * 2 + upper]);
        auto low = static_cast<unsigned char>(bytes[i * 2 + 1 - upper]);
        counts.upperZeroes += high == 0;
        counts.upperControls += isControl(high);
        counts.lowerZeroes += low == 0 && high != 0;
        counts.controls += high == 0 && isControl(low);
    }
    return counts;
}

// UTF-16 has zero bytes in the upper halves of spaces, digits and line ends in any script, and hardly any in
// lower halves. Bytes that are also UTF-8 need more proof: zero bytes strewn into a text, or at its end, must
// not turn it into another. Then nearly all upper halves have to be bytes that text does not use.
bool looksLikeUTF16(const Sample& sample, const HalfCounts& counts)
{
    bool isOdd = sample.bytes.size() % 2 != 0 && !sample.isCut;
    if (counts.units < (isOdd ? 4u : 1u) || counts.upperZeroes == 0)
        return false;
    if (counts.lowerZeroes * 4 > counts.upperZeroes || counts.controls * 10 > counts.units)
        return false;
    if (sample.isUTF8)
        return counts.upperControls * 10 >= counts.units * 7;
    return counts.upperZeroes * 100 >= counts.units;
}

std::optional<TextDetection> detectZeroBytes(const Sample& sample)
{
    if (sample.bytes.find('\0') == std::string_view::npos)
        return std::nullopt;
    auto found = [](TextEncoding encoding) { return TextDetection{encoding, TextEvidence::zeroBytes}; };
    if (looksLikeUTF32(sample.bytes, 3, 2))
        return found(TextEncoding::utf32LittleEndian);
    if (looksLikeUTF32(sample.bytes, 0, 1))
        return found(TextEncoding::utf32BigEndian);
    auto little = countHalves(sample.bytes, 1), big = countHalves(sample.bytes, 0);
    bool isLittle = looksLikeUTF16(sample, little), isBig = looksLikeUTF16(sample, big);
    if (isLittle && (!isBig || little.upperZeroes >= big.upperZeroes))
        return found(TextEncoding::utf16LittleEndian);
    if (isBig)
        return found(TextEncoding::utf16BigEndian);
    return std::nullopt;
}

std::optional<TextDetection> detectUTF8(const Sample& sample)
{
    if (!sample.isUTF8)
        return std::nullopt;
    return TextDetection{TextEncoding::utf8, TextEvidence::wellFormed};
}

// The first that answers is believed.
constexpr std::array<std::optional<TextDetection> (*)(const Sample&), 3> detectors = {
    detectMark, detectZeroBytes, detectUTF8};

Sample sampled(std::string_view head)
{
    Sample sample{.bytes = head.substr(0, textDetectionSample)};
    sample.isCut = sample.bytes.size() == textDetectionSample;
    auto whole = sample.bytes;
    if (sample.isCut)
        whole.remove_suffix(openSequenceSize(whole));
    sample.isUTF8 = isWellFormedUTF8(whole);
    return sample;
}

} // namespace

std::optional<TextDetection> detectTextEncoding(std::string_view head)
{
    auto sample = sampled(head);
    for (auto detect : detectors) {
        if (auto detection = detect(sample))
            return detection;
    }
    return std::nullopt;
}

} // namespace platform
