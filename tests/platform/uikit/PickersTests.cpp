// SPDX-License-Identifier: MIT
// Wheels, menus, colour wells and search bars.
#include "platform/uikit/UIColorWell.h"
#include "platform/uikit/UIDatePicker.h"
#include "platform/uikit/UIMenuButton.h"
#include "platform/uikit/UIPickerView.h"
#include "platform/uikit/UISearchBar.h"
#include "tests/support/harness/ViewHarness.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

using namespace std::chrono_literals;
using enum UIKeyCode;
using harness::ViewHarness;
using Act = std::function<void(ViewHarness&)>;

template <class V>
std::shared_ptr<V> put(ViewHarness& harness, CGRect frame)
{
    auto controller = std::make_shared<UIViewController>();
    auto view = std::make_shared<V>();
    view->setFrame(frame);
    controller->view()->addSubview(view);
    harness.show(controller);
    return view;
}

struct Numbers : UIPickerViewDelegate {
    int rows = 1'000'000;
    mutable int asked = 0;
    std::vector<int> chosen;
    int numberOfRows(const UIPickerView&, int) const override { return rows; }
    std::string titleForRow(const UIPickerView&, int row, int) const override
    {
        ++asked;
        return std::to_string(row);
    }
    void didSelectRow(UIPickerView&, int row, int) override { chosen.push_back(row); }
};

TEST(UIPickerView, comes_to_rest_on_a_row_however_it_is_turned)
{
    auto frame = CGRect::make(60, 20, 200, 160);
    const std::tuple<std::string_view, Act, int, int> cases[] = {
        {"dragged", [](auto& h) { h.drag({160, 140}, {160, 60}, {.rest = 1s}); }, 11, 13},
        {"flung it goes further", [](auto& h) { h.drag({160, 140}, {160, 60}, {.time = 60ms}); }, 14, 60},
        {"a row that is pressed", [](auto& h) { h.tap({160, 140}); }, 11, 12},
        {"the wheel of the mouse", [](auto& h) { h.scroll({160, 100}, {0, -110}); }, 12, 14},
        {"down", [](auto& h) { h.press({tab, down}); }, 11, 11},
        {"up", [](auto& h) { h.press({tab, up}); }, 9, 9},
        {"the last", [](auto& h) { h.press({tab, end}); }, 999'999, 999'999},
        {"before the first", [](auto& h) { h.press({tab, home, up}); }, 0, 0},
        {"taken away", [](auto& h) { h.pull({{160, 140}, {160, 60}}).cancel(); }, 10, 10},
    };
    for (auto& [name, act, least, most] : cases) {
        auto numbers = std::make_shared<Numbers>();
        ViewHarness harness({320, 200});
        auto picker = put<UIPickerView>(harness, frame);
        picker->setDelegate(numbers);
        picker->selectRow(10, 0);
        harness.settle();
        act(harness);
        harness.playFrames(3s);
        EXPECT_GE(picker->selectedRow(0), least) << name;
        EXPECT_LE(picker->selectedRow(0), most) << name;
        EXPECT_EQ(numbers->chosen.empty(), picker->selectedRow(0) == 10) << name;
        EXPECT_EQ(harness.find(AccessibilityRole::spinButton).value(), std::to_string(picker->selectedRow(0)))
            << name;
        EXPECT_EQ(harness.playFrames(1s).painted, 0) << name << ": at rest";
        EXPECT_LT(numbers->asked, 2000) << name << ": only rows that are seen";
    }
    auto numbers = std::make_shared<Numbers>();
    UIPickerView picker(frame);
    picker.setDelegate(numbers);
    picker.selectRow(500, 0);
    numbers->rows = 3;
    picker.reloadAllComponents();
    EXPECT_EQ(picker.selectedRow(0), 2);
    numbers->rows = 0;
    picker.reloadAllComponents();
    EXPECT_EQ(picker.selectedRow(0), -1);
    EXPECT_EQ(picker.selectedRow(7), -1);
}

TEST(UIMenuButton, opens_a_menu_in_which_keys_and_clicks_choose)
{
    const std::tuple<std::string_view, Act, int> cases[] = {
        {"a click", [](auto& h) { h.find(AccessibilityRole::menuItem, "Mint").tap(); }, 1},
        {"down and Return", [](auto& h) { h.press({down, returnKey}); }, 1},
        {"up goes round", [](auto& h) { h.press({up, returnKey}); }, 2},
        {"its first letter", [](auto& h) { h.type("r"), h.press(returnKey); }, 2},
        {"a letter of none", [](auto& h) { h.type("x"), h.press(returnKey); }, 0},
        {"Escape", [](auto& h) { h.press({down, escape}); }, 0},
        {"a press beside", [](auto& h) { h.tap({310, 390}); }, 0},
    };
    for (auto& [name, act, selected] : cases) {
        ViewHarness harness({320, 400});
        auto button = put<UIMenuButton>(harness, CGRect::make(100, 20, 120, 34));
        button->setTitles({"Lemon", "Mint", "Rose"});
        button->setSelectedIndex(0);
        int told = 0;
        button->addAction([&](UIControl&) { ++told; }, {UIControlEvents::valueChanged});
        harness.find(AccessibilityRole::menuButton).tap();
        harness.playFrames(1s);
        EXPECT_TRUE(button->accessibilityNow().isExpanded) << name;
        act(harness);
        harness.playFrames(1s);
        EXPECT_EQ(button->selectedIndex(), selected) << name;
        EXPECT_EQ(told, selected == 0 ? 0 : 1) << name;
        EXPECT_FALSE(harness.tryFind(AccessibilityRole::menu)) << name;
        EXPECT_FALSE(button->accessibilityNow().isExpanded) << name;
        EXPECT_EQ(harness.find(AccessibilityRole::menuButton).value(),
                  button->titles()[static_cast<std::size_t>(selected)]);
    }
    ViewHarness harness;
    auto empty = put<UIMenuButton>(harness, CGRect::make(100, 20, 120, 34));
    empty->performPrimaryAction();
    EXPECT_FALSE(empty->accessibilityNow().isExpanded) << "there is nothing to choose";
}

TEST(UIColorWell, takes_what_is_chosen_or_mixed_in_its_panel)
{
    ViewHarness harness({320, 400});
    auto well = put<UIColorWell>(harness, CGRect::make(140, 20, 40, 40));
    std::vector<ColorComponents> told;
    well->addAction([&](UIControl&) { told.push_back(well->selectedColor()->components()); },
                    {UIControlEvents::valueChanged});
    harness.find(AccessibilityRole::menuButton).tap();
    harness.playFrames(1s);
    harness.find(AccessibilityRole::radioButton, "#000000").tap();
    EXPECT_TRUE(harness.find(AccessibilityRole::slider, "G").setValue(255));
    EXPECT_EQ(told, (std::vector<ColorComponents>{{0, 0, 0, 1}, {0, 1, 0, 1}}));
    EXPECT_FALSE(harness.find(AccessibilityRole::radioButton, "#000000").isSelected());
    harness.press(escape);
    harness.playFrames(1s);
    EXPECT_FALSE(well->accessibilityNow().isExpanded);
}

TEST(UIDatePicker, goes_by_the_calendar_inside_of_its_limits)
{
    using Component = Calendar::Component;
    const Calendar calendar(Calendar::Identifier::gregorian, Locale("en"), TimeZone::utc());
    constexpr double day = 24 * 60 * 60;
    constexpr Date lastOfJanuary{1706659200}; // 2024-01-31 00:00 UTC
    const std::tuple<std::string_view, std::string, Act, double> cases[] = {
        {"another day", "31", [](auto& h) { h.press(up); }, -1},
        {"no day after the last", "31", [](auto& h) { h.press(down); }, 0},
        {"a month without that day has its last", "January", [](auto& h) { h.press(down); }, 29},
        {"a year", "2024", [](auto& h) { h.press(down); }, 366},
        {"not past the limit", "2024", [](auto& h) { h.press(pageDown); }, 400},
    };
    for (auto& [name, wheel, act, days] : cases) {
        ViewHarness harness({400, 200});
        auto picker = put<UIDatePicker>(harness, CGRect::make(20, 20, 360, 160));
        picker->setCalendar(calendar);
        picker->setDatePickerMode(UIDatePickerMode::date);
        picker->setDate({std::nan("")});
        picker->setDate(lastOfJanuary);
        picker->setMaximumDate(Date{lastOfJanuary.timeIntervalSince1970 + 400 * day});
        int told = 0;
        picker->addAction([&](UIControl&) { ++told; }, {UIControlEvents::valueChanged});
        for (auto& element : harness.findAll(AccessibilityRole::spinButton)) {
            if (element.value() == wheel)
                element.view().becomeFirstResponder();
        }
        act(harness);
        harness.playFrames(2s);
        EXPECT_EQ((picker->date().timeIntervalSince1970 - lastOfJanuary.timeIntervalSince1970) / day, days)
            << name;
        EXPECT_EQ(told, days == 0 ? 0 : 1) << name;
        auto shown = std::to_string(*calendar.component(Component::day, picker->date()));
        EXPECT_EQ(harness.findAll(AccessibilityRole::spinButton).front().value(), shown) << name;
    }
}

TEST(UIDatePicker, shows_hours_to_the_left_of_minutes_in_every_direction)
{
    using enum UIUserInterfaceLayoutDirection;
    for (auto [direction, order] :
         {std::pair{leftToRight, std::vector{0, 1, 2, 3, 4}}, {rightToLeft, std::vector{3, 4, 2, 1, 0}}}) {
        ViewHarness harness({500, 200}, {.layoutDirection = direction});
        auto picker = put<UIDatePicker>(harness, CGRect::make(20, 20, 460, 160));
        harness.settle();
        auto& wheels = picker->subviews().front()->subviews();
        auto places = std::vector{0, 1, 2, 3, 4};
        std::ranges::sort(places, {}, [&](int wheel) { return wheels[std::size_t(wheel)]->frame().minX(); });
        EXPECT_EQ(places, order);
    }
}

struct Searched : UISearchBarDelegate {
    std::string log;
    void searchBarTextDidChange(UISearchBar&, const std::string& text) override { log += text + "|"; }
    void searchBarSearchButtonClicked(UISearchBar&) override { log += "search|"; }
    void searchBarCancelButtonClicked(UISearchBar&) override { log += "cancel|"; }
};

TEST(UISearchBar, tells_what_is_typed_searched_cleared_and_cancelled)
{
    const std::tuple<std::string_view, Act, std::string> cases[] = {
        {"typed", [](auto& h) { h.type("ab"); }, "a|ab|"},
        {"searched", [](auto& h) { h.press(returnKey); }, "search|"},
        {"Escape empties, then ends", [](auto& h) { h.type("a"), h.press({escape, escape}); }, "a||cancel|"},
        {"the button that empties", [](auto& h) { h.type("a"), h.tap({220, 34}), h.type("b"); }, "a||b|"},
        {"nothing to empty", [](auto& h) { h.tap({220, 34}); }, ""},
        {"ended", [](auto& h) { h.find(AccessibilityRole::button, "Cancel").tap(); }, "cancel|"},
    };
    for (auto& [name, act, log] : cases) {
        ViewHarness harness({320, 100});
        auto bar = put<UISearchBar>(harness, CGRect::make(20, 20, 280, 32));
        auto delegate = std::make_shared<Searched>();
        bar->setDelegate(delegate);
        bar->setShowsCancelButton(true);
        harness.settle();
        bar->searchTextField()->becomeFirstResponder();
        act(harness);
        EXPECT_EQ(delegate->log, log) << name;
    }
}

} // namespace
} // namespace platform
