// SPDX-License-Identifier: MIT
#include "kit/sharing/Instagram.h"

#include "kit/foundation/zelkKitLocalized.h"
#include "platform/dispatch/VirtualClock.h"
#include "platform/uikit/UIApplication.h"
#include "platform/uikit/UIPasteboard.h"
#include "tests/support/RecordingURLOpener.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

namespace {

using namespace platform;
using namespace std::chrono_literals;
using Strings = std::vector<std::string>;

constexpr auto videoType = "com.instagram.sharedSticker.backgroundVideo";

std::string pasted()
{
    auto data = UIPasteboard::general().dataForPasteboardType(videoType);
    if (!data)
        return "nothing";
    return {reinterpret_cast<const char*>(data->bytes().data()), data->length()};
}

// Whether the app is there is looked up once a process: each test that asks runs in one of its own, and says "well" at its
// end when nothing in it failed.
[[noreturn]] void finish()
{
    std::fputs(testing::Test::HasFailure() ? "badly" : "well", stderr);
    std::_Exit(0);
}

[[noreturn]] void shareWithoutTheApp()
{
    tests::TemporaryDirectory folder;
    auto opener = std::make_shared<tests::RecordingURLOpener>(std::set<std::string>{});
    UIApplication::shared().setURLOpener(opener);
    UIPasteboard::general().setString("kept");
    auto shared = zelk::Instagram::shareMediaFileURLToInstagramStories(folder.url("no such file"));
    EXPECT_FALSE(shared);
    const auto* error = shared ? nullptr : shared.error().as<zelk::Instagram::InstagramError>();
    EXPECT_TRUE(error && *error == zelk::Instagram::InstagramError::cannotOpenURL);
    EXPECT_EQ(UIPasteboard::general().string(), String("kept"));
    opener->schemes.insert("instagram-stories");
    EXPECT_FALSE(zelk::Instagram::canShareToInstagramStories()) << "looked up once";
    EXPECT_EQ(opener->asked, Strings{"instagram-stories://share"});
    EXPECT_TRUE(opener->opened.empty());
    finish();
}

[[noreturn]] void shareWithTheApp()
{
    VirtualClock clock;
    tests::TemporaryDirectory folder;
    auto opener = std::make_shared<tests::RecordingURLOpener>(std::set<std::string>{"instagram-stories"});
    UIApplication::shared().setURLOpener(opener);
    auto share = [](const URL& url) { return zelk::Instagram::shareMediaFileURLToInstagramStories(url); };

    UIPasteboard::general().setString("kept");
    for (const auto& unreadable :
         {folder.url("nothing.mp4"), folder.url(), *URL::parse("https://example.org/")}) {
        auto shared = share(unreadable);
        EXPECT_TRUE(!shared && shared.error().bridged().domain() == NSCocoaErrorDomain);
    }
    EXPECT_EQ(UIPasteboard::general().string(), String("kept"));
    EXPECT_TRUE(opener->opened.empty());

    const std::string bytes("a video\0of bytes", 16);
    auto file = folder.write("clip.mp4", bytes);
    EXPECT_TRUE(share(file));
    EXPECT_EQ(opener->opened, Strings{"instagram-stories://share"});
    EXPECT_EQ(UIPasteboard::general().types(), (Strings{"x-kde-passwordManagerHint", videoType}));
    EXPECT_EQ(pasted(), bytes);
    EXPECT_FALSE(UIPasteboard::general().hasStrings());
    clock.advance(299s);
    EXPECT_EQ(pasted(), bytes);
    clock.advance(1s);
    EXPECT_EQ(pasted(), "nothing");
    EXPECT_FALSE(UIPasteboard::general().isOwn());

    EXPECT_TRUE(share(file));
    clock.elapse(300s); // nobody was awake to withdraw it
    EXPECT_EQ(pasted(), "nothing");
    EXPECT_TRUE(share(file));
    std::filesystem::resize_file(file.path(), 3); // a page of the mapping may be gone
    EXPECT_EQ(pasted(), "nothing");
    EXPECT_TRUE(share(folder.write("empty.mp4", "")));
    EXPECT_EQ(pasted(), "");
    finish();
}

TEST(InstagramDeathTest, leaves_the_pasteboard_alone_where_the_app_is_not)
{
    EXPECT_EXIT(shareWithoutTheApp(), testing::ExitedWithCode(0), "well");
}

TEST(InstagramDeathTest, puts_the_video_on_the_pasteboard_for_five_minutes)
{
    EXPECT_EXIT(shareWithTheApp(), testing::ExitedWithCode(0), "well");
}

TEST(InstagramError, speaks_the_users_language)
{
    Error error(zelk::Instagram::InstagramError::cannotOpenURL);
    auto text = zelk::zelkKitLocalized("INSTAGRAM_ERROR_CANNOT_OPEN_INSTAGRAM_URL");
    EXPECT_NE(text, "INSTAGRAM_ERROR_CANNOT_OPEN_INSTAGRAM_URL");
    EXPECT_EQ(error.localizedDescription(), text);
    EXPECT_EQ(error.localized(), (LocalizedError{.errorDescription = text}));
}

} // namespace
