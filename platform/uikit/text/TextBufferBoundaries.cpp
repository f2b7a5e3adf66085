// SPDX-License-Identifier: MIT
// The boundaries of characters and words: decided by the bytes around the offset, wherever their pieces are.
#include "platform/graphics/TextBoundaries.h"
#include "platform/uikit/text/TextBuffer.h"
#include "platform/uikit/text/TextScan.h"

#include <algorithm>

namespace platform {

namespace {

// Longer than the longest word or character that the boundaries look at.
constexpr std::int64_t reach = 20 * 1024;

} // namespace

// The bytes around an offset, beginning and ending between code points.
struct TextBuffer::Window {
    std::string_view bytes;
    Utf8Offset start;
    std::size_t offset = 0; // the place asked for, inside `bytes`

    Utf8Offset at(std::size_t inside) const { return start + static_cast<std::int64_t>(inside); }
};

TextBuffer::Window TextBuffer::windowAround(Utf8Offset offset, std::string& scratch) const
{
    offset = std::clamp(offset, Utf8Offset{0}, end());
    TextRange range{std::max(offset - reach, Utf8Offset{0}), std::min(offset + reach, end())};
    auto bytes = view(range, scratch);
    while (range.start > Utf8Offset{0} && !bytes.empty() && isUtf8Continuation(bytes.front())) {
        bytes.remove_prefix(1);
        range.start = range.start + 1;
    }
    return {bytes, range.start, static_cast<std::size_t>(offset - range.start)};
}

Utf8Offset TextBuffer::nextCharacter(Utf8Offset offset) const
{
    std::string scratch;
    auto window = windowAround(offset, scratch);
    return window.at(platform::nextGrapheme(window.bytes, window.offset));
}

Utf8Offset TextBuffer::previousCharacter(Utf8Offset offset) const
{
    std::string scratch;
    auto window = windowAround(offset, scratch);
    return window.at(platform::previousGrapheme(window.bytes, window.offset));
}

Utf8Offset TextBuffer::characterStart(Utf8Offset offset) const
{
    std::string scratch;
    auto window = windowAround(offset, scratch);
    return window.at(platform::graphemeStart(window.bytes, window.offset));
}

Utf8Offset TextBuffer::nextWordEnd(Utf8Offset offset) const
{
    std::string scratch;
    auto window = windowAround(offset, scratch);
    return window.at(platform::nextWordEnd(window.bytes, window.offset));
}

Utf8Offset TextBuffer::previousWordStart(Utf8Offset offset) const
{
    std::string scratch;
    auto window = windowAround(offset, scratch);
    return window.at(platform::previousWordStart(window.bytes, window.offset));
}

TextRange TextBuffer::wordRange(Utf8Offset offset) const
{
    std::string scratch;
    auto window = windowAround(offset, scratch);
    auto word = platform::wordRange(window.bytes, window.offset);
    return {window.at(word.begin), window.at(word.end)};
}

} // namespace platform
