// SPDX-License-Identifier: MIT
// Tabs, pages that turn, and pages one step deeper than each other.
#include "platform/uikit/UIPageControl.h"
#include "platform/uikit/UIScrollView.h"
#include "tests/platform/swiftui/probes.h"

#include <gtest/gtest.h>
#include <numeric>

namespace {

using namespace platform;
using namespace std::chrono_literals;
using probes::cell;
using Role = AccessibilityRole;

struct Scene : probes::Scene {
    template <View Root>
    explicit Scene(Root root, const UITraitCollection& traits = {})
        : probes::Scene(std::move(root), {300, 200}, traits)
    {
    }
    // What is read on the page in sight.
    std::string text()
    {
        std::string all;
        for (auto& each : harness.findAll(Role::staticText)) {
            auto isButtonText =
                each.view().superview() && dynamic_cast<UIControl*>(each.view().superview().get());
            if (each.isOnScreen() && !isButtonText)
                all += each.label();
        }
        return all;
    }
};

UITraitCollection rightToLeft()
{
    return {.layoutDirection = UIUserInterfaceLayoutDirection::rightToLeft};
}

TEST(TabView, shows_the_tab_of_its_selection)
{
    auto selected = cell(1);
    Scene scene(TabView{Binding(selected), Text{"a"} | tabItem("First"), Text{"b"} | tabItem("Second")});
    EXPECT_EQ(scene.text(), "b");
    scene.harness.find(Role::tab, "First").tap();
    scene.settle();
    EXPECT_EQ(scene.text(), "a");
    EXPECT_EQ(selected->value(), 0);
    EXPECT_TRUE(scene.harness.find(Role::tab, "First").isSelected());
    selected->set(99);
    scene.settle();
    EXPECT_EQ(scene.text(), "b") << "the nearest there is";
}

TEST(TabView, keeps_to_a_binding_that_refuses)
{
    Scene scene(TabView{Binding<int>([] { return 0; }, [](int) {}), Text{"a"} | tabItem("First"),
                        Text{"b"} | tabItem("Second")});
    scene.harness.find(Role::tab, "Second").tap();
    scene.settle();
    EXPECT_EQ(scene.text(), "a");
}

auto pages(Binding<int> selected, Binding<std::vector<int>> numbers)
{
    struct Root {
        Binding<int> selected;
        Binding<std::vector<int>> numbers;
        auto dynamicProperties() { return std::tie(numbers); }
        auto body() const
        {
            return TabView{selected,
                           ForEach{numbers.get(), std::identity{},
                                   [](int number) { return Text{std::to_string(number)}; }}}
            | tabViewStyle(TabViewStyle::page);
        }
    };
    return Root{std::move(selected), std::move(numbers)};
}

TEST(PagedTabView, turns_one_page_at_a_time_whatever_turns_it)
{
    for (bool isMirrored : {false, true}) {
        SCOPED_TRACE(isMirrored);
        auto selected = cell(3);
        std::vector<int> all(1'000);
        std::iota(all.begin(), all.end(), 0);
        auto numbers = cell(all);
        Scene scene(pages(Binding(selected), Binding(numbers)),
                    isMirrored ? rightToLeft() : UITraitCollection{});
        const CGFloat on = isMirrored ? 1 : -1; // where the content moves for the next page
        auto key = [&](bool forward) {
            scene.press(forward != isMirrored ? UIKeyCode::right : UIKeyCode::left);
        };
        using Step = std::function<void()>;
        const std::tuple<const char*, Step, int> steps[] = {
            {"at first", [] {}, 3},
            {"thrown",
             [&] {
                 scene.harness.drag({150, 100}, {150 + on * 60, 100}, 60ms, {.type = UITouchType::finger});
             },
             4},
            {"drawn a little and let go",
             [&] {
                 scene.harness.down({150, 100}, {.type = UITouchType::finger});
                 for (int i = 1; i <= 6; ++i) {
                     scene.harness.advance(30ms);
                     scene.harness.moveTo({150 + on * 10 * i, 100});
                 }
                 scene.harness.advance(500ms);
                 scene.harness.up();
             },
             4},
            {"a key", [&] { key(true); }, 5},
            {"a key back", [&] { key(false); }, 4},
            {"a notch of the wheel",
             [&] { scene.harness.turnWheel({150, 100}, {.delta = {0, isMirrored ? 120.0 : -120.0}}); }, 5},
            {"the program", [&] { selected->set(700); }, 700},
            {"the program, past the end", [&] { selected->set(5'000); }, 999},
        };
        for (auto& [name, step, expected] : steps) {
            SCOPED_TRACE(name);
            step();
            scene.settle();
            EXPECT_EQ(scene.text(), std::to_string(expected));
            EXPECT_EQ(selected->value(), expected);
            EXPECT_LE(scene.harness.findAll(Role::staticText).size(), 3u) << "only what is near";
        }
        // Pages before the one that is seen go: it stays in sight.
        numbers->set(std::vector(all.begin() + 900, all.end()));
        scene.settle();
        EXPECT_EQ(scene.text(), "999");
        EXPECT_EQ(selected->value(), 99);
        numbers->set({});
        scene.settle();
        EXPECT_EQ(scene.text(), "");
    }
}

TEST(NavigationView, leads_deeper_and_back)
{
    struct Deep {
        Environment<DismissKey> dismiss;
        auto dynamicProperties() { return std::tie(dismiss); }
        auto body() const
        {
            return VStack{Text{"deep"}, Button{"Up", [back = *dismiss] { back(); }}}
            | navigationTitle("Deep");
        }
    };
    auto count = cell(0);
    struct Root {
        Binding<int> count;
        auto dynamicProperties() { return std::tie(count); }
        auto body() const
        {
            auto page = VStack{Text{"page " + std::to_string(count.get())}, NavigationLink{"Deeper", Deep{}}}
                | navigationTitle("Page " + std::to_string(count.get()));
            return NavigationView{List{NavigationLink{"Open", page}} | navigationTitle("Start")};
        }
    };
    Scene scene(Root{Binding(count)});
    EXPECT_TRUE(scene.harness.tryFind(Role::header, "Start"));
    scene.harness.tap({200, 60}); // anywhere in the row
    scene.settle();
    EXPECT_EQ(scene.text(), "page 0");
    count->set(7);
    scene.settle();
    EXPECT_EQ(scene.text(), "page 7") << "a page follows what describes it";
    scene.harness.find(Role::link, "Deeper").tap();
    scene.settle();
    EXPECT_EQ(scene.text(), "deep");
    scene.harness.find(Role::button, "Up").tap();
    scene.settle();
    EXPECT_EQ(scene.text(), "page 7");
    scene.press(UIKeyCode::left, UIKeyModifierFlags::alternate);
    EXPECT_TRUE(scene.harness.tryFind(Role::header, "Start"));
    // Pressed twice before anything has moved, it opens once.
    scene.harness.tap({200, 60});
    scene.harness.tap({200, 60});
    scene.settle();
    scene.harness.find(Role::button, "Start").tap();
    scene.settle();
    EXPECT_TRUE(scene.harness.tryFind(Role::header, "Start"));
}

} // namespace
