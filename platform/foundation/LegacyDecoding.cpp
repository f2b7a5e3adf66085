// SPDX-License-Identifier: MIT
#include "platform/foundation/LegacyDecoding_p.h"

#include "platform/foundation/Precondition.h"
#include "platform/foundation/TextEncodingTable_p.h"

#include <map>
#include <memory>
#include <mutex>
#include <string>

#include <unicode/ucnv.h>

namespace platform {

namespace {

struct ConverterDeleter {
    void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using Converter = std::unique_ptr<UConverter, ConverterDeleter>;

// Stops at what it does not understand.
Converter openConverter(const char* name)
{
    UErrorCode status = U_ZERO_ERROR;
    Converter converter(ucnv_open(name, &status));
    precondition(U_SUCCESS(status), "the character set library knows the encodings of the table");
    ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
    return converter;
}

// ISO 8859-16:2001, which the library has not.
constexpr UpperHalf iso8859_16Half = [] {
    UpperHalf half{};
    constexpr char16_t upper[] =
        u"\u00A0\u0104\u0105\u0141\u20AC\u201E\u0160\u00A7\u0161\u00A9\u0218\u00AB\u0179\u00AD"
        u"\u017A\u017B\u00B0\u00B1\u010C\u0142\u017D\u201D\u00B6\u00B7\u017E\u010D\u0219\u00BB"
        u"\u0152\u0153\u0178\u017C\u00C0\u00C1\u00C2\u0102\u00C4\u0106\u00C6\u00C7\u00C8\u00C9"
        u"\u00CA\u00CB\u00CC\u00CD\u00CE\u00CF\u0110\u0143\u00D2\u00D3\u00D4\u0150\u00D6\u015A"
        u"\u0170\u00D9\u00DA\u00DB\u00DC\u0118\u021A\u00DF\u00E0\u00E1\u00E2\u0103\u00E4\u0107"
        u"\u00E6\u00E7\u00E8\u00E9\u00EA\u00EB\u00EC\u00ED\u00EE\u00EF\u0111\u0144\u00F2\u00F3"
        u"\u00F4\u0151\u00F6\u015B\u0171\u00F9\u00FA\u00FB\u00FC\u0119\u021B\u00FF";
    static_assert(std::size(upper) == 96 + 1);
    for (int i = 0; i < 96; ++i)
        half[static_cast<std::size_t>(32 + i)] = upper[i];
    return half;
}();

UpperHalf makeUpperHalf(const TextEncodingRow& row)
{
    if (!row.converter)
        return iso8859_16Half;
    UpperHalf half{};
    auto converter = openConverter(row.converter);
    for (int byte = 0x80; byte <= 0xFF; ++byte) {
        char source = static_cast<char>(byte);
        const char* at = &source;
        UChar unit = 0;
        UChar* output = &unit;
        UErrorCode status = U_ZERO_ERROR;
        ucnv_reset(converter.get());
        ucnv_toUnicode(converter.get(), &output, &unit + 1, &at, &source + 1, nullptr, true, &status);
        // Some of these encodings put their unused bytes on control characters or private ones.
        bool isText = U_SUCCESS(status) && output == &unit + 1 && unit >= 0xA0 && (unit & 0xF800) != 0xE000
            && unit != 0xFFFD;
        half[static_cast<std::size_t>(byte - 0x80)] = isText ? unit : 0;
    }
    return half;
}

bool isOneByte(const TextEncodingRow& row)
{
    return !row.languages.empty();
}

char* append(char* output, char16_t character)
{
    auto byte = [&](unsigned value) { *output++ = static_cast<char>(value); };
    if (character >= 0x800) {
        byte(0xE0u | character >> 12);
        byte(0x80u | (character >> 6 & 0x3Fu));
    } else {
        byte(0xC0u | character >> 6);
    }
    byte(0x80u | (character & 0x3Fu));
    return output;
}

std::optional<std::size_t> decodeOneByte(const UpperHalf& half, std::string_view bytes, char* output)
{
    auto* begin = output;
    for (char c : bytes) {
        if (c >= 0) {
            *output++ = c;
            continue;
        }
        auto character = half[static_cast<unsigned char>(c) - 0x80u];
        if (character == 0)
            return std::nullopt;
        output = append(output, character);
    }
    return static_cast<std::size_t>(output - begin);
}

// Calls `take(begin, end)` with UTF-16 as it comes. False when the bytes cannot be decoded.
template <class Take>
bool walk(const char* name, std::string_view bytes, Ending ending, Take take)
{
    auto converter = openConverter(name);
    std::array<UChar, 4096> units;
    const char* at = bytes.data();
    const char* end = at + bytes.size();
    for (;;) {
        UChar* output = units.data();
        UErrorCode status = U_ZERO_ERROR;
        ucnv_toUnicode(converter.get(), &output, units.data() + units.size(), &at, end, nullptr,
                       ending == Ending::whole, &status);
        if (!take(units.data(), output))
            return false;
        if (status == U_BUFFER_OVERFLOW_ERROR)
            continue;
        return U_SUCCESS(status) && at == end;
    }
}

} // namespace

const UpperHalf* upperHalf(TextEncoding encoding)
{
    auto& row = textEncodingRow(encoding);
    if (!isOneByte(row))
        return nullptr;
    static std::mutex mutex;
    // Guarded by mutex; entries never change or go, not even while the process exits and threads may still run.
    static auto& halves = *new std::map<TextEncoding, UpperHalf>;
    std::lock_guard lock(mutex);
    auto [found, isNew] = halves.try_emplace(encoding);
    if (isNew)
        found->second = makeUpperHalf(row);
    return &found->second;
}

std::optional<std::size_t> decodeLegacy(TextEncoding encoding, std::string_view bytes, char* output)
{
    precondition(!isUnicode(encoding), "Unicode's own forms are decoded elsewhere");
    if (auto* half = upperHalf(encoding))
        return decodeOneByte(*half, bytes, output);
    auto* begin = output;
    char16_t high = 0;
    bool decodes = walk(textEncodingRow(encoding).converter, bytes, Ending::whole,
                        [&](const UChar* unit, const UChar* end) {
                            for (; unit != end; ++unit) {
                                if (*unit < 0x80) {
                                    *output++ = static_cast<char>(*unit);
                                } else if ((*unit & 0xFC00) == 0xD800) {
                                    high = *unit;
                                } else if ((*unit & 0xFC00) == 0xDC00) {
                                    auto character = 0x10000u + ((high & 0x3FFu) << 10 | (*unit & 0x3FFu));
                                    *output++ = static_cast<char>(0xF0u | character >> 18);
                                    *output++ = static_cast<char>(0x80u | (character >> 12 & 0x3Fu));
                                    *output++ = static_cast<char>(0x80u | (character >> 6 & 0x3Fu));
                                    *output++ = static_cast<char>(0x80u | (character & 0x3Fu));
                                } else {
                                    output = append(output, *unit);
                                }
                            }
                            return true;
                        });
    if (!decodes)
        return std::nullopt;
    return static_cast<std::size_t>(output - begin);
}

bool decodesStrictly(TextEncoding encoding, std::string_view bytes, Ending ending)
{
    if (auto* half = upperHalf(encoding)) {
        for (char c : bytes) {
            if (c < 0 && (*half)[static_cast<unsigned char>(c) - 0x80u] == 0)
                return false;
        }
        return true;
    }
    return walk(textEncodingRow(encoding).converter, bytes, ending, [](const UChar* unit, const UChar* end) {
        // Private characters and controls stand for bytes that nobody assigned.
        for (; unit != end; ++unit) {
            if ((*unit >= 0xE000 && *unit <= 0xF8FF) || (*unit >= 0x7F && *unit < 0xA0) || *unit == 0xFFFD)
                return false;
        }
        return true;
    });
}

} // namespace platform
