// SPDX-License-Identifier: MIT
#include "platform/uikit/text/TextPiece.h"

#include "platform/foundation/Precondition.h"
#include "platform/uikit/text/TextScan.h"

namespace platform {

TextPiece::TextPiece(std::string_view bytes)
    : TextPiece(bytes, countLineEnds(bytes), platform::isASCII(bytes))
{
}

TextPiece::TextPiece(std::string_view bytes, std::int64_t lineEnds, bool isASCII)
    : bytes_(bytes.data())
    , size_(static_cast<std::uint32_t>(bytes.size()))
    , lineEnds_(static_cast<std::uint16_t>(lineEnds))
    , isASCII_(isASCII)
{
    precondition(!bytes.empty() && bytes.size() <= sizeLimit, "a piece of text holds 1 to 16384 bytes");
}

std::int64_t TextPiece::utf16Units() const
{
    if (utf16Units_ == unknown)
        utf16Units_ = isASCII_ ? size_ : static_cast<std::uint32_t>(countUtf16Units(bytes()));
    return utf16Units_;
}

const ColumnSurvey& TextPiece::columns() const
{
    if (!hasColumns_) {
        columns_ = ColumnSurvey::of(bytes());
        hasColumns_ = true;
    }
    return columns_;
}

} // namespace platform
