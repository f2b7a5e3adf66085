// SPDX-License-Identifier: MIT
#include "kit/foundation/enableScrollOnDrag.h"
#include "kit/foundation/fontTraits.h"
#include "kit/foundation/keyWindow.h"

#include "tests/support/harness/ViewHarness.h"

#include <gtest/gtest.h>

namespace zelk {

namespace {

using namespace platform;

struct Field final : UIView {
    bool canBecomeFirstResponder() const override { return true; }
};

} // namespace

TEST(PlatformConveniencesTests, A_font_has_the_traits_asked_for_and_no_others)
{
    auto font = UIFont::systemFont(20, FontWeight::heavy).italic();
    auto plain = regular(font);
    ASSERT_TRUE(plain);
    EXPECT_EQ(*plain, UIFont::systemFont(20));
    EXPECT_EQ(bold(font), UIFont::systemFont(20, FontWeight::bold));
    auto mono = bold(UIFont::monospacedSystemFont(11));
    ASSERT_TRUE(mono);
    EXPECT_EQ(mono->design(), FontDesign::monospaced);
    // Whether there is an italic face depends on what is installed; a font that is given is what was asked for.
    using enum UIFontSymbolicTraits;
    for (auto traits :
         {UIFontSymbolicTraits::italic, UIFontSymbolicTraits::bold | UIFontSymbolicTraits::italic}) {
        if (auto slanted = withTraits(font, traits)) {
            EXPECT_TRUE(slanted->isItalic());
            EXPECT_EQ(slanted->weight() == FontWeight::bold, contains(traits, UIFontSymbolicTraits::bold));
        }
    }
}

TEST(PlatformConveniencesTests, The_keyboard_and_the_front_controller_are_those_of_the_key_window)
{
    EXPECT_EQ(topViewController(), nullptr);
    harness::ViewHarness stage;
    auto root = std::make_shared<UIViewController>();
    auto field = std::make_shared<Field>();
    root->view()->addSubview(field);
    stage.show(root);
    EXPECT_EQ(keyWindow(UIApplication::shared()), stage.sharedWindow());
    ASSERT_TRUE(field->becomeFirstResponder());
    hideKeyboard(UIApplication::shared());
    EXPECT_FALSE(field->isFirstResponder());

    EXPECT_EQ(topViewController(), root);
    auto first = std::make_shared<UIViewController>(), second = std::make_shared<UIViewController>();
    root->present(first, Animated::no);
    first->present(second, Animated::no);
    EXPECT_EQ(topViewController(), second);
    root->dismiss(Animated::no);
    EXPECT_EQ(topViewController(), root);
}

TEST(PlatformConveniencesTests, Dragging_scrolls_only_while_it_is_enabled)
{
    harness::ViewHarness stage({200, 200});
    auto scrollView = std::make_shared<UIScrollView>();
    scrollView->setContentSize({200, 2000});
    stage.show(scrollView);
    auto drag = [&] {
        stage.drag({100, 150}, {100, 50}, std::chrono::milliseconds(200), {.type = UITouchType::finger});
        auto moved = scrollView->contentOffset().y;
        scrollView->setContentOffset({});
        return moved > 0;
    };
    EXPECT_TRUE(drag());
    enableScrollOnDrag(*scrollView, ScrollOnDrag::disabled);
    EXPECT_FALSE(drag());
    EXPECT_TRUE(scrollView->scrollByLines(3)); // not by dragging
    scrollView->setContentOffset({});
    enableScrollOnDrag(*scrollView, ScrollOnDrag::enabled);
    EXPECT_TRUE(drag());
}

} // namespace zelk
