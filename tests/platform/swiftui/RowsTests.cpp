// SPDX-License-Identifier: MIT
#include "platform/uikit/UILabel.h"
#include "tests/platform/swiftui/probes.h"

#include <gtest/gtest.h>

#include <ranges>

// What a change costs among many rows: what changed, not what exists.
namespace {

using namespace platform;
using namespace probes;
using harness::ViewHarness;

constexpr int rowCount = 1000;
constexpr int changed = 400;

using Handles = std::shared_ptr<std::vector<std::optional<Binding<int>>>>;

// A row with a state of its own.
struct StatefulRow {
    int index;
    Handles handles;
    State<int> count = 10;

    auto dynamicProperties() { return std::tie(count); }
    auto body() const
    {
        (*handles)[static_cast<std::size_t>(index)] = count.binding();
        return HStack{Text{"Row " + std::to_string(index) + ": " + std::to_string(*count)}, Spacer{}};
    }
    bool operator==(const StatefulRow&) const = default;
};

auto statefulRows(const Handles& handles)
{
    return VStack{{.spacing = 0},
                  ForEach{std::views::iota(0, rowCount), std::identity{},
                          [handles](int index) { return StatefulRow{index, handles}; }}};
}

std::vector<UILabel*> labels(UIView& view)
{
    std::vector<UILabel*> result;
    for (auto& subview : view.subviews()) {
        if (auto* label = dynamic_cast<UILabel*>(subview.get()))
            result.push_back(label);
    }
    return result;
}

TEST(Rows, one_that_changes_is_all_that_is_worked_on)
{
    auto handles = std::make_shared<Handles::element_type>(rowCount);
    auto controller = host(statefulRows(handles));
    ViewHarness harness({320, 30'000}); // all of them on screen
    harness.show(controller);
    harness.paintFrame();
    auto rows = labels(*controller->view());
    ASSERT_EQ(rows.size(), std::size_t{rowCount});
    auto before = controller->statistics();
    EXPECT_EQ(before.bodies, rowCount);

    (*handles)[changed]->set(11); // as wide as it was
    auto painted = harness.paintFrame();
    auto& after = controller->statistics();
    EXPECT_EQ(rows[changed]->text(), "Row 400: 11");
    EXPECT_EQ(after.bodies - before.bodies, 1);
    EXPECT_EQ(after.updates - before.updates, 1);
    EXPECT_EQ(after.mounted, before.mounted);
    EXPECT_EQ(after.unmounted, before.unmounted);
    // The text, and at most its row.
    EXPECT_GE(after.placements - before.placements, 1);
    EXPECT_LE(after.placements - before.placements, 2);
    EXPECT_LE(after.measurements - before.measurements, 12);
    ASSERT_FALSE(painted.empty());
    for (auto& rect : painted)
        EXPECT_TRUE(rows[changed]->frame().insetBy(-1, -1).contains(rect)) << "another row was painted";
}

TEST(Rows, one_that_becomes_wider_moves_no_other)
{
    auto handles = std::make_shared<Handles::element_type>(rowCount);
    Shown harness({320, 30'000}, statefulRows(handles));
    harness.paintFrame();
    auto before = harness.controller->statistics();
    (*handles)[changed]->set(1'000'000);
    auto painted = harness.paintFrame();
    auto& after = harness.controller->statistics();
    EXPECT_EQ(after.bodies - before.bodies, 1);
    EXPECT_LE(after.placements - before.placements, 3); // text, space, row
    EXPECT_LE(after.measurements - before.measurements, 24);
    auto row = labels(*harness.controller->view())[changed]->frame();
    for (auto& rect : painted)
        EXPECT_TRUE(row.insetBy(-1, -1).contains(rect)) << "another row was painted";
}

TEST(Rows, that_are_told_the_same_are_left_alone)
{
    auto handles = std::make_shared<Handles::element_type>(rowCount);
    Shown harness({320, 30'000}, statefulRows(handles));
    harness.paintFrame();
    auto before = harness.controller->statistics();
    harness.controller->setRootView(statefulRows(handles));
    EXPECT_TRUE(harness.paintFrame().empty());
    auto& after = harness.controller->statistics();
    EXPECT_EQ(after.bodies, before.bodies);
    EXPECT_EQ(after.measurements, before.measurements);
    EXPECT_EQ(after.placements, before.placements);
}

struct Item {
    int id;
    std::string title;
    bool operator==(const Item&) const = default;
};

struct ItemRow {
    Item item;
    auto body() const { return HStack{Text{item.title}, Spacer{}}; }
    bool operator==(const ItemRow&) const = default;
};

TEST(Rows, of_data_of_which_one_element_changes_evaluate_one_body)
{
    std::vector<Item> items;
    for (int index = 0; index < rowCount; ++index)
        items.push_back({index, "Row " + std::to_string(index) + ": 10"});
    auto handle = makeHandle<std::vector<Item>>();
    Shown harness({320, 30'000}, stateful(handle, items, [](const std::vector<Item>& data) {
                      return VStack{{.spacing = 0},
                                    ForEach{data, [](const Item& item) { return ItemRow{item}; }}};
                  }));
    harness.paintFrame();
    auto before = harness.controller->statistics();
    EXPECT_EQ(before.bodies, rowCount + 1);

    items[changed].title = "Row 400: 11";
    (*handle)->set(items);
    auto painted = harness.paintFrame();
    auto& after = harness.controller->statistics();
    EXPECT_EQ(after.bodies - before.bodies, 2) << "that of the list and that of the row";
    EXPECT_EQ(after.updates - before.updates, 1);
    EXPECT_LE(after.placements - before.placements, 2);
    auto row = labels(*harness.controller->view())[changed]->frame();
    ASSERT_FALSE(painted.empty());
    for (auto& rect : painted)
        EXPECT_TRUE(row.insetBy(-1, -1).contains(rect)) << "another row was painted";
}

} // namespace
