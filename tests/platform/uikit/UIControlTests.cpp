// SPDX-License-Identifier: MIT
#include "platform/uikit/UIButton.h"
#include "platform/uikit/UIImageView.h"
#include "platform/uikit/UILabel.h"
#include "platform/uikit/UIPanGestureRecognizer.h"
#include "platform/uikit/UITapGestureRecognizer.h"
#include "tests/platform/uikit/TouchTestSupport.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

using Events = UIControlEvents;

struct Controls : Stage {
    std::shared_ptr<UIControl> control = add<UIControl>(CGRect::make(100, 100, 100, 40));
    std::string log;

    Controls()
    {
        constexpr std::pair<unsigned, const char*> names[] = {{Events::touchDown, "down"},
                                                              {Events::touchDragEnter, "enter"},
                                                              {Events::touchDragExit, "exit"},
                                                              {Events::touchUpInside, "up"},
                                                              {Events::touchUpOutside, "off"},
                                                              {Events::touchCancel, "cancel"},
                                                              {Events::primaryActionTriggered, "act"}};
        for (auto [event, name] : names)
            control->addAction([this, name = std::string(name)](UIControl&) { log += name + " "; }, {event});
    }
};

TEST(UIControl, TheCourseOfATouch)
{
    using enum UITouchType;
    using Act = std::function<void(Finger&)>;
    const std::tuple<std::string_view, UITouchType, Act, std::string> cases[] = {
        {"a click", mouse, [](auto& f) { f.tap({150, 120}); }, "down up act "},
        {"left and let go", mouse, [](auto& f) { f.down({150, 120}).moveTo({50, 120}).up(); },
         "down exit off "},
        {"left and back", mouse,
         [](auto& f) { f.down({150, 120}).moveTo({50, 120}).moveTo({150, 120}).up(); },
         "down exit enter up act "},
        {"a finger may slip a little", finger, [](auto& f) { f.down({150, 120}).moveTo({50, 120}).up(); },
         "down up act "},
        {"but not far", finger, [](auto& f) { f.down({150, 120}).moveTo({150, 300}).up(); },
         "down exit off "},
        {"cancelled", finger, [](auto& f) { f.down({150, 120}).cancel(); }, "down cancel "},
        {"another button", mouse, [](auto& f) { f.down({150, 120}, UIPointerButton::secondary).up(); }, ""},
    };
    for (auto& [name, type, act, log] : cases) {
        SCOPED_TRACE(name);
        Controls stage;
        Finger finger(stage, type);
        act(finger);
        EXPECT_EQ(stage.log, log);
        EXPECT_FALSE(stage.control->isTracking());
        EXPECT_FALSE(stage.control->isHighlighted());
    }
}

TEST(UIControl, KeysPressItWhileItHasTheKeyboard)
{
    Controls stage;
    UIPress space{.key = UIKeyCode::space, .characters = " "};
    UIPress enter{.key = UIKeyCode::returnKey};
    EXPECT_FALSE(stage.control->pressesBegan(space));
    ASSERT_TRUE(stage.control->becomeFirstResponder());
    EXPECT_TRUE(stage.window->sendPress(space));
    EXPECT_TRUE(stage.window->sendPress(enter));
    enter.isRepeat = true;
    EXPECT_TRUE(stage.window->sendPress(enter)); // held down: once is enough
    space.modifiers.rawValue = UIKeyModifierFlags::control;
    EXPECT_FALSE(stage.window->sendPress(space));
    EXPECT_EQ(stage.log, "up act up act ");
}

TEST(UIControl, OneThatIsDisabledOrLeavesEndsItsTouchAndTakesNoOther)
{
    for (auto leaves : {false, true}) {
        Controls stage;
        Finger finger(stage, UITouchType::mouse);
        finger.down({150, 120});
        EXPECT_TRUE(stage.control->isHighlighted());
        leaves ? stage.control->removeFromSuperview() : stage.control->setEnabled(false);
        EXPECT_EQ(stage.log, "down cancel ");
        EXPECT_FALSE(stage.control->isHighlighted());
        finger.up().tap({150, 120});
        EXPECT_EQ(stage.control->accessibilityActivate(), leaves);
        EXPECT_FALSE(stage.control->becomeFirstResponder());
        EXPECT_EQ(stage.control->accessibilityNow().isEnabled, leaves);
        EXPECT_EQ(stage.log, leaves ? "down cancel up act " : "down cancel ");
    }
}

TEST(UIControl, ActionsMayRemoveTheControlAndEachOther)
{
    Controls stage;
    std::weak_ptr<UIControl> gone = stage.control;
    UIControl::ActionIdentifier second = 0;
    stage.control->addAction(
        [&](UIControl& control) {
            control.removeAction(second);
            control.removeFromSuperview();
            stage.control.reset();
        },
        {Events::touchUpInside});
    second = stage.control->addAction([&](UIControl&) { stage.log += "never "; }, {Events::touchUpInside});
    Finger(stage).tap({150, 120});
    EXPECT_EQ(stage.log, "down up act ");
    EXPECT_TRUE(gone.expired());
}

TEST(UIControl, ATapAroundItDoesNotSeeItsTouchesAPanDoes)
{
    Controls stage;
    auto note = [&](const char* what) { return [&, what](UIGestureRecognizer&) { stage.log += what; }; };
    stage.window->addGestureRecognizer(std::make_shared<UITapGestureRecognizer>(note("tap ")));
    stage.window->addGestureRecognizer(std::make_shared<UIPanGestureRecognizer>(note("pan ")));
    Finger finger(stage);
    finger.tap({150, 120});
    EXPECT_EQ(stage.log, "down up act ");
    finger.tap({10, 10});
    EXPECT_EQ(stage.log, "down up act tap ");
    stage.log.clear();
    finger.down({150, 120}).moveTo({150, 150}).up();
    EXPECT_EQ(stage.log, "down cancel pan pan "); // began, ended
}

TEST(UIButton, IsAsLargeAsWhatItHoldsAndMirrorsIt)
{
    Stage stage;
    auto picture = makeImage({20, 10}, 1, [](CGContext&) { });
    ASSERT_TRUE(picture);
    auto button = stage.add<UIButton>(CGRect::make(0, 0, 200, 50), UIButtonStyle::bordered);
    button->setTitle("Open");
    auto titled = button->intrinsicContentSize();
    button->setImage(*picture);
    EXPECT_EQ(button->intrinsicContentSize().width, titled.width + 20 + 6);
    auto isImageFirst = [&] {
        button->setNeedsLayout();
        stage.window->layoutNow();
        return button->imageView()->frame().minX() < button->titleLabel()->frame().minX();
    };
    EXPECT_TRUE(isImageFirst());
    button->setSemanticContentAttribute(UISemanticContentAttribute::forceRightToLeft);
    EXPECT_FALSE(isImageFirst());
    button->setFrame(CGRect::make(0, 0, 3, 2)); // narrower than its insets
    stage.window->layoutNow();
    EXPECT_GE(button->titleLabel()->frame().width(), 0);
}

} // namespace
} // namespace platform
