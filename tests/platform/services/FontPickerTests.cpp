// SPDX-License-Identifier: MIT
#include "platform/services/UIFontPickerViewController.h"

#include "platform/foundation/NSUserDefaults.h"
#include "tests/support/harness/ViewHarness.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using harness::ViewHarness;
using Role = AccessibilityRole;
using Key = UIKeyCode;

struct Listener : UIFontPickerViewControllerDelegate {
    std::vector<std::string> picked;
    int cancelled = 0;
    void fontPickerViewControllerDidPickFont(UIFontPickerViewController& picker) override
    {
        picked.emplace_back(picker.selectedFont()->familyName());
    }
    void fontPickerViewControllerDidCancel(UIFontPickerViewController&) override { ++cancelled; }
};

struct Shown {
    ViewHarness harness{{360, 420}};
    std::shared_ptr<Listener> listener = std::make_shared<Listener>();
    std::shared_ptr<UIFontPickerViewController> picker = std::make_shared<UIFontPickerViewController>();

    Shown()
    {
        picker->setDelegate(listener);
        harness.show(std::shared_ptr<UIViewController>(picker));
        harness.settle();
    }
    std::vector<std::string> names()
    {
        std::vector<std::string> all;
        for (const auto& row : harness.find(Role::list).findAll(Role::button))
            all.push_back(row.label());
        return all;
    }
};

TEST(UIFontPicker, finds_families_by_name_and_puts_the_last_ones_first)
{
    constexpr auto key = "org.zelk.fontPicker.recents";
    NSUserDefaults::standardUserDefaults()->setValue(std::nullopt, key);
    std::vector<std::string> all;
    {
        Shown shown;
        all = shown.names();
        ASSERT_GE(all.size(), 2u);
        shown.harness.find(Role::textField).type("no family is called so");
        EXPECT_TRUE(shown.harness.tryFind(Role::staticText, "No Fonts Found"));
        shown.harness.press(Key::escape);
        EXPECT_EQ(shown.listener->cancelled, 1);
        EXPECT_TRUE(shown.listener->picked.empty());
    }
    auto wanted = all.back();
    {
        Shown shown;
        auto shouted = wanted.substr(1);
        std::ranges::transform(shouted, shouted.begin(), [](unsigned char c) { return std::toupper(c); });
        shown.harness.find(Role::textField).type(shouted);
        for (const auto& name : shown.names())
            EXPECT_EQ(name.size() >= shouted.size(), true) << name;
        EXPECT_EQ(std::ranges::count(shown.names(), wanted), 1);
        shown.harness.find(Role::button, wanted).tap();
        shown.harness.press(Key::escape);
        EXPECT_EQ(shown.listener->picked, std::vector{wanted});
        EXPECT_EQ(shown.listener->cancelled, 0) << "one of them is told";
    }
    {
        Shown shown;
        EXPECT_EQ(shown.names().front(), wanted) << "a recent one";
        EXPECT_EQ(shown.names()[1], all.front());
        shown.harness.press(Key::returnKey); // from the field to the list
        shown.harness.press(Key::down);
        shown.harness.press(Key::returnKey);
        EXPECT_EQ(shown.listener->picked, std::vector{all.front()}) << "the heading is passed over";
    }
    NSUserDefaults::standardUserDefaults()->setValue(std::vector<PropertyListValue>{std::string("Gone Away")},
                                                     key);
    EXPECT_EQ(Shown().names(), all) << "a recent family that is not installed any more";
    NSUserDefaults::standardUserDefaults()->setValue(std::nullopt, key);
}

} // namespace
