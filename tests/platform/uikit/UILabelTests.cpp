// SPDX-License-Identifier: MIT
#include "platform/uikit/UILabel.h"

#include "platform/uikit/snapshot.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

std::shared_ptr<UILabel> label(std::string text, int lines = 1)
{
    auto made = std::make_shared<UILabel>();
    made->setFont(UIFont::monospacedSystemFont(20));
    made->setNumberOfLines(lines);
    made->setText(std::move(text));
    return made;
}

// The part of the picture, in points, that has ink; null when nothing has.
CGRect ink(UILabel& view, CGSize size)
{
    view.setFrame({{}, size});
    auto image = snapshot(view, size, 1);
    auto result = CGRect::null();
    if (!image)
        return result;
    for (int y = 0; y < image->pixelHeight(); ++y)
        for (int x = 0; x < image->pixelWidth(); ++x)
            if (image->pixel(x, y).components().alpha > 0.3)
                result = result.unionWith(CGRect::make(x, y, 1, 1));
    return result;
}

TEST(UILabel, ItsSizeIsThatOfItsLines)
{
    const std::tuple<std::string_view, std::string, int, CGFloat, int> cases[] = {
        {"one line", "one", 1, 0, 1},
        {"a line end makes another", "one\ntwo", 0, 0, 2},
        {"each kind of line end", "a\rb\r\nc\nd", 0, 0, 4},
        {"a line end at the end makes an empty one", "one\n", 0, 0, 2},
        {"only as many as it may have", "a\nb\nc", 2, 0, 2},
        {"words wrap", "aaaa bbbb cccc", 0, 60, 3},
        {"less than no lines counts as any number", "a\nb\nc", -4, 0, 3},
    };
    auto one = label("x")->intrinsicContentSize().height;
    for (auto& [name, text, limit, width, lines] : cases) {
        auto height = label(text, limit)->sizeThatFits({width, 0}).height;
        EXPECT_NEAR(height, one * lines, lines) << name; // each size is rounded up
    }
}

TEST(UILabel, AnEmptyTextTakesNoSpace)
{
    EXPECT_EQ(label("")->intrinsicContentSize(), CGSize{});
    EXPECT_TRUE(ink(*label(""), {100, 30}).isNull());
    EXPECT_EQ(label("")->accessibilityNow().role, AccessibilityRole::none);
}

TEST(UILabel, WhatDoesNotFitEndsInAnEllipsis)
{
    auto view = label("a rather long text");
    view->setFrame(CGRect::make(0, 0, 400, 30));
    EXPECT_FALSE(view->isTruncated());
    view->setFrame(CGRect::make(0, 0, 60, 30));
    EXPECT_TRUE(view->isTruncated());
    EXPECT_LE(ink(*view, {60, 30}).maxX(), 60);

    auto lines = label("first\nsecond");
    lines->setFrame(CGRect::make(0, 0, 400, 30));
    EXPECT_TRUE(lines->isTruncated());
    EXPECT_GT(ink(*lines, {400, 30}).maxX(),
              ink(*label("first"), {400, 30}).maxX()); // the sign that more follows
}

TEST(UILabel, NaturalAlignmentFollowsTheTextAndOtherwiseTheView)
{
    const std::tuple<std::string, std::string, bool, bool> cases[] = {
        {"Latin", "abc", false, false},
        {"Latin in a view from the right", "abc", true, false},
        {"Hebrew", "\u05e9\u05dc\u05d5\u05dd", false, true},
        {"digits", "123", false, false},
        {"digits in a view from the right", "123", true, true},
    };
    for (auto& [name, text, viewIsRightToLeft, inkIsRight] : cases) {
        SCOPED_TRACE(name);
        auto view = label(text);
        if (viewIsRightToLeft)
            view->setSemanticContentAttribute(UISemanticContentAttribute::forceRightToLeft);
        auto place = ink(*view, {300, 30});
        ASSERT_FALSE(place.isNull());
        EXPECT_EQ(place.midX() > 150, inkIsRight);
    }
    auto centered = label("abc");
    centered->setTextAlignment(TextAlignment::center);
    EXPECT_NEAR(ink(*centered, {300, 30}).midX(), 150, 3);
}

TEST(UILabel, BadInputIsShownOrLeftOut)
{
    auto view = label(std::string("a\xff\xc3\0b", 5), 0);
    EXPECT_GT(view->intrinsicContentSize().width, label("ab")->intrinsicContentSize().width);
    auto nan = std::numeric_limits<CGFloat>::quiet_NaN();
    EXPECT_EQ(view->sizeThatFits({nan, nan}), view->sizeThatFits({-3, -3}));
    view->setPreferredMaxLayoutWidth(nan);
    EXPECT_EQ(view->preferredMaxLayoutWidth(), 0);
}

} // namespace
} // namespace platform
