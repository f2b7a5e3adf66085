// SPDX-License-Identifier: MIT
#include "kit/sharing/photoLibraryPublishers.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/ProcessInfo.h"
#include "platform/services/PHPhotosError.h"
#include "platform/uikit/UIAlertController.h"
#include "tests/support/PhotoLibraryFolders.h"
#include "tests/support/harness/ViewHarness.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

namespace {

using namespace platform;
using namespace std::chrono_literals;
using Status = PHAuthorizationStatus;
using Level = PHAccessLevel;

// What a stream delivers: "value finished", or the error.
struct Received {
    std::string text;
    AnyCancellable subscription;

    explicit Received(const AnyPublisher<Void>& publisher)
    {
        subscription = publisher.sink(
            [this] {
                EXPECT_TRUE(isOnMainThread());
                text += "value ";
            },
            [this](const Completion& completion) {
                EXPECT_TRUE(isOnMainThread());
                if (const auto* error = completion.error())
                    text += error->bridged().domain() + " " + std::to_string(error->bridged().code());
                else
                    text += "finished";
            });
    }
    Received(const Received&) = delete; // the stream holds its address
    Received& operator=(const Received&) = delete;
};

const std::string well = "value finished";
const std::string denied = "PHPhotosErrorDomain 3311";

TEST(AuthorizationRequestPublisher, asks_only_whom_nobody_has_asked)
{
    tests::PhotoLibraryFolders folders;
    auto& question = *folders.question;
    struct Case {
        const char* name;
        Status present;
        Status answer; // to the question, if there is one
        int questions;
        std::string received;
    };
    const Case cases[] = {
        {"allowed before", Status::authorized, Status::denied, 0, well},
        {"refused before", Status::denied, Status::authorized, 0, denied},
        {"allowed now", Status::notDetermined, Status::authorized, 1, well},
        {"refused now", Status::notDetermined, Status::denied, 1, denied},
        {"not answered", Status::notDetermined, Status::notDetermined, 2, denied},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.name);
        VirtualClock clock;
        folders.allow(test.present);
        question.asked.clear();
        question.next = test.answer;
        auto publisher = zelk::authorizationRequestPublisher(Level::addOnly);
        clock.settleWithBackgroundQueues();
        EXPECT_TRUE(question.asked.empty()) << "nobody has subscribed";
        for (int i = 0; i < 2; ++i) {
            Received received(publisher);
            EXPECT_EQ(received.text, "") << "later";
            clock.settleWithBackgroundQueues();
            EXPECT_EQ(received.text, test.received);
        }
        EXPECT_EQ(question.asked.size(), static_cast<std::size_t>(test.questions));
    }
    VirtualClock clock;
    question.next = Status::limited;
    Received limited(zelk::authorizationRequestPublisher(Level::readWrite));
    clock.settleWithBackgroundQueues();
    EXPECT_EQ(limited.text, well);
    PHPhotosAuthorization::shared().setStatus(Status::denied, Level::readWrite);
    auto count = question.asked.size();
    Received cancelled(zelk::authorizationRequestPublisher(Level::readWrite));
    cancelled.subscription.cancel();
    clock.settleWithBackgroundQueues();
    EXPECT_EQ(cancelled.text, "");
    EXPECT_EQ(question.asked.size(), count);
}

[[noreturn]] void failOnAnOldSystem()
{
    SystemVersionOverride system({14, 8});
    tests::PhotoLibraryFolders folders;
    folders.allow(Status::denied);
    VirtualClock clock;
    Received received(zelk::authorizationRequestPublisher(Level::addOnly));
    clock.settle();
    std::fputs(received.text.c_str(), stderr);
    std::_Exit(0);
}

TEST(AuthorizationRequestPublisherDeathTest, fails_with_the_older_code_on_systems_before_15)
{
    EXPECT_EXIT(failOnAnOldSystem(), testing::ExitedWithCode(0), "NSCocoaErrorDomain 2047");
}

TEST(SaveURL, adds_the_file_for_each_subscriber_and_tells_the_librarys_errors)
{
    tests::PhotoLibraryFolders folders;
    folders.allow(Status::authorized);
    auto clip = folders.folder.write("clip.mp4", tests::contentsOf(tests::smallVideo().path()));
    auto result = [](const AnyPublisher<Void>& publisher) {
        VirtualClock clock;
        Received received(publisher);
        clock.settleWithBackgroundQueues();
        return received.text;
    };
    auto save = zelk::saveURL(clip, zelk::AssetType::video);
    EXPECT_EQ(folders.names("videos"), std::set<std::string>{}) << "nobody has subscribed";
    EXPECT_EQ(result(save), well);
    EXPECT_EQ(result(save), well);
    EXPECT_EQ(folders.names("videos"), (std::set<std::string>{"clip.mp4", "clip 2.mp4"}));
    EXPECT_EQ(result(zelk::saveURL(clip, zelk::AssetType::image)), "PHPhotosErrorDomain 3302");
    EXPECT_EQ(result(zelk::saveURL(folders.folder.url("none"), zelk::AssetType::image)),
              "PHPhotosErrorDomain 3303");
    EXPECT_EQ(result(zelk::saveURL(tests::smallPicture(), zelk::AssetType::image)), well);
    folders.allow(Status::notDetermined);
    EXPECT_EQ(result(save), denied) << "it does not ask";
    EXPECT_TRUE(folders.question->asked.empty());
    EXPECT_EQ(folders.names("pictures").size(), 1u);
}

// The real question, over a window, and what its buttons do.
TEST(PHPhotosAlertQuestion, asks_over_the_window_that_has_the_keyboard)
{
    tests::PhotoLibraryFolders folders;
    PHPhotosAuthorization::shared().setQuestion(nullptr);
    {
        VirtualClock clock;
        Received received(zelk::authorizationRequestPublisher(Level::addOnly));
        clock.settleWithBackgroundQueues();
        EXPECT_EQ(received.text, denied) << "there is no window";
        EXPECT_EQ(PHPhotosAuthorization::shared().status(Level::addOnly), Status::notDetermined);
    }
    struct Case {
        Level level;
        std::string button; // empty: the window goes
        Status expected;
    };
    const Case cases[] = {
        {Level::addOnly, "Allow", Status::authorized},
        {Level::addOnly, "Don’t Allow", Status::denied},
        {Level::addOnly, "", Status::notDetermined},
        {Level::readWrite, "Only What It Adds", Status::limited},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.button);
        folders.allow(Status::notDetermined);
        harness::ViewHarness stage({400, 600});
        auto root = std::make_shared<UIViewController>();
        stage.show(root);
        Received received(zelk::authorizationRequestPublisher(test.level));
        stage.clock().settleWithBackgroundQueues();
        stage.advance(1s);
        auto alert = std::dynamic_pointer_cast<UIAlertController>(root->presentedViewController());
        ASSERT_TRUE(alert);
        EXPECT_TRUE(
            alert->title().starts_with("“" + ProcessInfo::processInfo().processName() + "” Would Like to"))
            << alert->title();
        EXPECT_EQ(alert->actions().size(), test.level == Level::addOnly ? 2u : 3u);
        if (test.button.empty()) {
            alert.reset();
            root.reset();
            stage.window().setRootViewController(nullptr);
        } else {
            stage.tap(test.button);
        }
        stage.advance(1s);
        stage.clock().settleWithBackgroundQueues();
        auto isAllowed = test.expected == Status::authorized || test.expected == Status::limited;
        EXPECT_EQ(received.text, isAllowed ? well : denied);
        EXPECT_EQ(PHPhotosAuthorization::shared().status(test.level), test.expected);
    }
}

} // namespace
