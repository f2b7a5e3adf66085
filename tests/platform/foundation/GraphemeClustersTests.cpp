// SPDX-License-Identifier: MIT
#include "platform/foundation/GraphemeClusters.h"

#include <gtest/gtest.h>

using namespace platform;

TEST(GraphemeClusters, A_character_is_what_a_person_counts)
{
    struct Case {
        const char* name;
        std::string text;
        std::vector<std::string> characters;
    };
    const Case cases[] = {
        {"an empty text", "", {}},
        {"ASCII", "ab", {"a", "b"}},
        {"a line end of two characters", "a\r\nb\r", {"a", "\r\n", "b", "\r"}},
        {"an accent after its letter", "xe\u0301y", {"x", "e\u0301", "y"}},
        {"an accent with no letter", "\u0301a", {"\u0301", "a"}},
        {"flags side by side", "🇫🇷🇩🇪!", {"🇫🇷", "🇩🇪", "!"}},
        {"a family", "👨‍👩‍👧a", {"👨‍👩‍👧", "a"}},
        {"a skin tone", "👍🏽", {"👍🏽"}},
        {"a syllable of three letters", "각", {"각"}},
        {"points under a letter", "שָׁלוֹם", {"שָׁ", "ל", "וֹ", "ם"}},
        {"a zero byte", std::string("a\0b", 3), {"a", std::string(1, '\0'), "b"}},
    };
    for (auto& row : cases) {
        std::vector<std::string> found;
        for (GraphemeClusters walk(row.text); auto character = walk.next();)
            found.emplace_back(*character);
        EXPECT_EQ(found, row.characters) << row.name;
    }
}

TEST(GraphemeClusters, Long_texts_and_endless_characters_are_cut_nowhere_else)
{
    // Flags change their meaning when they are counted from the wrong one, wherever a window ends.
    std::string flags;
    for (auto count = 0; count < 5000; ++count)
        flags += "🇫🇷";
    std::size_t count = 0;
    for (GraphemeClusters walk(flags); auto character = walk.next(); ++count)
        ASSERT_EQ(*character, "🇫🇷") << count;
    EXPECT_EQ(count, 5000u);

    std::string heap = "a";
    for (auto mark = 0; mark < 100'000; ++mark)
        heap += "\u0301";
    GraphemeClusters walk(heap);
    EXPECT_EQ(walk.next()->size(), heap.size());
    EXPECT_FALSE(walk.next());
}
