// SPDX-License-Identifier: MIT
#include "kit/ui/DeadlineProgress.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/dispatch/currentDate.h"
#include "platform/uikit/UIProgressView.h"
#include "tests/support/harness/ViewHarness.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using namespace std::chrono_literals;

TEST(DeadlineProgress, runs_nothing_while_its_bar_is_out_of_sight_and_is_right_when_it_comes_back)
{
    harness::ViewHarness harness({200, 100});
    auto ground = std::make_shared<UIView>();
    harness.show(ground);
    auto bar = std::make_shared<UIProgressView>();
    bar->setFrame(CGRect::make(10, 10, 100, 4));
    auto progress = std::make_shared<zelk::DeadlineProgress>(bar);
    progress->setDeadline(Date{currentDate().timeIntervalSince1970 + 36'000}); // ten hours, in no window yet
    EXPECT_EQ(RunLoop::main().nextDeadline(), std::nullopt);
    harness.advance(3h);
    ground->addSubview(bar);
    harness.settle();
    EXPECT_NEAR(bar->progress(), 0.3, 0.001);
    EXPECT_TRUE(RunLoop::main().nextDeadline());
    ground->setHidden(true);
    harness.advance(2s); // a step is a second long
    EXPECT_EQ(RunLoop::main().nextDeadline(), std::nullopt);
    harness.advance(3h);
    ground->setHidden(false);
    harness.settle();
    EXPECT_NEAR(bar->progress(), 0.6, 0.001);
}

} // namespace
