// SPDX-License-Identifier: MIT
#include "platform/swiftui/RowHeights.h"
#include "platform/uikit/UIScrollView.h"
#include "tests/platform/swiftui/probes.h"

#include <gtest/gtest.h>
#include <numeric>

namespace {

using namespace platform;
using harness::ViewHarness;
using Role = AccessibilityRole;
using Numbers = std::vector<int>;

Numbers upTo(int count, int from = 0)
{
    Numbers numbers(static_cast<std::size_t>(count));
    std::iota(numbers.begin(), numbers.end(), from);
    return numbers;
}

// Rows are named by their number and as high as `heightOf` says.
struct Row {
    int number;
    CGFloat height;
    State<int> taps = 0;
    auto dynamicProperties() { return std::tie(taps); }
    auto body() const
    {
        auto add = [count = taps.binding()] { count.set(count.get() + 1); };
        return Button{std::to_string(number) + " tapped " + std::to_string(*taps), add}
        | frame({.height = height});
    }
};

struct Scene {
    std::shared_ptr<StateCell<Numbers>> numbers;
    ViewHarness harness;

    explicit Scene(
        Numbers shown, std::function<CGFloat(int)> heightOf = [](int) { return 22; },
        ListStyle style = ListStyle::plain, UITraitCollection traits = {})
        : numbers(std::make_shared<StateCell<Numbers>>(std::move(shown)))
        , harness({320, 480}, traits)
    {
        struct Root {
            Binding<Numbers> numbers;
            std::function<CGFloat(int)> heightOf;
            ListStyle style;
            auto dynamicProperties() { return std::tie(numbers); }
            auto body() const
            {
                return List{numbers.get(), std::identity{},
                            [heightOf = heightOf](int number) { return Row{number, heightOf(number)}; }}
                | listStyle(style);
            }
        };
        harness.show(probes::host(Root{Binding(numbers), std::move(heightOf), style}));
        harness.settle();
    }
    harness::Element list() { return harness.find(Role::list); }
    UIScrollView& view() { return static_cast<UIScrollView&>(list().view()); }
    std::size_t rowCount() { return list().findAll(Role::listItem).size(); }
    // The number and the place of each row in sight, from the top.
    std::map<int, CGFloat> seen()
    {
        harness.settle();
        harness.window().layoutNow();
        std::map<int, CGFloat> rows;
        for (auto& each : list().findAll(Role::button)) {
            if (each.isOnScreen())
                rows[std::stoi(each.label())] = each.frame().minY();
        }
        return rows;
    }
    void scroll(CGFloat way)
    {
        harness.turnWheel({100, 100}, {.delta = {0, way}, .isPrecise = true});
        harness.settle();
    }
};

// Of the same rows before and after a change, how far they moved; none when they differ among each other.
std::optional<CGFloat> wayOf(const std::map<int, CGFloat>& before, const std::map<int, CGFloat>& after)
{
    std::optional<CGFloat> way;
    for (auto& [row, y] : before) {
        auto found = after.find(row);
        if (found == after.end())
            continue;
        if (way && std::abs(*way - (found->second - y)) > 0.01)
            return std::nullopt;
        way = found->second - y;
    }
    return way;
}

TEST(List, costs_what_is_seen_of_it)
{
    Scene scene(upTo(10'000));
    EXPECT_LT(scene.rowCount(), 24u);
    EXPECT_EQ(scene.seen().begin()->first, 0);
    EXPECT_EQ(scene.list().value(), "10000");
    scene.view().scrollToEnd();
    EXPECT_EQ(scene.seen().rbegin()->first, 9'999);
    EXPECT_FALSE(scene.view().canScroll(UILayoutAxis::vertical, 1));
    EXPECT_LT(scene.rowCount(), 24u);
    auto last = scene.list().findAll(Role::listItem).back();
    EXPECT_EQ(last.range()->value, 10'000);
    EXPECT_EQ(last.range()->maximum, 10'000);
}

TEST(List, corrects_heights_without_a_jump)
{
    auto uneven = [](int number) { return 20.0 + number * 37 % 111; };
    Scene scene(upTo(2'000), uneven);
    scene.view().setContentOffset({0, 60'000}); // rows that nobody has measured
    scene.seen();
    for (CGFloat way : {90.0, 90.0, -35.0, 300.0, 300.0, -170.0}) {
        auto before = scene.seen();
        scene.scroll(way);
        EXPECT_EQ(wayOf(before, scene.seen()), way);
    }
    // The whole of it, in both directions, comes to its proper ends.
    scene.view().scrollToEnd();
    EXPECT_EQ(scene.seen().rbegin()->first, 1'999);
    scene.view().scrollToStart();
    EXPECT_EQ(scene.seen().begin()->first, 0);
    EXPECT_EQ(scene.list().findAll(Role::listItem).front().frame().minY(), 0);
}

TEST(List, keeps_what_is_seen_when_rows_change_around_it)
{
    Scene scene(upTo(300));
    scene.scroll(-5'000);
    auto before = scene.seen();
    auto first = before.begin()->first;
    scene.list().find(Role::button, std::to_string(first + 3) + " tapped 0").tap();

    auto longer = upTo(350, -50), without = upTo(200, 50);
    std::erase(without, first);
    const std::pair<const char*, Numbers> cases[] = {
        {"rows came above", longer},
        {"rows went above", upTo(200, 100)},
        {"rows went below", upTo(40, first - 20)},
        {"the first row in sight went", without},
    };
    for (auto& [name, numbers] : cases) {
        SCOPED_TRACE(name);
        scene.numbers->set(numbers);
        EXPECT_EQ(wayOf(before, scene.seen()), 0);
        EXPECT_TRUE(scene.list().tryFind(Role::button, std::to_string(first + 3) + " tapped 1"))
            << "its state";
    }
    scene.numbers->set({});
    EXPECT_EQ(scene.rowCount(), 0u);
    EXPECT_EQ(scene.view().contentSize().height, 0);
    scene.numbers->set(upTo(3));
    EXPECT_EQ(scene.seen().begin()->first, 0);
}

TEST(List, shows_new_rows_at_its_start)
{
    Scene scene(upTo(300));
    scene.numbers->set(upTo(310, -10));
    EXPECT_EQ(scene.seen().begin()->first, -10);
}

TEST(List, lets_a_row_remove_itself_when_it_is_tapped)
{
    auto numbers = std::make_shared<StateCell<Numbers>>(upTo(40));
    struct Root {
        Binding<Numbers> numbers;
        auto dynamicProperties() { return std::tie(numbers); }
        auto body() const
        {
            return List{numbers.get(), std::identity{}, [all = numbers](int number) {
                            return Button{std::to_string(number), [all, number] {
                                              auto rest = all.get();
                                              std::erase(rest, number);
                                              all.set(rest);
                                          }};
                        }};
        }
    };
    probes::Shown harness(Root{Binding(numbers)});
    auto row = [&](std::string_view name) { return harness.find(Role::button, name).frame(); };
    auto place = row("2");
    harness.tap({300, place.midY()}); // beside the text: all of the row is the button's
    harness.settle();
    EXPECT_EQ(numbers->value().size(), 39u);
    EXPECT_EQ(row("3").minY(), place.minY());
    for (int i = 0; i < 39; ++i) {
        harness.tap({300, 20});
        harness.settle();
    }
    EXPECT_TRUE(harness.findAll(Role::listItem).empty());
}

TEST(List, stands_any_size_and_any_height)
{
    constexpr auto infinity = std::numeric_limits<CGFloat>::infinity();
    const auto nan = std::numeric_limits<CGFloat>::quiet_NaN();
    for (CGFloat height : {0.0, -5.0, infinity, nan}) {
        Scene scene(upTo(100), [height](int) { return height; });
        EXPECT_LE(scene.rowCount(), 24u) << height;
        EXPECT_GT(scene.rowCount(), 9u) << height;
        for (CGSize size : {CGSize{0, 0}, CGSize{1, 4}, CGSize{320, 480}}) {
            scene.harness.window().setFrameSize(size);
            scene.harness.settle();
        }
        EXPECT_EQ(scene.view().contentSize().height, 4'400) << height;
    }
    Scene twins({7, 7, 7});
    EXPECT_EQ(twins.rowCount(), 3u);
    twins.numbers->set({7, 8, 7, 7});
    twins.seen();
    EXPECT_EQ(twins.rowCount(), 4u);
}

TEST(List, turns_rows_round_where_reading_goes_from_right_to_left)
{
    const UITraitCollection traits{.layoutDirection = UIUserInterfaceLayoutDirection::rightToLeft};
    for (auto& [direction, x] : {std::pair{traits, 304.0}, std::pair{UITraitCollection{}, 16.0}}) {
        Scene scene(upTo(2), [](int) { return 22; }, ListStyle::plain, direction);
        auto frame = scene.list().findAll(Role::button).front().frame();
        EXPECT_NEAR(x > 100 ? frame.maxX() : frame.minX(), x, 0.5);
    }
}

TEST(List, groups_rows_in_sections_and_conditions)
{
    auto isOpen = std::make_shared<StateCell<bool>>(false);
    struct Root {
        Binding<bool> isOpen;
        auto dynamicProperties() { return std::tie(isOpen); }
        auto body() const
        {
            return Form{
                when(isOpen.get(), [] { return Group{Text{"x"}, Text{"y"}}; }),
                Section{SectionTitles{"Head", "Foot"}, Text{"a"},
                        ForEach{Numbers{1, 2}, std::identity{}, [](int number) { return Row{number, 22}; }}}};
        }
    };
    probes::Shown harness(Root{Binding(isOpen)});
    harness.find(Role::button, "2 tapped 0").tap();
    harness.settle();
    EXPECT_EQ(harness.findAll(Role::listItem).size(), 3u);
    isOpen->set(true);
    harness.settle();
    EXPECT_EQ(harness.findAll(Role::listItem).size(), 5u);
    EXPECT_TRUE(harness.tryFind(Role::button, "2 tapped 1")) << "rows below keep their state";
    auto top = harness.find(Role::staticText, "Head").frame(),
         foot = harness.find(Role::staticText, "Foot").frame();
    EXPECT_LT(harness.find(Role::staticText, "y").frame().maxY(), top.minY());
    EXPECT_LT(harness.find(Role::button, "2 tapped 1").frame().maxY(), foot.minY());
}

TEST(RowHeights, find_rows_and_places_whatever_was_measured)
{
    RowHeights heights;
    heights.reset(1'000);
    std::vector<CGFloat> expected(1'000, RowHeights::firstEstimate);
    for (std::size_t step = 1; step < 400; ++step) {
        auto row = step * 7'919 % 1'000;
        expected[row] = static_cast<CGFloat>(step % 90);
        heights.set(row, expected[row]);
    }
    CGFloat place = 0;
    for (std::size_t row = 0; row < expected.size(); ++row) {
        EXPECT_NEAR(heights.offset(row), place, 1e-6);
        if (expected[row] > 0) {
            EXPECT_EQ(heights.rowAt(place + expected[row] / 2), row);
        }
        place += expected[row];
    }
    EXPECT_NEAR(heights.total(), place, 1e-6);
    EXPECT_EQ(heights.rowAt(-5), 0u);
    EXPECT_EQ(heights.rowAt(1e9), 999u);
}

} // namespace
