// SPDX-License-Identifier: MIT
#include "platform/uikit/UIAlertController.h"

#include "platform/uikit/AccessibilityNode_p.h"
#include "platform/uikit/AccessibilityNodes_p.h"
#include "platform/uikit/UIScrollView.h"
#include "tests/support/harness/ViewHarness.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using namespace std::chrono_literals;
using harness::ViewHarness;
using Key = UIKeyCode;
using Style = UIAlertControllerStyle;

// "Save*, Delete!, Cancel-": the marks make an action preferred, destructive, cancelling, disabled (#).
struct Shown {
    ViewHarness harness;
    std::shared_ptr<UIAlertController> alert;
    std::string chosen;

    explicit Shown(const std::vector<std::string>& actions, Style style = Style::alert,
                   CGSize size = {480, 400}, const UITraitCollection& traits = {},
                   std::string title = "Title", std::string message = "Message")
        : harness(size, traits)
        , alert(std::make_shared<UIAlertController>(std::move(title), std::move(message), style))
    {
        auto root = std::make_shared<UIViewController>();
        harness.show(root);
        for (auto name : actions) {
            auto mark = name.back();
            if (std::string_view("*!-#").find(mark) != std::string_view::npos)
                name.pop_back();
            auto kind = mark == '!' ? UIAlertActionStyle::destructive
                : mark == '-'       ? UIAlertActionStyle::cancel
                                    : UIAlertActionStyle::default_;
            auto action = std::make_shared<UIAlertAction>(name, kind, [this, name](UIAlertAction&) {
                EXPECT_EQ(alert->presentingViewController(), nullptr) << "the alert has gone by then";
                chosen += name;
            });
            action->setEnabled(mark != '#');
            alert->addAction(action);
            if (mark == '*')
                alert->setPreferredAction(action);
        }
        root->present(alert, Animated::yes);
        harness.settle();
        harness.advance(1s);
    }
    CGRect place(std::string_view label)
    {
        auto& view = harness.find(label);
        return view.convertTo(view.bounds(), nullptr);
    }
    bool isShown() const { return alert->presentingViewController() != nullptr; }
};

TEST(UIAlertController, is_answered_by_keys)
{
    struct Case {
        const char* name;
        std::vector<std::string> actions;
        std::vector<Key> keys;
        std::string chosen;
        Style style = Style::alert;
    };
    const Case cases[] = {
        {"Return takes the preferred one", {"Keep", "Delete*", "Cancel-"}, {Key::returnKey}, "Delete"},
        {"else the first ordinary one", {"Delete!", "Save", "Cancel-"}, {Key::returnKey}, "Save"},
        {"never a destructive one", {"Delete!", "Cancel-"}, {Key::returnKey}, "Cancel"},
        {"nor a disabled one", {"Save#", "Cancel-"}, {Key::returnKey}, "Cancel"},
        {"Escape cancels", {"Save", "Cancel-"}, {Key::escape}, "Cancel"},
        {"Escape takes an only one", {"OK"}, {Key::escape}, "OK"},
        {"Escape does not guess", {"Yes", "No"}, {Key::escape}, ""},
        {"Tab goes on, and Space presses", {"Save", "Other", "Cancel-"}, {Key::tab, Key::space}, "Other"},
        {"Tab goes round", {"Save", "Other", "Cancel-"}, {Key::tab, Key::tab, Key::tab, Key::space}, "Save"},
        {"Return presses the button it is on",
         {"Save", "Other", "Cancel-"},
         {Key::down, Key::returnKey},
         "Other"},
        {"arrows stop at the end",
         {"Save", "Cancel-"},
         {Key::right, Key::right, Key::left, Key::left, Key::space},
         "Cancel"},
        {"a letter does nothing", {"OK"}, {Key::character}, ""},
        {"answered once", {"Save", "Cancel-"}, {Key::returnKey, Key::returnKey, Key::escape}, "Save"},
        {"no action, no answer", {}, {Key::returnKey, Key::escape, Key::tab, Key::down}, ""},
        {"a sheet is cancelled", {"Copy", "Cancel-"}, {Key::escape}, "Cancel", Style::actionSheet},
        {"a sheet has no only one", {"Copy"}, {Key::escape}, "", Style::actionSheet},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.name);
        Shown shown(test.actions, test.style);
        for (auto key : test.keys)
            shown.harness.press(key);
        shown.harness.advance(1s);
        EXPECT_EQ(shown.chosen, test.chosen);
        EXPECT_EQ(shown.isShown(), test.chosen.empty());
    }
}

TEST(UIAlertController, puts_two_short_buttons_in_a_row_and_all_others_in_a_column)
{
    UITraitCollection large, mirrored;
    large.preferredContentSizeCategory = UIContentSizeCategory::accessibilityExtraExtraExtraLarge;
    mirrored.layoutDirection = UIUserInterfaceLayoutDirection::rightToLeft;
    struct Case {
        const char* name;
        std::vector<std::string> actions;
        std::string order; // by place: "ab" in a row from the left, "a/b" one below the other
        CGSize size{480, 400};
        UITraitCollection traits;
        Style style = Style::alert;
    };
    const Case cases[] = {
        {"one", {"a"}, "a"},
        {"the one that cancels first in a row", {"a", "c-"}, "ca"},
        {"mirrored", {"a", "c-"}, "ac", {480, 400}, mirrored},
        {"three", {"c-", "a", "b"}, "a/b/c"},
        {"a long one", {"c-", "a rather long title"}, "a rather long title/c"},
        {"large text", {"Later", "Never-"}, "Later/Never", {300, 600}, large},
        {"no room", {"Later", "Never-"}, "Later/Never", {140, 300}},
        {"a sheet", {"a", "c-"}, "a/c", {480, 400}, {}, Style::actionSheet},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.name);
        Shown shown(test.actions, test.style, test.size, test.traits);
        std::vector<std::pair<CGRect, std::string>> found;
        for (auto name : test.actions) {
            if (name.ends_with('-'))
                name.pop_back();
            found.emplace_back(shown.place(name), name);
        }
        std::ranges::sort(found, {},
                          [](const auto& each) { return std::pair(each.first.minY(), each.first.minX()); });
        std::string order;
        for (std::size_t i = 0; i < found.size(); ++i) {
            if (i > 0 && found[i].first.minY() >= found[i - 1].first.maxY())
                order += '/';
            order += found[i].second;
            EXPECT_GE(found[i].first.height(), 44);
            EXPECT_TRUE((CGRect{{}, test.size}).contains(found[i].first));
        }
        EXPECT_EQ(order, test.order);
    }
}

TEST(UIAlertController, stays_inside_of_any_window_with_any_text)
{
    const std::string megabyte(1 << 20, 'x');
    const std::string many = [] {
        std::string text;
        for (int i = 0; i < 200; ++i)
            text += "A line that is said again and again. ";
        return text;
    }();
    for (CGSize size : {CGSize{480, 400}, CGSize{200, 150}, CGSize{60, 60}, CGSize{1, 1}, CGSize{0, 0}}) {
        for (const auto& [title, message] : std::vector<std::pair<std::string, std::string>>{
                 {"", ""}, {"Title", ""}, {"", "Message"}, {many, many}, {"\xff\xfe\n\n\n", "\u202e"}}) {
            Shown shown({"OK", "Cancel-"}, Style::alert, size, {}, title, message);
            auto card = shown.alert->view()->convertTo(shown.alert->view()->bounds(), nullptr);
            EXPECT_TRUE((CGRect{{}, {size.width + 1, size.height + 1}}).contains(card)) << size.width;
            shown.harness.press(Key::returnKey);
            shown.harness.advance(1s);
            EXPECT_EQ(shown.chosen, "OK");
        }
    }
    {
        Shown shown({"OK", megabyte}, Style::alert, {300, 300}, {}, megabyte, megabyte);
        EXPECT_TRUE((CGRect{{}, {300, 300}}).contains(shown.place("OK")))
            << "a button is in reach whatever the text";
    }

    std::vector<std::string> actions;
    for (int i = 0; i < 100; ++i)
        actions.push_back("Action " + std::to_string(i));
    Shown crowded(actions, Style::alert, {300, 300});
    crowded.harness.press(Key::up); // stays: the first has the keyboard
    for (int i = 0; i < 98; ++i)
        crowded.harness.press(Key::down);
    EXPECT_TRUE((CGRect{{}, {300, 300}}).contains(crowded.place("Action 98")))
        << "the focus comes into sight";
    crowded.harness.press(Key::space);
    crowded.harness.advance(1s);
    EXPECT_EQ(crowded.chosen, "Action 98");
}

TEST(UIAlertController, is_answered_by_the_pointer)
{
    {
        Shown shown({"Save", "Cancel-"});
        auto save = shown.place("Save").center();
        shown.harness.down(save);
        auto pressed = harness::colorAt(shown.harness.snapshot(), {save.x, save.y - 18});
        shown.harness.moveTo({5, 5});
        EXPECT_NE(harness::colorAt(shown.harness.snapshot(), {save.x, save.y - 18}), pressed)
            << "lit while pressed";
        shown.harness.up();
        shown.harness.tap(CGPoint{5, 5});
        shown.harness.advance(1s);
        EXPECT_TRUE(shown.isShown()) << "an alert wants an answer";
        shown.harness.tap(save);
        shown.harness.advance(1s);
        EXPECT_EQ(shown.chosen, "Save");
    }
    Shown sheet({"Copy", "Cancel-"}, Style::actionSheet);
    sheet.harness.tap(CGPoint{5, 5});
    sheet.harness.advance(1s);
    EXPECT_EQ(sheet.chosen, "Cancel") << "a press beside a sheet cancels it";
}

TEST(UIAlertController, tells_readers_what_it_is_and_lets_them_press)
{
    for (auto style : {Style::alert, Style::actionSheet}) {
        Shown shown({"Save#", "Cancel-"}, style);
        auto* card = AccessibilityNodes::node(*shown.alert->view());
        EXPECT_EQ(card->role(), style == Style::alert ? QAccessible::AlertMessage : QAccessible::Dialog);
        EXPECT_EQ(card->text(QAccessible::Name).toStdString(), "Title");
        EXPECT_EQ(card->text(QAccessible::Description).toStdString(), "Message");
        EXPECT_TRUE(card->state().modal);
        auto* save = AccessibilityNodes::node(shown.harness.find("Save"));
        EXPECT_TRUE(save->state().disabled);
        EXPECT_EQ(save->actionInterface(), nullptr);
        shown.alert->actions().front()->setEnabled(true);
        ASSERT_NE(save->actionInterface(), nullptr);
        save->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        shown.harness.advance(1s);
        EXPECT_EQ(shown.chosen, "Save");
    }
}

TEST(UIAlertController, moves_only_where_motion_is_welcome)
{
    for (auto isReduced : {false, true}) {
        Shown shown({"OK"}, Style::alert, {480, 400}, {.prefersReducedMotion = isReduced});
        auto root = shown.alert->presentingViewController();
        root->dismiss(Animated::no);
        root->present(shown.alert, Animated::yes);
        shown.harness.settle();
        shown.harness.advance(50ms);
        auto& card = *shown.alert->view();
        EXPECT_LT(card.presentationAlpha(), 1);
        EXPECT_EQ(card.presentationTransform().isIdentity(), isReduced);
        shown.harness.advance(1s);
        EXPECT_EQ(card.presentationAlpha(), 1);
        EXPECT_TRUE(card.presentationTransform().isIdentity());
    }
}

TEST(UIAlertControllerDeathTest, has_one_action_that_cancels_and_prefers_one_of_its_own)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    UIAlertController alert("Title");
    auto cancel = std::make_shared<UIAlertAction>("Cancel", UIAlertActionStyle::cancel);
    alert.addAction(cancel);
    EXPECT_DEATH(alert.addAction(std::make_shared<UIAlertAction>("No", UIAlertActionStyle::cancel)),
                 "second action");
    EXPECT_DEATH(alert.addAction(cancel), "second alert");
    EXPECT_DEATH(alert.setPreferredAction(std::make_shared<UIAlertAction>("Yes")), "none of the alert's");
}

} // namespace
