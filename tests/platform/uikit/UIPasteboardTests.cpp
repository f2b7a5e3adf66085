// SPDX-License-Identifier: MIT
#include "platform/uikit/UIPasteboard.h"

#include "platform/dispatch/VirtualClock.h"
#include "platform/dispatch/currentDate.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using namespace std::chrono_literals;
using Strings = std::vector<std::string>;

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

std::string under(std::string_view type)
{
    auto data = UIPasteboard::general().dataForPasteboardType(type);
    return data ? std::string(reinterpret_cast<const char*>(data->bytes().data()), data->length())
                : "nothing";
}

Date after(double seconds)
{
    return {currentDate().timeIntervalSince1970 + seconds};
}

TEST(UIPasteboard, offers_items_under_the_names_that_other_programs_know)
{
    auto& board = UIPasteboard::general();
    auto bytes = [](std::string text) { return NSData::dataWithBytes(std::move(text)); };
    const std::string zero("a\0b", 3);
    board.setItems({{{"public.utf8-plain-text", String("one")},
                     {"public.png", bytes("PNG")},
                     {"org.example.own", bytes(zero)}},
                    {{"public.url", String("https://a.example/")}, {"text/plain", bytes("two \xff")}},
                    {{"public.url", String("https://b.example/")}, {"image/png", bytes("other")}}});
    EXPECT_EQ(
        board.types(),
        (Strings{"org.example.own", "image/png", "text/plain;charset=utf-8", "text/plain", "text/uri-list"}));
    const std::pair<const char*, std::string> cases[] = {
        {"image/png", "PNG"},
        {"public.png", "PNG"},
        {"org.example.own", zero},
        {"text/uri-list", "https://a.example/\r\nhttps://b.example/"},
        {"public.plain-text", "one\ntwo \xff"},
        {"text/plain;charset=utf-8", "one\ntwo \xff"},
        {"public.jpeg", "nothing"},
        {"", "nothing"},
    };
    for (const auto& [type, expected] : cases)
        EXPECT_EQ(under(type), expected) << type;
    EXPECT_EQ(board.string(), String("one\ntwo \uFFFD"));
    board.setItems({{}});
    EXPECT_FALSE(board.isOwn()) << "items without anything in them are none";
    board.setItems({{{"public.png", std::shared_ptr<const NSData>()}}});
    EXPECT_EQ(under("public.png"), "nothing");
    board.clear();
}

TEST(UIPasteboard, forgets_what_has_had_its_time)
{
    auto& board = UIPasteboard::general();
    VirtualClock clock;
    auto offer = [&](std::string text, double seconds) {
        board.setItems({{{"text/plain", String(text)}}},
                       {.UIPasteboardOptionExpirationDate = after(seconds)});
    };
    offer("minutes", 300);
    clock.advance(299s);
    EXPECT_EQ(board.string(), String("minutes"));
    clock.advance(1s);
    EXPECT_EQ(board.string(), std::nullopt);
    EXPECT_FALSE(board.isOwn());

    offer("late", 300);
    clock.elapse(301s); // nobody had the time to withdraw it
    EXPECT_FALSE(board.hasStrings());
    EXPECT_TRUE(board.types().empty());

    offer("first", 10);
    offer("second", 1000);
    clock.advance(500s);
    EXPECT_EQ(board.string(), String("second")) << "the time of the first is not that of the second";
    offer("days", 3 * 24 * 3600);
    clock.advance(std::chrono::hours(71));
    EXPECT_TRUE(board.hasStrings());
    clock.advance(std::chrono::hours(1));
    EXPECT_FALSE(board.isOwn());
    for (double seconds : {0., -1., -1e300, std::numeric_limits<double>::quiet_NaN()}) {
        board.setString("before");
        offer("over", seconds);
        EXPECT_EQ(board.string(), std::nullopt) << seconds;
    }
    offer("for ever", 1e300);
    clock.advance(std::chrono::hours(1000));
    EXPECT_EQ(board.string(), String("for ever"));
    board.clear();
}

TEST(UIPasteboard, tells_clipboard_managers_what_they_must_not_keep)
{
    auto& board = UIPasteboard::general();
    const UIPasteboardOptions local{.UIPasteboardOptionLocalOnly = true},
        fleeting{.UIPasteboardOptionExpirationDate = Date{1e300}};
    for (const auto& options : {local, fleeting, UIPasteboardOptions{}}) {
        auto isSecret = options.UIPasteboardOptionLocalOnly || options.UIPasteboardOptionExpirationDate;
        board.setItems({{{"text/plain", String("secret text")}}}, options);
        EXPECT_EQ(under("x-kde-passwordManagerHint"), isSecret ? "secret" : "nothing");
        EXPECT_EQ(board.types().front() == "x-kde-passwordManagerHint", isSecret)
            << "some keep what comes first";
        EXPECT_EQ(board.string(), String("secret text"));
    }
    board.clear();
}

TEST(UIPasteboard, reads_a_mapped_file_when_somebody_pastes)
{
    tests::TemporaryDirectory folder;
    auto file = folder.write("bytes", std::string(100'000, 'a'));
    auto data = NSData::contentsOf(file, NSDataReadingOptions::alwaysMapped);
    ASSERT_TRUE(data);
    EXPECT_TRUE((*data)->isMapped());
    UIPasteboard::general().setItems({{{"org.example.file", std::move(*data)}}});
    std::fstream(file.path(), std::ios::in | std::ios::out) << "b"; // in place: the mapping is of these bytes
    EXPECT_EQ(under("org.example.file"), "b" + std::string(99'999, 'a'));
    std::filesystem::resize_file(file.path(), 10);
    EXPECT_EQ(under("org.example.file"), "nothing");
    UIPasteboard::general().clear();
}

} // namespace
