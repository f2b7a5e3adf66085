// SPDX-License-Identifier: MIT
#include "platform/foundation/TextSurvey.h"
#include "platform/uikit/text/TextBuffer.h"
#include "platform/uikit/text/TextScan.h"
#include "tests/platform/uikit/TextTestSupport.h"

#include <gtest/gtest.h>

using namespace platform;
using namespace texttests;

namespace {

constexpr auto pieceSize = static_cast<std::size_t>(TextPiece::sizeLimit);

void expectLines(const TextBuffer& buffer, std::string_view model)
{
    auto starts = lineStarts(model);
    ASSERT_EQ(buffer.lineCount(), std::ssize(starts));
    ASSERT_EQ(buffer.size(), std::ssize(model));
    // All lines of a small text; of a large one, some, and all that are near a border of pieces.
    auto isNearBorder = [](std::int64_t at) { return (at + 4) % TextPiece::sizeLimit < 8; };
    for (std::size_t line = 0; line < starts.size(); ++line) {
        if (starts.size() > 500 && line % (starts.size() / 250) != 0 && !isNearBorder(starts[line]))
            continue;
        LineNumber number{static_cast<std::int64_t>(line)};
        auto end = line + 1 < starts.size() ? starts[line + 1] : std::ssize(model);
        ASSERT_EQ(buffer.lineStart(number).value, starts[line]);
        ASSERT_EQ(buffer.lineRange(number).end.value, end);
        for (auto offset : {starts[line], (starts[line] + end) / 2, std::max(starts[line], end - 1)}) {
            if (offset < end || end == std::ssize(model)) {
                ASSERT_EQ(buffer.lineContaining({offset}), number) << offset;
            }
        }
    }
}

String surveyed(const std::string& text)
{
    auto owner = std::make_shared<std::string>(text);
    return String::adopting(owner, *owner, std::make_shared<TextSurvey>(surveyText(*owner)));
}

} // namespace

TEST(TextBuffer, FindsEveryLineOfTextsWithAwkwardLineEnds)
{
    auto border = std::string(pieceSize - 1, 'x');
    const std::pair<std::string_view, std::string> cases[] = {
        {"empty", ""},
        {"all kinds", "a\nb\r\nc\rd\r\r\n\n\re"},
        {"a return at the very end", "abc\r"},
        {"CR LF cut by a border", border + "\r\nabc\nd"},
        {"CR LF cut by a border at the text's end", border + "\r\n"},
        {"a lone CR before a border", border + "\rabc\n"},
        {"a lone CR before a border and a CR LF behind", border + "\r\r\nabc"},
        {"a LF behind a border", border + "x\nabc"},
        {"CR LF at both sides of a border", border + "\r\n" + std::string(pieceSize - 2, 'y') + "\r\n\r\n"},
        {"borders inside of characters", repeated("语", 3 * pieceSize / 3) + "\n" + repeated("é\r\n", 9000)},
        {"only newlines", std::string(3 * pieceSize + 5, '\n')},
        {"only returns", std::string(2 * pieceSize + 5, '\r')},
        {"only CR LF, cut everywhere", "\r" + repeated("\n\r", pieceSize + 3)},
    };
    for (auto& [name, text] : cases) {
        SCOPED_TRACE(name);
        expectLines(TextBuffer(String(text)), text);
        expectLines(TextBuffer(surveyed(text)), text);
    }
}

TEST(TextBuffer, SharesTheOriginalAndPartsOfIt)
{
    String original(subtitles(100'000));
    TextBuffer buffer(original);
    EXPECT_EQ(buffer.text().utf8().data(), original.utf8().data());
    auto part = buffer.string({{20'000}, {60'000}});
    EXPECT_EQ(part.utf8().data(), original.utf8().data() + 20'000);
    std::string scratch;
    EXPECT_EQ(buffer.view({{10'000}, {50'000}}, scratch).data(), original.utf8().data() + 10'000);
    EXPECT_TRUE(scratch.empty());
}

TEST(TextBuffer, GivesWhatWasCopiedOrDeferredWhateverHappensToIt)
{
    auto model = subtitles(50'000);
    String copied;
    std::function<String()> deferred;
    {
        TextBuffer buffer{String(model)};
        buffer.replace({{20'000}, {20'010}}, "typed in between");
        model.replace(20'000, 10, "typed in between");
        deferred = buffer.deferredString({{19'000}, {40'003}});
        copied = buffer.string({{19'000}, {40'003}});
        buffer.replace({{0}, {30'000}}, "gone");
    }
    EXPECT_EQ(deferred().toStdString(), model.substr(19'000, 21'003));
    EXPECT_EQ(copied, deferred());
}

// The same edits on a plain string; every one is undone and done again now and then.
TEST(TextBuffer, AgreesWithAPlainStringAfterThousandsOfEdits)
{
    const std::string_view parts[] = {"x", "\n", "\r", "\r\n", "word ", "語", "😀", "\r\r\n\n", ""};
    for (std::uint64_t seed = 1; seed <= 3; ++seed) {
        Dice dice(seed);
        auto model = subtitles(seed * 20'000, seed == 2 ? "\r\n" : "\n");
        TextBuffer buffer{String(model)};
        for (int round = 0; round < 1500; ++round) {
            auto start = static_cast<std::size_t>(dice.below(std::ssize(model) + 1));
            auto end =
                std::min(model.size(), start + static_cast<std::size_t>(dice.below(round % 50 ? 8 : 5000)));
            auto inserted = round % 40 ? std::string(parts[dice.below(std::ssize(parts))])
                                       : subtitles(static_cast<std::size_t>(dice.below(40'000)));
            auto before = model;
            model.replace(start, end - start, inserted);
            TextRange range{{static_cast<std::int64_t>(start)}, {static_cast<std::int64_t>(end)}};
            auto edit = buffer.replace(range, inserted);
            if (round % 10 == 0) {
                buffer.apply(edit.reversed());
                ASSERT_TRUE(buffer.text().utf8() == before) << "seed " << seed << " round " << round;
                buffer.apply(edit);
            }
            ASSERT_EQ(buffer.size(), std::ssize(model));
            if (round % 300 == 0 || round == 1499) {
                ASSERT_TRUE(buffer.text().utf8() == model) << "seed " << seed << " round " << round;
                expectLines(buffer, model);
            }
        }
    }
}

TEST(TextBuffer, KeepsOnePieceForWhatIsTypedLetterByLetter)
{
    TextBuffer buffer(String("start end"));
    for (int i = 0; i < 1000; ++i)
        buffer.replace({{6 + i}, {6 + i}}, "x");
    EXPECT_LE(buffer.pieces().size(), 4u);
    EXPECT_EQ(buffer.text().toStdString(), "start " + std::string(1000, 'x') + "end");
}

TEST(TextBuffer, ConvertsBetweenBytesAndUtf16Units)
{
    auto text = repeated("a\r\nß語😀 ", 1500); // several pieces, cut inside of characters
    TextBuffer buffer{String(text)};
    std::int64_t units = 0;
    for (std::size_t at = 0; at < text.size();) {
        ASSERT_EQ(buffer.utf16Offset({static_cast<std::int64_t>(at)}).value, units);
        ASSERT_EQ(buffer.utf8Offset({units}).value, static_cast<std::int64_t>(at));
        auto lead = static_cast<unsigned char>(text[at]);
        units += lead >= 0xF0 ? 2 : 1;
        at += lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    }
    EXPECT_EQ(buffer.utf16Size(), units);
    EXPECT_EQ(buffer.utf8Offset({units + 5}), buffer.end());
    EXPECT_EQ(buffer.utf8Offset({-1}).value, 0);
    // The first half was counted already when the text before it changes.
    buffer.replace({{0}, {1}}, "😀");
    EXPECT_EQ(buffer.utf16Size(), units + 1);
    EXPECT_EQ(buffer.utf8Offset({3}).value, 5);
}

TEST(TextBuffer, CountsACharacterAcrossPiecesAsOne)
{
    auto family = std::string("👨‍👩‍👧");
    auto marks = "e" + repeated("\xCC\x81", 300);
    auto text = std::string(pieceSize - 5, 'x') + family + "\r\n" + marks + "z";
    TextBuffer buffer{String(text)};
    buffer.replace({{1}, {2}}, "y"); // not contiguous any more
    Utf8Offset at{static_cast<std::int64_t>(pieceSize) - 5};
    auto afterFamily = at + std::ssize(family);
    EXPECT_EQ(buffer.nextCharacter(at), afterFamily);
    EXPECT_EQ(buffer.previousCharacter(afterFamily), at);
    EXPECT_EQ(buffer.characterStart(at + 3), at);
    EXPECT_EQ(buffer.nextCharacter(afterFamily), afterFamily + 2); // CR LF
    EXPECT_EQ(buffer.nextCharacter(afterFamily + 2), afterFamily + 2 + std::ssize(marks));
    EXPECT_EQ(buffer.nextCharacter(buffer.end()), buffer.end());
    EXPECT_EQ(buffer.previousCharacter({0}).value, 0);
}

// Line ends at every distance from the borders of the blocks that the passes work in.
TEST(TextScan, CountsAndFindsLineEndsWhereverBlocksBegin)
{
    for (std::string_view end : {"\n", "\r", "\r\n"}) {
        for (std::size_t lead = 0; lead < 40; ++lead) {
            auto text = std::string(lead, 'x') + repeated("ab" + std::string(end), 600);
            auto starts = lineStarts(text);
            ASSERT_EQ(countLineEnds(text), std::ssize(starts) - 1) << lead;
            for (std::int64_t ordinal : {std::int64_t{1}, std::int64_t{300}, std::ssize(starts) - 1})
                ASSERT_EQ(afterLineEnd(text, ordinal), static_cast<std::size_t>(starts[ordinal])) << lead;
            ASSERT_EQ(afterLineEnd(text, std::ssize(starts)), std::string_view::npos);
            ASSERT_EQ(findLineEnd(text, 0), lead + 2);
        }
    }
}

TEST(TextScan, KnowsASCIIByEveryByte)
{
    for (std::size_t at = 0; at < 40; ++at) {
        std::string text(40, 'x');
        EXPECT_TRUE(isASCII(text));
        text[at] = '\xC3';
        EXPECT_FALSE(isASCII(text)) << at;
    }
}
