// SPDX-License-Identifier: MIT
#include "platform/uikit/UIAlertController.h"
#include "tests/platform/swiftui/probes.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using namespace std::chrono_literals;

struct Note {
    std::string id;
    std::string text = {};
    bool operator==(const Note&) const = default;
};
using NoteCell = std::shared_ptr<StateCell<std::optional<Note>>>;

NoteCell cell(std::optional<Note> note = {})
{
    return probes::cell(std::move(note));
}

std::function<void()> onOK; // what the button of the notes' alerts does

auto showNote(const NoteCell& cell)
{
    return alert(Binding(cell), [](const Note& note) {
        return Alert(Text{note.id}, Text{note.text}, Alert::Button::default_(Text{"OK"}, [] {
                         if (onOK)
                             onOK();
                     }));
    });
}

// A host in a window, and what it presents.
struct Scene : probes::Scene {
    template <View Root>
    explicit Scene(Root root)
        : probes::Scene(std::move(root))
    {
        onOK = nullptr;
    }
    ~Scene() { onOK = nullptr; }
    std::shared_ptr<UIAlertController> shown()
    {
        return std::dynamic_pointer_cast<UIAlertController>(host->presentedViewController());
    }
    std::string title() { return shown() ? shown()->title() : ""; }
};

TEST(Alert, is_shown_while_the_binding_holds_an_item)
{
    auto note = cell(Note{"first"});
    Scene scene(Color{} | showNote(note));
    EXPECT_EQ(scene.title(), "first") << "an item that is there from the start";
    auto first = scene.shown();

    note->set(Note{"first", "told otherwise"});
    scene.settle();
    EXPECT_EQ(scene.shown(), first) << "the same identity leaves it as it is";
    note->set(Note{"second"});
    scene.settle();
    EXPECT_EQ(scene.title(), "second");
    EXPECT_TRUE(note->value()) << "replacing clears nothing";
    note->set(std::nullopt);
    scene.settle();
    EXPECT_EQ(scene.title(), "");

    // Of changes within one turn, and while it goes, the last one counts.
    note->set(Note{"third"});
    note->set(std::nullopt);
    note->set(Note{"fourth"});
    scene.settle();
    EXPECT_EQ(scene.title(), "fourth");
    note->set(std::nullopt);
    scene.harness.settle();
    scene.harness.advance(50ms);
    note->set(Note{"fourth"});
    scene.settle();
    EXPECT_EQ(scene.title(), "fourth");
    EXPECT_TRUE(note->value());
}

TEST(Alert, clears_the_binding_before_the_action_of_its_button)
{
    auto note = cell(Note{"first"});
    Scene scene(Color{} | showNote(note));
    std::string told;
    onOK = [&] {
        told += note->value() ? "still there" : "cleared";
        note->set(Note{"first", "again"}); // a retry that fails again
    };
    scene.press(UIKeyCode::returnKey);
    EXPECT_EQ(told, "cleared");
    EXPECT_EQ(scene.shown()->message(), "again");

    onOK = nullptr;
    scene.shown()->dismiss(Animated::no); // by somebody else
    scene.settle();
    EXPECT_EQ(scene.title(), "");
    EXPECT_FALSE(note->value());
}

TEST(Alert, waits_for_its_turn)
{
    auto a = cell(), b = cell(), c = cell();
    Scene scene(ZStack{Color{} | showNote(a), Color{} | showNote(b), Color{} | showNote(c)});
    auto other = std::make_shared<UIViewController>();
    scene.host->present(other, Animated::no);
    a->set(Note{"a"});
    b->set(Note{"b"});
    c->set(Note{"c"});
    scene.settle();
    EXPECT_EQ(scene.host->presentedViewController(), other);
    other->dismiss(Animated::yes);
    scene.settle();
    EXPECT_EQ(scene.title(), "a");
    b->set(std::nullopt); // gives up waiting
    scene.settle();
    scene.press(UIKeyCode::escape);
    EXPECT_EQ(scene.title(), "c");
    scene.press(UIKeyCode::escape);
    EXPECT_EQ(scene.title(), "");
    EXPECT_FALSE(a->value() || c->value());
}

TEST(Alert, counts_once_for_each_view)
{
    {
        auto inner = cell(Note{"inner"}), outer = cell();
        Scene same(Color{} | showNote(inner) | showNote(outer));
        EXPECT_EQ(same.title(), "") << "the last modifier replaces the one before it";
        outer->set(Note{"outer"});
        same.settle();
        EXPECT_EQ(same.title(), "outer");
    }

    auto first = cell(Note{"first"}), second = cell();
    Scene apart(Color{} | background(Color{} | showNote(first)) | background(Color{} | showNote(second)));
    EXPECT_EQ(apart.title(), "first");
    second->set(Note{"second"});
    apart.press(UIKeyCode::escape);
    EXPECT_EQ(apart.title(), "second");
}

struct Guarded {
    std::shared_ptr<StateCell<bool>> isThere;
    NoteCell note;
    Binding<bool> there{isThere};
    auto dynamicProperties() { return std::tie(there); }
    auto body() const
    {
        return when(there.get(), [this] { return Color{} | showNote(note); });
    }
};

TEST(Alert, goes_with_its_view)
{
    {
        auto isThere = std::make_shared<StateCell<bool>>(true);
        auto note = cell(Note{"note"});
        Scene scene(Guarded{isThere, note});
        EXPECT_EQ(scene.title(), "note");
        isThere->set(false);
        scene.settle();
        EXPECT_EQ(scene.title(), "");
        isThere->set(true);
        scene.settle();
        EXPECT_EQ(scene.title(), note->value() ? "note" : "");
    }

    // With the window, in the middle of coming and of going.
    for (auto time : {0ms, 100ms}) {
        auto other = cell(Note{"other"});
        Scene closing(Color{} | showNote(other));
        other->set(std::nullopt);
        closing.harness.settle();
        closing.harness.advance(time);
        closing.harness.window().close();
        closing.harness.dropWindow();
        closing.host.reset();
        closing.harness.advance(1s);
    }
}

TEST(Alert, has_the_buttons_that_it_is_given)
{
    using Button = Alert::Button;
    struct Case {
        const char* name;
        Alert alert;
        std::string buttons;
    };
    const Case cases[] = {
        {"none: the system's", Alert(Text{"T"}), "OK"},
        {"one", Alert(Text{"T"}, Text{"M"}, Button::destructive(Text{"Delete"})), "Delete!"},
        {"the standard one that cancels",
         Alert(Text{"T"}, {}, Button::default_(Text{"Go"}), Button::cancel()), "Go Cancel-"},
        {"two that cancel", Alert(Text{"T"}, {}, Button::cancel(Text{"No"}), Button::cancel(Text{"Never"})),
         "No- Never"},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.name);
        auto isPresented = std::make_shared<StateCell<bool>>(true);
        Scene scene(Color{} | alert(Binding(isPresented), [&] { return test.alert; }));
        ASSERT_TRUE(scene.shown());
        EXPECT_EQ(scene.shown()->message(), test.alert.message);
        std::string buttons;
        for (const auto& action : scene.shown()->actions()) {
            buttons += (buttons.empty() ? "" : " ") + action->title();
            buttons += action->style() == UIAlertActionStyle::cancel ? "-"
                : action->style() == UIAlertActionStyle::destructive ? "!"
                                                                     : "";
        }
        EXPECT_EQ(buttons, test.buttons);
        scene.shown()->choose(scene.shown()->actions().front());
        scene.settle();
        EXPECT_FALSE(isPresented->value());
    }
}

} // namespace
