// SPDX-License-Identifier: MIT
#include "kit/ui/AccessoryViewAlertController.h"
#include "kit/ui/ContainerView.h"
#include "platform/combine/PassthroughSubject.h"
#include "platform/dispatch/currentDate.h"
#include "platform/uikit/UILabel.h"
#include "tests/support/harness/ViewHarness.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace platform;
using namespace std::chrono_literals;
using harness::ViewHarness;
using zelk::AccessoryViewAlertController;
using zelk::AccessoryViewPosition;
using Role = AccessibilityRole;
using Style = UIAlertControllerStyle;

constexpr auto top = AccessoryViewPosition::top, bottom = AccessoryViewPosition::bottom;

std::shared_ptr<UIView> accessory(CGFloat height)
{
    return std::make_shared<UIView>(CGRect::make(0, 0, 40, height));
}

// The height of a text as an alert's label sets it.
CGFloat heightOf(const std::string& text, FontTextStyle style)
{
    UILabel label;
    label.setNumberOfLines(0);
    label.setFont(UIFont::preferredFont(style));
    label.setText(text);
    return label.sizeThatFits({238, std::numeric_limits<CGFloat>::max()}).height;
}

TEST(AccessoryViewAlert, makes_room_by_line_breaks_where_the_accessory_stands)
{
    ViewHarness harness;
    struct Case {
        const char* name;
        AccessoryViewPosition position;
        std::optional<std::string> message;
        CGFloat height;
        Style style = Style::alert;
        FontTextStyle measured = FontTextStyle::headline;
        std::string title = "Title";
    };
    const Case cases[] = {
        {"no height, no break", top, {}, 0},
        {"nor in a sheet", bottom, "Message", 0, Style::actionSheet, FontTextStyle::footnote},
        {"one point", top, {}, 1},
        {"above a message, in the title", top, "Message", 50},
        {"below a title alone", bottom, {}, 50},
        {"below a message, in it", bottom, "Message", 50, Style::alert, FontTextStyle::footnote},
        {"in a sheet's title", top, {}, 50, Style::actionSheet, FontTextStyle::callout},
        {"without a title", top, {}, 30, Style::alert, FontTextStyle::headline, ""},
        {"over a title of lines",
         bottom,
         {},
         90,
         Style::alert,
         FontTextStyle::headline,
         "A title that is longer than what fits on one line of an alert"},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.name);
        auto alert = AccessoryViewAlertController::make({.title = each.title,
                                                         .message = each.message,
                                                         .accessoryView = accessory(each.height),
                                                         .accessoryViewPosition = each.position,
                                                         .preferredStyle = each.style});
        const auto& texts = alert->configuration();
        auto isMessage = each.position == bottom && each.message;
        auto before = isMessage ? *each.message : each.title;
        auto after = isMessage ? *texts.adjustedMessage : texts.adjustedTitle;
        auto breaks = after.size() - before.size();
        std::string padding(breaks, '\n');
        EXPECT_EQ(after, each.position == top ? padding + before : before + padding);
        EXPECT_EQ(isMessage ? texts.adjustedTitle : texts.adjustedMessage.value_or("-"),
                  isMessage ? each.title : each.message.value_or("-"));
        auto added = heightOf(before + padding, each.measured) - heightOf(before, each.measured);
        EXPECT_EQ(texts.accessoryViewYOffset, added / 2 + (each.style == Style::alert ? 22 : 11));
        if (!(each.height > 0)) {
            EXPECT_EQ(breaks, 0u);
            continue;
        }
        ASSERT_GT(breaks, 0u);
        EXPECT_GE(added, each.height);
        EXPECT_LT(heightOf(before + padding.substr(1), each.measured) - heightOf(before, each.measured),
                  each.height)
            << "no more than it takes";
        EXPECT_EQ(alert->title(), texts.adjustedTitle);
    }
}

struct Shown {
    ViewHarness harness{{400, 500}};
    std::shared_ptr<UIView> view = accessory(40);
    std::shared_ptr<AccessoryViewAlertController> alert;

    Shown(AccessoryViewPosition position, std::size_t actions, std::string title = "Title")
        : alert(AccessoryViewAlertController::make({.title = std::move(title),
                                                    .message = "Message",
                                                    .accessoryView = view,
                                                    .accessoryViewPosition = position}))
    {
        for (std::size_t i = 0; i < actions; ++i)
            alert->addAction(std::make_shared<UIAlertAction>("Go"));
        auto root = std::make_shared<UIViewController>();
        harness.show(root);
        root->present(alert, Animated::yes);
        harness.advance(1s);
    }
};

TEST(AccessoryViewAlert, centres_its_accessory_in_the_room_at_each_layout)
{
    for (std::size_t actions : {0u, 1u, 2u, 3u}) {
        for (auto position : {top, bottom}) {
            SCOPED_TRACE(actions);
            Shown shown(position, actions);
            auto card = shown.alert->view()->bounds();
            auto offset = shown.alert->configuration().accessoryViewYOffset;
            auto y = position == top ? offset : card.maxY() - offset - 44.0 * static_cast<double>(actions);
            EXPECT_EQ(shown.view->center(), (CGPoint{card.width() / 2, y}));
            EXPECT_EQ(shown.view->bounds().size, (CGSize{card.width(), 40}));
            auto label = shown.harness.find(Role::staticText,
                                            position == top ? shown.alert->title() : *shown.alert->message());
            auto inLabel = label.view().convertFrom(shown.view->center(), shown.alert->view().get());
            EXPECT_TRUE(label.view().bounds().contains(inLabel)) << "in the text's own room";
        }
    }
    Shown shown(bottom, 0);
    auto before = shown.view->center().y - shown.alert->view()->bounds().maxY();
    shown.alert->addAction(std::make_shared<UIAlertAction>("Go"));
    shown.alert->addAction(std::make_shared<UIAlertAction>("Stop", UIAlertActionStyle::cancel));
    shown.harness.advance(1s);
    EXPECT_EQ(shown.view->center().y - shown.alert->view()->bounds().maxY(), before - 88);
}

TEST(AccessoryViewAlert, bears_a_title_of_a_megabyte)
{
    std::string title;
    for (int i = 0; i < 1 << 18; ++i)
        title += "word";
    Shown shown(bottom, 1, title);
    EXPECT_LE(shown.alert->view()->frame().maxY(), 500);
}

TEST(AccessoryViewAlert, is_full_when_the_deadline_comes)
{
    ViewHarness harness({400, 500});
    PassthroughSubject<Date> deadlines;
    auto alert =
        AccessoryViewAlertController::progress({.title = "Exporting"}, deadlines.eraseToAnyPublisher());
    auto root = std::make_shared<UIViewController>();
    harness.show(root);
    root->present(alert, Animated::yes);
    harness.advance(1s);
    auto progress = [&] { return harness.find(Role::progress).range()->value; };
    auto send = [&](double fromNow) {
        deadlines.send(Date{currentDate().timeIntervalSince1970 + fromNow});
        harness.settle();
    };
    EXPECT_EQ(progress(), 0);
    send(10);
    harness.advance(5s);
    EXPECT_NEAR(progress(), 0.5, 0.01);
    send(20);
    EXPECT_NEAR(progress(), 0.5, 0.01) << "it goes on from where it is";
    harness.advance(10s);
    EXPECT_NEAR(progress(), 0.75, 0.01);
    deadlines.complete(Completion::finished());
    harness.advance(10s);
    EXPECT_EQ(progress(), 1) << "also after the last deadline was published";
}

TEST(AccessoryViewAlert, starts_anew_after_a_deadline_and_ignores_what_is_none)
{
    ViewHarness harness({400, 500});
    PassthroughSubject<Date> deadlines;
    auto alert =
        AccessoryViewAlertController::progress({.title = "Exporting"}, deadlines.eraseToAnyPublisher());
    harness.show(std::shared_ptr<UIViewController>(alert));
    struct Case {
        const char* name;
        double fromNow;
        double after, afterOneSecond;
    };
    const auto infinity = std::numeric_limits<double>::infinity();
    const Case cases[] = {
        {"past", -5, 1, 1},         {"another", 2, 0, 0.5},    {"not a number", NAN, 0.5, 1},
        {"ten hours", 36000, 0, 0}, {"never", infinity, 0, 0}, {"always was", -infinity, 1, 1},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.name);
        deadlines.send(Date{currentDate().timeIntervalSince1970 + each.fromNow});
        harness.settle();
        EXPECT_NEAR(harness.find(Role::progress).range()->value, each.after, 0.01);
        harness.advance(1s);
        EXPECT_NEAR(harness.find(Role::progress).range()->value, each.afterOneSecond, 0.01);
    }
}

TEST(AccessoryViewAlert, holds_its_wheel_in_the_middle_of_a_container)
{
    ViewHarness harness({400, 500});
    auto alert = AccessoryViewAlertController::activityIndicator({.title = "Wait"});
    auto& container = *alert->accessoryView();
    auto& wheel = *container.subviews().at(0);
    EXPECT_EQ(container.bounds().height(), wheel.intrinsicContentSize().height + 16);
    auto root = std::make_shared<UIViewController>();
    harness.show(root);
    root->present(alert, Animated::yes);
    harness.advance(1s);
    EXPECT_EQ(wheel.bounds().width(), 0.8 * container.bounds().width());
    EXPECT_EQ(wheel.center(), (CGPoint{container.bounds().midX(), container.bounds().midY()}));
    EXPECT_FALSE(container.clipsToBounds());
}

TEST(AccessoryViewAlertDeathTest, stops_where_its_texts_would_be_replaced_or_its_view_is_missing)
{
    ViewHarness harness;
    auto alert = AccessoryViewAlertController::make({.title = "Title", .accessoryView = accessory(10)});
    EXPECT_DEATH(alert->setTitle("Other"), "title of an alert");
    EXPECT_DEATH(alert->setMessage("Other"), "message of an alert");
    EXPECT_DEATH((void)AccessoryViewAlertController::make({.title = "Title"}), "no accessory view");
}

} // namespace
