// SPDX-License-Identifier: MIT
// Any bytes are a document or refused with a reason; a styled text that comes out is one in every respect. The
// first byte chooses the type.
#include "platform/foundation/Precondition.h"
#include "platform/foundation/UTF8.h"
#include "platform/graphics/NSAttributedStringDocuments.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

using namespace platform;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string_view bytes(reinterpret_cast<const char*>(data), size);
    if (bytes.empty())
        return 0;
    // "{" of a sample in Rich Text Format chooses that and stays.
    auto type = bytes.front() == '{' ? NSDocumentType::rtf : NSDocumentType::html;
    auto text = readAttributedString(bytes, type);
    if (!text) {
        precondition(!text.error().bridged().localizedFailureReason().empty(), "a refusal has no reason");
        return 0;
    }
    precondition(isWellFormedUTF8(text->string()), "the text is not UTF-8");
    auto end = std::int64_t{0};
    auto length = std::size_t{0};
    text->enumerateAttributes([&](const TextAttributes& attributes, NSRange range, bool&) {
        precondition(range.location == end && range.length > 0, "the runs do not follow each other");
        precondition(attributes.find(NSFontAttributeName), "a run has no font");
        end = range.end().value;
        length += text->string(range).size();
    });
    precondition(end == text->length() && length == text->string().size(), "the runs are not the text");
    return 0;
}
