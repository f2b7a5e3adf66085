// SPDX-License-Identifier: MIT
#include "platform/foundation/NSMutableAttributedString.h"

#include "platform/foundation/URL.h"

#include <gtest/gtest.h>

#include <random>

using namespace platform;

namespace {

// "ab[bold]c[]": the text of each run and the numbers under its keys.
std::string dump(const NSAttributedString& text)
{
    std::string all;
    text.enumerateAttributes([&](const TextAttributes& attributes, NSRange range, bool&) {
        all += std::string(text.string(range)) + "[";
        for (auto& [key, value] : attributes.entries())
            all += key + std::to_string(*value.as<int>());
        all += "]";
    });
    return all;
}

NSAttributedString styled(const char* text, const char* key, int value)
{
    return NSAttributedString(text, {{key, value}});
}

// What the type promises, in its simplest form: attributes for each UTF-16 unit.
struct Model {
    std::u32string characters;
    std::vector<TextAttributes> attributes; // of each character

    static std::string utf8(std::u32string_view text)
    {
        std::string bytes;
        for (auto character : text) {
            if (character < 0x80)
                bytes += static_cast<char>(character);
            else if (character < 0x800)
                (bytes += static_cast<char>(0xC0 | character >> 6)) +=
                    static_cast<char>(0x80 | (character & 63));
            else
                ((bytes += static_cast<char>(0xF0 | character >> 18)) +=
                 static_cast<char>(0x80 | (character >> 12 & 63))) +=
                    {static_cast<char>(0x80 | (character >> 6 & 63)),
                     static_cast<char>(0x80 | (character & 63))};
        }
        return bytes;
    }
    static std::int64_t units(char32_t character) { return character >= 0x10000 ? 2 : 1; }
    std::int64_t offset(std::size_t character) const
    {
        std::int64_t count = 0;
        for (std::size_t at = 0; at < character; ++at)
            count += units(characters[at]);
        return count;
    }
    NSRange range(std::size_t first, std::size_t last) const
    {
        return {offset(first), offset(last) - offset(first)};
    }
};

} // namespace

TEST(NSAttributedString, Offsets_count_utf16_units_in_every_script)
{
    struct Case {
        const char* name;
        const char* text;
        NSRange range;
        const char* piece;
        std::int64_t length;
    };
    constexpr Case cases[] = {
        {"nothing of an empty text", "", {0, 0}, "", 0},
        {"ASCII", "hello", {1, 3}, "ell", 5},
        {"two bytes, one unit", "שלום", {1, 2}, "לו", 4},
        {"three bytes, one unit", "日本語", {2, 1}, "語", 3},
        {"four bytes, two units", "a😀b", {1, 2}, "😀", 4},
        {"after two units", "a😀b", {3, 1}, "b", 4},
        {"nothing at the end", "a😀", {3, 0}, "", 3},
        {"a zero byte is a character", "a\0b", {1, 0}, "", 1},
    };
    for (auto& row : cases) {
        NSAttributedString text(row.text);
        EXPECT_EQ(text.length(), row.length) << row.name;
        EXPECT_EQ(text.string(row.range), row.piece) << row.name;
        EXPECT_EQ(text.attributedSubstring(row.range).string(), row.piece) << row.name;
    }
}

TEST(NSAttributedString, Offsets_are_right_far_into_long_texts)
{
    std::string text;
    for (auto count = 0; count < 2000; ++count)
        text += "aש日😀";
    NSAttributedString all(text);
    ASSERT_EQ(all.length(), 10'000);
    for (std::int64_t at = 0; at < 10'000; at += 5) {
        ASSERT_EQ(all.string({at, 5}), "aש日😀") << at;
        ASSERT_EQ(all.string({at + 3, 2}), "😀") << at;
    }
}

TEST(NSAttributedString, Edits_keep_runs_sorted_and_coalesced)
{
    NSMutableAttributedString text(styled("one", "a", 1));
    text.append(styled(" two", "a", 1));
    EXPECT_EQ(dump(text), "one two[a1]");
    text.addAttribute("b", 2, {4, 3});
    EXPECT_EQ(dump(text), "one [a1]two[a1b2]");
    text.removeAttribute("b", {5, 1});
    EXPECT_EQ(dump(text), "one [a1]t[a1b2]w[a1]o[a1b2]");
    text.setAttributes({{"c", 3}}, {0, 5});
    EXPECT_EQ(dump(text), "one t[c3]w[a1]o[a1b2]");
    text.deleteCharacters({5, 1});
    text.setAttributes({{"c", 3}}, {5, 1});
    EXPECT_EQ(dump(text), "one to[c3]");
    text.insert(styled("😀", "d", 4), {3});
    EXPECT_EQ(dump(text), "one[c3]😀[d4] to[c3]");
    text.deleteCharacters({3, 2});
    EXPECT_EQ(dump(text), "one to[c3]");
    text.deleteCharacters(text.range());
    EXPECT_EQ(text, NSAttributedString());
}

TEST(NSAttributedString, Plain_replacements_take_the_attributes_of_what_they_replace)
{
    NSMutableAttributedString text(styled("ab", "a", 1));
    text.append(styled("cd", "b", 2));
    text.replaceCharacters({1, 2}, "XY");
    EXPECT_EQ(dump(text), "aXY[a1]d[b2]");
    text.replaceCharacters({3, 0}, "Z");
    EXPECT_EQ(dump(text), "aXYZ[a1]d[b2]");
    text.replaceCharacters({0, 0}, "0");
    EXPECT_EQ(dump(text), "0aXYZ[a1]d[b2]");
    NSMutableAttributedString empty;
    empty.replaceCharacters({0, 0}, "new");
    EXPECT_EQ(dump(empty), "new[]");
}

TEST(NSAttributedString, Copies_never_see_later_changes)
{
    NSMutableAttributedString text(styled("one", "a", 1));
    NSAttributedString before = text;
    auto other = text;
    text.append(text);
    other.addAttribute("b", 2, {0, 1});
    EXPECT_EQ(dump(before), "one[a1]");
    EXPECT_EQ(dump(text), "oneone[a1]");
    EXPECT_EQ(dump(other), "o[a1b2]ne[a1]");
    // A walk goes on over the text it began with.
    auto runs = 0;
    other.enumerateAttributes([&](const TextAttributes&, NSRange, bool&) {
        other.deleteCharacters(other.range());
        ++runs;
    });
    EXPECT_EQ(runs, 2);
}

TEST(NSAttributedString, Equality_looks_at_text_and_values)
{
    struct Case {
        const char* name;
        NSAttributedString a, b;
        bool areEqual;
    };
    auto file = URL::fileURL("/a");
    NSMutableAttributedString pieces(styled("a", "k", 1));
    pieces.append(styled("b", "k", 1));
    const Case cases[] = {
        {"built in other steps", pieces, styled("ab", "k", 1), true},
        {"other text", styled("ab", "k", 1), styled("ac", "k", 1), false},
        {"other number", styled("ab", "k", 1), styled("ab", "k", 2), false},
        {"other type", styled("ab", "k", 1), NSAttributedString("ab", {{"k", 1.0}}), false},
        {"texts however they were given", NSAttributedString("a", {{"k", "t"}}),
         NSAttributedString("a", {{"k", std::string("t")}}), true},
        {"URLs", NSAttributedString("a", {{"k", file}}), NSAttributedString("a", {{"k", file}}), true},
        {"other keys", styled("ab", "k", 1), styled("ab", "l", 1), false},
    };
    for (auto& row : cases) {
        EXPECT_EQ(row.a == row.b, row.areEqual) << row.name;
        EXPECT_TRUE(!row.areEqual || row.a.hash() == row.b.hash()) << row.name;
    }
}

TEST(NSAttributedString, One_attribute_runs_across_changes_of_others)
{
    NSMutableAttributedString text(NSAttributedString("abcdef"));
    text.addAttribute("a", 1, {1, 4});
    text.addAttribute("b", 2, {2, 1});
    EXPECT_EQ(text.attribute("a", {2}).range, (NSRange{1, 4}));
    EXPECT_EQ(text.attribute("a", {2}, {2, 2}).range, (NSRange{2, 2}));
    EXPECT_EQ(text.attributes({2}).range, (NSRange{2, 1}));
    EXPECT_EQ(text.attribute("none", {3}).range, text.range());
    std::string walked;
    text.enumerateAttribute("a", text.range(), [&](const AttributeValue* value, NSRange range, bool& stop) {
        walked += std::string(text.string(range)) + (value ? "+" : "-");
        stop = range.location == 1;
    });
    EXPECT_EQ(walked, "a-bcde+");
}

TEST(NSAttributedString, Random_edits_agree_with_a_list_of_characters)
{
    std::mt19937 random(7);
    auto below = [&](std::size_t limit) {
        return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random);
    };
    for (auto round = 0; round < 4; ++round) {
        Model model;
        NSMutableAttributedString text;
        auto alphabet = std::u32string_view(round % 4 == 0 ? U"abcd" : U"aé\u05d0😀");
        for (auto step = 0; step < 120; ++step) {
            auto first = below(model.characters.size() + 1);
            auto last = first + below(std::min<std::size_t>(model.characters.size() - first, 60) + 1);
            auto range = model.range(first, last);
            TextAttributes one{
                {std::string(1, static_cast<char>('x' + below(2))), static_cast<int>(below(2))}};
            switch (below(3)) {
            case 0: {
                std::u32string piece;
                for (auto count = below(40); count > 0; --count)
                    piece += alphabet[below(4)];
                text.replaceCharacters(range, NSAttributedString(Model::utf8(piece), one));
                model.characters.replace(first, last - first, piece);
                auto at = model.attributes.erase(model.attributes.begin() + static_cast<long>(first),
                                                 model.attributes.begin() + static_cast<long>(last));
                model.attributes.insert(at, piece.size(), one);
                break;
            }
            case 1:
                text.setAttributes(one, range);
                std::fill_n(model.attributes.begin() + static_cast<long>(first), last - first, one);
                break;
            default:
                text.addAttributes(one, range);
                for (auto at = first; at < last; ++at)
                    model.attributes[at].merge(one);
            }
            if (step % 8 != 0)
                continue;
            NSMutableAttributedString expected;
            for (std::size_t at = 0; at < model.characters.size(); ++at)
                expected.append(
                    NSAttributedString(Model::utf8(model.characters.substr(at, 1)), model.attributes[at]));
            ASSERT_EQ(text, expected) << "round " << round << ", step " << step;
            ASSERT_EQ(text.length(), model.offset(model.characters.size()));
        }
    }
}

TEST(NSAttributedStringDeathTest, Ranges_beyond_the_text_and_halves_of_characters_stop_the_process)
{
    NSMutableAttributedString text(NSAttributedString("a😀b"));
    EXPECT_DEATH(text.attributes({4}), "no character at 4 in the text, which has 4 UTF-16 units");
    EXPECT_DEATH(text.attributedSubstring({3, 2}), "the range \\{3, 2\\} is not in the text");
    EXPECT_DEATH(text.deleteCharacters({1, INT64_MAX}), "is not in the text");
    EXPECT_DEATH(text.string({2, 1}), "cuts a character of two UTF-16 units");
    EXPECT_DEATH(text.insert(NSAttributedString(), {5}), "is not in the text");
}
