// SPDX-License-Identifier: MIT
#include "platform/quicklook/PreviewArguments.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

using Words = std::vector<std::string_view>;

TEST(PreviewArguments, readsWhatProgramsOfThisKindAreCalledWith)
{
    struct Case {
        std::string_view name;
        Words words;
        PreviewArguments expected;
    };
    const Case cases[] = {
        {"a plain file", {"a.srt"}, {.file = "a.srt"}},
        {"a name that looks like an option, after --", {"--", "--text"}, {.file = "--text"}},
        {"options behind the file", {"a.srt", "--text"}, {.action = PreviewAction::text, .file = "a.srt"}},
        {"values behind an equals sign",
         {"--snapshot=o.png", "--size=640x480.5", "--scale=1.5", "a"},
         {.action = PreviewAction::snapshot,
          .file = "a",
          .snapshotPath = "o.png",
          .size = CGSize{640, 480.5},
          .scale = 1.5}},
        {"values of their own",
         {"--snapshot", "o.png", "--appearance", "dark", "a"},
         {.action = PreviewAction::snapshot,
          .file = "a",
          .snapshotPath = "o.png",
          .appearance = UIUserInterfaceStyle::dark}},
        {"a window's size and appearance",
         {"--size", "10x10", "--appearance", "light", "a"},
         {.file = "a", .size = CGSize{10, 10}, .appearance = UIUserInterfaceStyle::light}},
        {"a pane of a terminal; no room counts as a little",
         {"--text", "--width", "80", "--height=0", "--skip", "5000000000", "a"},
         {.action = PreviewAction::text,
          .file = "a",
          .pane = TerminalPane{.width = 80, .height = 1, .skip = 5000000000}}},
        {"help wins over what follows", {"--help", "--version"}, {.action = PreviewAction::help}},
    };
    for (auto& each : cases) {
        auto read = parsePreviewArguments(each.words);
        ASSERT_TRUE(read) << each.name << ": " << read.error();
        EXPECT_EQ(*read, each.expected) << each.name;
    }
}

TEST(PreviewArguments, saysWhatIsWrongAndNamesIt)
{
    struct Case {
        Words words;
        std::string_view mentions;
    };
    const Case cases[] = {
        {{}, "no file"},
        {{""}, "empty"},
        {{"a", "b"}, "more than one"},
        {{"-x", "a"}, "-x"},
        {{"--text=yes", "a"}, "--text=yes"},
        {{"--size", "640", "a"}, "640"},
        {{"--text", "--width", "-1", "a"}, "-1"},
        {{"--text", "--skip", "2x", "a"}, "2x"},
        {{"--height", "2", "a"}, "--text"},
        {{"--size", "infx10", "a"}, "infx10"},
        {{"--size", "10x99999", "a"}, "99999"},
        {{"--size", "10x 10", "a"}, "10x 10"},
        {{"--snapshot", "o.png", "--scale", "1e9", "a"}, "1e9"},
        {{"--scale", "2", "a"}, "--snapshot"},
        {{"--snapshot", "", "a"}, "--snapshot"},
        {{"--appearance"}, "needs a value"},
        {{"--text", "--snapshot", "o.png", "a"}, "exclude"},
    };
    for (auto& each : cases) {
        auto read = parsePreviewArguments(each.words);
        ASSERT_FALSE(read) << each.mentions;
        EXPECT_NE(read.error().find(each.mentions), std::string::npos) << read.error();
    }
}

} // namespace
} // namespace platform
