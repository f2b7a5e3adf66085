// SPDX-License-Identifier: MIT
#include "platform/foundation/CharsetDecoder.h"

#include "platform/foundation/Precondition.h"

#include <unicode/ucnv.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <cstdint>
#include <utility>

namespace platform {

namespace {

struct Close {
    void operator()(UConverter* converter) const { ucnv_close(converter); }
};

// The library takes options behind a comma and a null name for the system's own set; documents get neither.
bool isPlainName(std::string_view name)
{
    return !name.empty() && name.size() < 60
        && std::ranges::all_of(
            name,
            [](char byte) {
                return (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z')
                    || (byte >= 'a' && byte <= 'z') || byte == '-' || byte == '_' || byte == '.'
                    || byte == ':';
            });
}

} // namespace

struct CharsetDecoder::Converter {
    std::unique_ptr<UConverter, Close> handle;
};

CharsetDecoder::CharsetDecoder(std::unique_ptr<Converter> converter)
    : converter_(std::move(converter))
{
}

CharsetDecoder::CharsetDecoder(CharsetDecoder&&) noexcept = default;
CharsetDecoder& CharsetDecoder::operator=(CharsetDecoder&&) noexcept = default;
CharsetDecoder::~CharsetDecoder() = default;

std::optional<CharsetDecoder> CharsetDecoder::open(std::string_view name)
{
    if (!isPlainName(name))
        return std::nullopt;
    auto status = U_ZERO_ERROR;
    std::unique_ptr<UConverter, Close> handle(ucnv_open(std::string(name).c_str(), &status));
    if (U_FAILURE(status))
        return std::nullopt;
    return CharsetDecoder(std::make_unique<Converter>(std::move(handle)));
}

std::string CharsetDecoder::decode(std::string_view bytes)
{
    precondition(bytes.size() <= INT32_MAX, "more than 2 GiB of one character set are decoded at once");
    auto status = U_ZERO_ERROR;
    // Resets the converter.
    icu::UnicodeString text(bytes.data(), static_cast<std::int32_t>(bytes.size()), converter_->handle.get(),
                            status);
    precondition(U_SUCCESS(status), "ICU has no memory for a text of another character set");
    std::string utf8;
    text.toUTF8String(utf8);
    return utf8;
}

} // namespace platform
