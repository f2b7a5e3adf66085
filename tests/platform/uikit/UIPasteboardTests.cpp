// SPDX-License-Identifier: MIT
#include "platform/uikit/UIPasteboard.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;

TEST(UIPasteboard, makes_its_text_when_somebody_pastes)
{
    auto& board = UIPasteboard::general();
    int made = 0;
    board.setProvider([&] {
        ++made;
        return String("text " + std::to_string(made));
    });
    EXPECT_TRUE(board.hasStrings());
    EXPECT_TRUE(board.isOwn());
    EXPECT_EQ(made, 0);
    EXPECT_EQ(board.string(), String("text 1"));
    EXPECT_EQ(board.string(), String("text 2"));
    board.setString("other");
    EXPECT_EQ(board.string(), String("other"));
    EXPECT_EQ(made, 2);
    board.clear();
    EXPECT_FALSE(board.hasStrings());
    EXPECT_EQ(board.string(), std::nullopt);
}

TEST(UIPasteboard, survives_a_provider_that_replaces_itself)
{
    auto& board = UIPasteboard::general();
    auto kept = std::make_shared<std::string>("first");
    board.setProvider([&board, kept] {
        board.setString("second");
        return String(*kept);
    });
    kept.reset();
    EXPECT_EQ(board.string(), String("first"));
    EXPECT_EQ(board.string(), String("second"));
    board.clear();
}

} // namespace
