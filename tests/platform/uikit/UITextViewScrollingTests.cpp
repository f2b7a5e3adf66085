// SPDX-License-Identifier: MIT
#include "tests/platform/uikit/UITextViewTestSupport.h"

#include <gtest/gtest.h>

using namespace platform;
using namespace texttests;
using namespace std::chrono_literals;

TEST(UITextViewScrolling, AWheelMovesByItsDistanceAndStopsAtTheEnds)
{
    ShownTextView shown(subtitles(20'000));
    auto turn = [&](CGFloat distance) {
        shown.hands.turnWheel({100, 100}, UIScrollWheel{.delta = {0, distance}, .isPrecise = true});
        shown.hands.advance(1s);
    };
    turn(-100);
    EXPECT_NEAR(shown.view->textOffset(), 100, 0.01);
    turn(40);
    EXPECT_NEAR(shown.view->textOffset(), 60, 0.01);
    turn(1000);
    EXPECT_EQ(shown.view->textOffset(), 0);
    turn(-10'000'000);
    EXPECT_EQ(shown.view->visibleRange().end.value, std::ssize(shown.text()));
}

TEST(UITextViewScrolling, AFingerPansAndTheTextRunsOnAndTheBarDragsIt)
{
    ShownTextView shown(subtitles(20'000));
    shown.hands.drag({100, 250}, {100, 100}, 100ms, {.type = UITouchType::finger});
    auto offset = shown.view->textOffset();
    EXPECT_GT(offset, 100);
    shown.hands.advance(3s);
    EXPECT_GT(shown.view->textOffset(), offset + 50);
    shown.view->scrollToStart();
    shown.hands.drag({395, 5}, {395, 1000});
    EXPECT_EQ(shown.view->visibleRange().end.value, std::ssize(shown.text()));
    EXPECT_TRUE(shown.view->selectedRange().isEmpty());
}

TEST(UITextViewScrolling, ShapesOnlyWhatIsSeenWhileItMovesThroughAnyText)
{
    for (auto& text : {subtitles(8'000'000), std::string(8'000'000, '\n'), std::string(8'000'000, 'x'),
                       repeated("و هذا ", 800'000)}) {
        ShownTextView shown(text);
        shown.hands.snapshot();
        EXPECT_LT(shown.view->shapingCount(), 40);
        shown.view->scrollToEnd();
        shown.hands.snapshot();
        EXPECT_LT(shown.view->shapingCount(), 80);
        auto last = shown.view->caretRect({std::ssize(text)});
        ASSERT_TRUE(last);
        EXPECT_NEAR(last->maxY(), 300 - 8, 1);
        shown.view->selectAll();
        shown.hands.snapshot();
        EXPECT_LT(shown.view->shapingCount(), 80);
    }
}

TEST(UITextViewScrolling, ARangeIsShownWithItsStartWhenItIsTooLong)
{
    ShownTextView shown(repeated("a line\n", 1000));
    shown.view->scrollRangeToVisible({{3500}, {3510}});
    EXPECT_TRUE(shown.view->caretRect({3500}));
    EXPECT_TRUE(shown.view->caretRect({3510}));
    shown.view->scrollRangeToVisible({{700}, {6000}});
    EXPECT_TRUE(shown.view->caretRect({700}));
    shown.view->scrollRangeToVisible({{-5}, {99'999}});
    EXPECT_EQ(shown.view->textOffset(), 0);
}

TEST(UITextViewScrolling, AResizeAtTheStartStaysAtTheStart)
{
    ShownTextView shown(repeated("words that wrap in narrow windows only\n", 100));
    for (CGFloat width : {80.0, 600.0, 1.0, 0.0, 300.0}) {
        shown.hands.window().setFrameSize({width, 200});
        shown.hands.window().layoutNow();
        EXPECT_EQ(shown.view->textOffset(), 0) << width;
    }
}

TEST(UITextViewScrolling, AnEmptyTextHasOnePlaceForTheCaret)
{
    ShownTextView shown("", Editing::yes);
    auto caret = shown.view->caretRect({0});
    EXPECT_EQ(caret.value_or(CGRect{}).origin, (CGPoint{5, 8}));
    shown.hands.tap({200, 200});
    EXPECT_EQ(shown.view->selectedRange(), TextRange{});
    EXPECT_FALSE(shown.view->scrollToEnd());
}
