// SPDX-License-Identifier: MIT
// Any bytes are decoded to a well-formed text that says what they say, or refused, however they are cut.
#include "platform/foundation/ByteScan_p.h"
#include "platform/foundation/Precondition.h"
#include "platform/foundation/TextDecoding.h"
#include "platform/foundation/UTF8.h"

#include <cstdint>
#include <string_view>

using namespace platform;

namespace {

void checkSurvey(std::string_view text, const TextSurvey& survey)
{
    auto counts = countBlockByByte(text, NextByte::other);
    precondition(survey.size == text.size(), "the survey is of another size");
    precondition(survey.lineEnds == counts.lineEnds, "line ends are miscounted");
    precondition(survey.characters == counts.characters, "characters are miscounted");
    precondition(survey.isASCII == counts.isASCII, "ASCII is misjudged");
    for (std::uint64_t line = 0; line < survey.lineCount(); line += 1 + line / 4) {
        auto start = lineStart(text, survey, line);
        precondition(lineAtOffset(text, survey, start) == line, "a line begins in another line");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string_view bytes(reinterpret_cast<const char*>(data), size);
    precondition(isWellFormedUTF8(bytes) == (wellFormedPrefixByByte(bytes) == size),
                 "wide and narrow disagree");
    precondition(isWellFormedUTF8(repairedUTF8(bytes)), "the repaired text is broken");

    auto whole = decodeText(bytes);
    auto piece = size % 7 + 1;
    auto cut = decodeText(bytes, {.blockSize = piece, .pieceSize = piece, .piecesPerTurn = 1, .threads = 1});
    precondition(whole.has_value() == cut.has_value(), "how a text is cut decides whether it is one");
    if (!whole) {
        precondition(whole.error() == cut.error(), "how a text is cut decides its error");
        return 0;
    }
    auto text = whole->text.utf8();
    precondition(text == cut->text.utf8(), "how a text is cut changes it");
    precondition(wellFormedPrefixByByte(text) == text.size(), "the text is not well-formed");
    if (whole->encoding == TextEncoding::utf8)
        precondition(bytes.ends_with(text) && bytes.size() - text.size() == (whole->hadMark() ? 3 : 0),
                     "bytes are lost");
    checkSurvey(text, *whole->text.survey());
    checkSurvey(text, *cut->text.survey());
    return 0;
}
