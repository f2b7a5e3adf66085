// SPDX-License-Identifier: MIT
#include "tests/platform/swiftui/probes.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using namespace probes;
using harness::ViewHarness;

struct Counter {
    std::string title;
    Handle<int> handle;
    State<int> count = 1;

    auto dynamicProperties() { return std::tie(count); }
    auto body() const
    {
        *handle = count.binding();
        return Leaf(title + std::to_string(*count));
    }
};

TEST(State, keeps_its_value_when_the_record_is_replaced)
{
    auto handle = makeHandle<int>();
    Shown harness(Counter{"a", handle});
    (*handle)->set(7);
    harness.update(Counter{"b", handle, 3});
    EXPECT_EQ(harness.names(), Log{"b7"});
}

TEST(State, has_its_initial_value_and_forgets_what_is_set_before_it_is_mounted)
{
    State<int> state = 4;
    state.set(5);
    EXPECT_EQ(state.get(), 4);
    EXPECT_EQ(state.binding().get(), 4);
}

TEST(State, that_is_set_to_what_it_is_updates_nothing)
{
    auto handle = makeHandle<int>();
    Shown harness(Counter{"a", handle});
    auto before = harness.controller->statistics().updates;
    harness.set(handle, 1);
    EXPECT_EQ(harness.controller->statistics().updates, before);
}

TEST(State, of_a_place_that_comes_back_begins_anew)
{
    auto handle = makeHandle<int>();
    auto shown = makeHandle<bool>();
    Shown harness(stateful(shown, true, [handle](bool isShown) {
        return when(isShown, [&] { return Counter{"a", handle}; }, [] { return Leaf("none"); });
    }));
    harness.set(handle, 7);
    harness.set(shown, false);
    EXPECT_EQ(harness.names(), Log{"none"});
    harness.set(shown, true);
    EXPECT_EQ(harness.names(), Log{"a1"});
}

TEST(State, that_outlives_its_view_may_still_be_set)
{
    auto handle = makeHandle<int>();
    {
        Shown harness(Counter{"a", handle});
    }
    (*handle)->set(9);
    EXPECT_EQ((*handle)->get(), 9);
}

// --- Bindings and order ------------------------------------------------------------------------------

struct Reader {
    Binding<int> value;
    std::shared_ptr<Log> log;
    auto dynamicProperties() { return std::tie(value); }
    bool operator==(const Reader&) const = default;
    auto body() const
    {
        log->push_back("reader");
        return Leaf("reader" + std::to_string(value.get()));
    }
};
struct Bystander {
    std::shared_ptr<Log> log;
    bool operator==(const Bystander&) const = default;
    auto body() const
    {
        log->push_back("bystander");
        return Leaf("bystander");
    }
};
struct Owner {
    Handle<int> handle;
    std::shared_ptr<Log> log;
    State<int> value = 0;
    auto dynamicProperties() { return std::tie(value); }
    auto body() const
    {
        *handle = value.binding();
        log->push_back("owner");
        return Reader{value.binding(), log} | overlay(Bystander{log});
    }
};

TEST(Binding, updates_who_holds_it_once_after_its_parent_and_nobody_else)
{
    auto handle = makeHandle<int>();
    auto log = std::make_shared<Log>();
    Shown harness(Owner{handle, log});
    log->clear();
    (*handle)->set(1);
    (*handle)->set(2);
    EXPECT_EQ(*log, Log{}) << "nothing is described before the turn of the run loop ends";
    harness.settle();
    EXPECT_EQ(*log, (Log{"owner", "reader"}));
    EXPECT_EQ(harness.names(), (Log{"reader2", "bystander"}));
}

// --- Environment -------------------------------------------------------------------------------------

struct PaperKey : environment_keys::Key<int, 10> { };

struct PaperReader {
    std::string name;
    std::shared_ptr<Log> log;
    Environment<PaperKey> paper{};
    auto dynamicProperties() { return std::tie(paper); }
    bool operator==(const PaperReader&) const = default;
    auto body() const
    {
        log->push_back(name + std::to_string(paper.get()));
        return Leaf(name);
    }
};

TEST(EnvironmentValue, that_changes_refreshes_exactly_its_readers)
{
    auto handle = makeHandle<int>();
    auto log = std::make_shared<Log>();
    Shown harness(stateful(handle, 1, [log](int value) {
        return PaperReader{"outer", log}
        | overlay(PaperReader{"inner", log} | overlay(Bystander{log})
                  | platform::environment<PaperKey>(value))
            | overlay(PaperReader{"fixed", log} | platform::environment<PaperKey>(5));
    }));
    EXPECT_EQ(*log, (Log{"outer10", "inner1", "bystander", "fixed5"}));
    log->clear();
    harness.set(handle, 2);
    EXPECT_EQ(*log, Log{"inner2"});
}

// --- At the wrong moment -----------------------------------------------------------------------------

struct SetsWhileDescribing {
    Handle<int> handle;
    State<int> value = 0;
    auto dynamicProperties() { return std::tie(value); }
    auto body() const
    {
        *handle = value.binding();
        if (*value == 1)
            value.set(2);
        return Leaf(std::to_string(*value));
    }
};

TEST(State, that_is_changed_in_a_body_is_complained_of_and_shown_next)
{
    auto handle = makeHandle<int>();
    Shown harness(SetsWhileDescribing{handle});
    (*handle)->set(1);
    testing::internal::CaptureStderr();
    harness.settle();
    EXPECT_NE(testing::internal::GetCapturedStderr().find("while a body was evaluated"), std::string::npos);
    EXPECT_EQ(harness.names(), Log{"2"});
}

// Counts its measurements in a state: each layout asks for another update, three times.
struct SetsWhileMeasured : UIViewRepresentable<SetsWhileMeasured> {
    Binding<int> count;
    explicit SetsWhileMeasured(Binding<int> countOfLayouts)
        : count(std::move(countOfLayouts))
    {
    }
    auto dynamicProperties() { return std::tie(count); }
    std::shared_ptr<UIView> makeUIView(const auto&) const { return std::make_shared<UIView>(); }
    void updateUIView(UIView& view, const auto&) const
    {
        view.accessibility().identifier = std::to_string(count.get());
    }
    std::optional<CGSize> sizeThatFits(const ProposedSize&, UIView&) const
    {
        if (count.get() < 3)
            count.set(count.get() + 1);
        return CGSize{10.0 * count.get(), 10};
    }
};

TEST(State, that_is_changed_during_layout_is_shown_in_the_end)
{
    auto handle = makeHandle<int>();
    Shown harness(stateful(handle, 0, [handle](int) { return SetsWhileMeasured(**handle); }));
    EXPECT_EQ(harness.names(), Log{"3"});
    EXPECT_EQ(harness.controller->view()->subviews().front()->frame().size.width, 30);
}

TEST(ViewHost, lets_go_of_a_view_that_is_removed_while_it_is_dirty)
{
    auto inner = makeHandle<int>();
    auto shown = makeHandle<bool>();
    auto log = std::make_shared<Log>();
    Shown harness(stateful(shown, true, [=](bool isShown) {
        return when(isShown, [&] { return Owner{inner, log}; }, [] { return Leaf("none"); });
    }));
    log->clear();
    (*inner)->set(1);
    harness.set(shown, false);
    EXPECT_EQ(*log, Log{});
    EXPECT_EQ(harness.names(), Log{"none"});
    auto& statistics = harness.controller->statistics();
    EXPECT_EQ(statistics.mounted - statistics.unmounted, 4) << "two roots, the choice and the leaf";
}

TEST(ViewHost, may_go_while_it_is_dirty)
{
    auto handle = makeHandle<int>();
    std::weak_ptr<UIView> view;
    ViewHarness harness;
    {
        auto controller = host(Counter{"a", handle});
        harness.show(controller);
        view = controller->view();
        (*handle)->set(2);
        harness.window().setRootViewController(std::make_shared<UIViewController>());
    }
    harness.settle();
    EXPECT_TRUE(view.expired());
}

TEST(ViewHost, may_go_while_its_view_stays)
{
    auto handle = makeHandle<int>();
    std::shared_ptr<UIView> view;
    ViewHarness harness;
    {
        auto controller = host(Counter{"a", handle});
        view = controller->view();
    }
    harness.show(view);
    (*handle)->set(2);
    harness.window().setFrameSize({50, 50});
    harness.settle();
    EXPECT_EQ(view->bounds().size, (CGSize{50, 50}));
}

} // namespace
