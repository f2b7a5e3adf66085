// SPDX-License-Identifier: MIT
#include "platform/foundation/TextHead.h"

#include "platform/foundation/ByteScan_p.h"
#include "platform/foundation/TextReading_p.h"

#include <algorithm>
#include <span>
#include <string>

namespace platform {

namespace {

// Bytes that were read already, so that they can be decoded like a file's.
class ReadBytes final : public ByteSource {
public:
    explicit ReadBytes(std::string_view bytes)
        : bytes_(bytes)
    {
    }
    std::expected<Status, int> status() override { return Status{.size = bytes_.size()}; }
    ssize_t read(std::span<char> into, std::uint64_t offset) override
    {
        auto part = bytes_.substr(std::min<std::size_t>(offset, bytes_.size()), into.size());
        std::ranges::copy(part, into.begin());
        return static_cast<ssize_t>(part.size());
    }

private:
    std::string_view bytes_;
};

// The bytes of one character of ASCII in a wide encoding.
struct WideUnit {
    std::size_t size = 1;
    std::size_t place = 0; // of the byte that is not zero
};

WideUnit unitOf(TextEncoding encoding)
{
    switch (encoding) {
    case TextEncoding::utf16LittleEndian:
        return {2, 0};
    case TextEncoding::utf16BigEndian:
        return {2, 1};
    case TextEncoding::utf32LittleEndian:
        return {4, 0};
    case TextEncoding::utf32BigEndian:
        return {4, 3};
    default:
        return {};
    }
}

// Where the last such character ends; 0 when there is none. In the encodings of several bytes a character, bytes below
// the digits are always themselves.
std::size_t endOfLast(char character, std::string_view bytes, WideUnit unit)
{
    std::string wide(unit.size, '\0');
    wide[unit.place] = character;
    for (auto end = bytes.size() - bytes.size() % unit.size; end >= unit.size; end -= unit.size) {
        if (bytes.substr(end - unit.size, unit.size) == wide)
            return end;
    }
    return 0;
}

// How many of the bytes may be decoded although the text goes on.
std::size_t wholeSize(std::string_view bytes)
{
    auto detection = detectTextEncoding(bytes);
    auto unit = detection ? unitOf(detection->encoding) : WideUnit{};
    for (char separator : {'\n', '\r', ' '}) {
        if (auto end = endOfLast(separator, bytes, unit))
            return end;
    }
    if (unit.size == 1)
        return bytes.size() - openSequenceSize(bytes);
    auto size = bytes.size() - bytes.size() % unit.size;
    // A high surrogate waits for its other half.
    auto upper = static_cast<unsigned char>(bytes[size - 1 - unit.place]);
    return unit.size == 2 && upper >= 0xD8 && upper <= 0xDB ? size - unit.size : size;
}

} // namespace

Result<TextHead> readTextHead(const URL& url, std::size_t limit)
{
    auto bytes = TRY(readFileHead(url, limit + 1));
    bool isWhole = bytes.size() <= limit;
    if (!isWhole)
        bytes.resize(limit);
    if (!isWhole && limit > 0)
        bytes.resize(wholeSize(bytes));
    ReadBytes source(bytes);
    auto text = readTextFrom(source, readingHintsFor(url), {});
    if (!text)
        return std::unexpected(fileError(text.error().code, url, text.error().clause));
    return TextHead{.decoded = std::move(*text), .isWhole = isWhole};
}

} // namespace platform
