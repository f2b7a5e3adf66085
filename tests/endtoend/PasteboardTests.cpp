// SPDX-License-Identifier: MIT
// What one program puts on a real clipboard, and what another one, which is not ours, finds there, in time and too late.
#include "tests/endtoend/Desktop.h"

#include "platform/dispatch/VirtualClock.h"
#include "platform/dispatch/currentDate.h"
#include "platform/uikit/UIApplication.h"
#include "platform/uikit/UIPasteboard.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <QtCore/QCoreApplication>

#include <csignal>
#include <cstdio>
#include <cstdlib>

namespace endtoend {
namespace {

using namespace platform;
using namespace std::chrono_literals;

constexpr auto videoType = "org.example.backgroundVideo";

// The program that offers: the file that ZELK_TEST_VIDEO names, for 300 seconds, to this machine only. Each signal takes it
// a step further in a time of its own, and each step is a line.
TEST(PasteboardOwner, DISABLED_offers_a_file_for_five_minutes)
{
    sigset_t step;
    sigemptyset(&step);
    sigaddset(&step, SIGUSR1);
    sigprocmask(SIG_BLOCK, &step, nullptr); // before there are threads, which would take it
    auto& application = UIApplication::shared();
    application.start();
    VirtualClock clock;
    auto offer = [] {
        auto video = NSData::contentsOf(URL::fileURL(std::getenv("ZELK_TEST_VIDEO")),
                                        NSDataReadingOptions::alwaysMapped);
        ASSERT_TRUE(video);
        UIPasteboard::general().setItems(
            {{{videoType, std::move(*video)}, {"public.utf8-plain-text", String("שלום clip")}}},
            {.UIPasteboardOptionExpirationDate = Date{currentDate().timeIntervalSince1970 + 300},
             .UIPasteboardOptionLocalOnly = true});
    };
    offer();
    const std::function<void()> actions[] = {
        [&] { clock.advance(299s); },
        [&] { clock.advance(1s); },
        [&] { offer(); },
        [&] { clock.elapse(300s); }, // the program slept, and wakes with the other one's question
        [&] { UIPasteboard::general().setString(String(std::string(3'000'000, 'x'))); },
    };
    std::puts("offered");
    std::fflush(stdout);
    for (int done = 0;;) {
        constexpr timespec moment{0, 5'000'000};
        if (sigtimedwait(&step, nullptr, &moment) == SIGUSR1) {
            actions[done++]();
            QCoreApplication::processEvents();
            std::printf("step %d\n", done);
            std::fflush(stdout);
        }
        QCoreApplication::processEvents();
    }
}

class Owner {
public:
    explicit Owner(const Desktop& desktop, const std::string& video)
        : process_({"/proc/self/exe", "--gtest_also_run_disabled_tests",
                    "--gtest_filter=PasteboardOwner.DISABLED_offers_a_file_for_five_minutes"},
                   desktop.environment({{"ZELK_TEST_VIDEO", video}}))
    {
        expectLine("offered");
    }
    void step(int number)
    {
        process_.terminate(SIGUSR1);
        expectLine("step " + std::to_string(number));
    }
    std::size_t residentBytes() const
    {
        long pages = 0;
        auto* file = std::fopen(("/proc/" + std::to_string(process_.id()) + "/statm").c_str(), "r");
        EXPECT_EQ(file ? std::fscanf(file, "%*d %ld", &pages) : 0, 1);
        if (file)
            std::fclose(file);
        return static_cast<std::size_t>(pages) * 4096;
    }

private:
    void expectLine(const std::string& expected)
    {
        for (auto line = process_.readLine(); line; line = process_.readLine()) {
            if (*line == expected)
                return;
        }
        ADD_FAILURE() << "the owner did not say " << expected;
    }
    Process process_;
};

TEST(Pasteboard, gives_another_program_the_bytes_until_their_time_is_over)
{
    Desktop desktop;
    tests::TemporaryDirectory folder;
    const std::size_t size = 64 * 1024 * 1024;
    auto bytes = std::string(size, 'v');
    bytes.replace(0, 8, std::string("\0\1\2\xff tail", 8));
    Owner owner(desktop, folder.file("video", bytes));
    auto paste = [&](const std::string& type) {
        return run({"xclip", "-selection", "clipboard", "-o", "-t", type}, desktop.environment());
    };
    auto offers = [&](const std::string& type) {
        return ("\n" + paste("TARGETS").output).find("\n" + type + "\n") != std::string::npos;
    };
    EXPECT_LT(owner.residentBytes(), size) << "nobody has pasted";
    EXPECT_TRUE(offers(videoType));
    EXPECT_TRUE(offers("UTF8_STRING"));
    EXPECT_LT(owner.residentBytes(), size) << "who only asks for the types reads no bytes";
    EXPECT_TRUE(paste(videoType).output == bytes);
    EXPECT_EQ(paste("UTF8_STRING").output, "שלום clip");
    EXPECT_EQ(paste("x-kde-passwordManagerHint").output, "secret");

    owner.step(1);
    EXPECT_EQ(paste("UTF8_STRING").output, "שלום clip") << "after 299 seconds";
    owner.step(2);
    EXPECT_NE(paste(videoType).exitStatus, 0) << "after 300";
    EXPECT_FALSE(offers(videoType));
    owner.step(3);
    EXPECT_TRUE(offers(videoType));
    owner.step(4);
    for (const auto* type : {videoType, "UTF8_STRING", "text/plain", "x-kde-passwordManagerHint"})
        EXPECT_EQ(paste(type).output, "") << type;
    EXPECT_FALSE(offers(videoType));
    owner.step(5);
    EXPECT_EQ(paste("UTF8_STRING").output, std::string(3'000'000, 'x'));
}

} // namespace
} // namespace endtoend
