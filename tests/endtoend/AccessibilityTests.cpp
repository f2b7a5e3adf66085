// SPDX-License-Identifier: MIT
// The preview as assistive technology finds it: through a real accessibility bus and the bus's own client library.
#include "tests/endtoend/AccessibilityBus.h"
#include "tests/support/TemporaryDirectory.h"

namespace endtoend {
namespace {

const std::string program = ZELK_BINARY_DIR "/bin/subtitle-preview";

TEST(Accessibility, theTextViewIsFoundWithItsRoleStatesTextAndSelection)
{
    Desktop desktop;
    auto& bus = SessionBus::shared();
    ::tests::TemporaryDirectory folder;
    const std::string content = "first line\nsecond \U0001F600 line\n";
    auto file = folder.file("film.srt", content);
    Process process({program, file},
                    desktop.environment({{"DBUS_SESSION_BUS_ADDRESS", bus.address()},
                                         {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1"}}));
    auto window = desktop.findWindow("film.srt");
    ASSERT_TRUE(window);
    ASSERT_TRUE(desktop.activate(*window));

    Accessible root(atspi_get_desktop(0)), view;
    ASSERT_TRUE(eventually([&] {
        view = findRole(root.get(), ATSPI_ROLE_TEXT);
        return view != nullptr;
    })) << "no text view on the accessibility bus";

    for (auto state : {ATSPI_STATE_MULTI_LINE, ATSPI_STATE_READ_ONLY, ATSPI_STATE_FOCUSABLE,
                       ATSPI_STATE_ENABLED, ATSPI_STATE_VISIBLE})
        EXPECT_TRUE(hasState(view.get(), state)) << "state " << state;
    EXPECT_FALSE(hasState(view.get(), ATSPI_STATE_EDITABLE));
    EXPECT_TRUE(eventually([&] { return hasState(view.get(), ATSPI_STATE_FOCUSED); }));

    Reference<AtspiText> text(atspi_accessible_get_text_iface(view.get()));
    ASSERT_TRUE(text);
    EXPECT_EQ(take(atspi_text_get_text(text.get(), 0, atspi_text_get_character_count(text.get(), nullptr),
                                       nullptr)),
              content);
    // The bridge answers the older question, by boundary, not the newer one by granularity.
    G_GNUC_BEGIN_IGNORE_DEPRECATIONS
    auto* line = atspi_text_get_text_at_offset(text.get(), 3, ATSPI_TEXT_BOUNDARY_LINE_START, nullptr);
    G_GNUC_END_IGNORE_DEPRECATIONS
    ASSERT_NE(line, nullptr);
    EXPECT_EQ(std::string(line->content), "first line\n");
    g_free(line->content);
    g_free(line);

    desktop.key("ctrl+a");
    EXPECT_TRUE(eventually([&] {
        atspi_accessible_clear_cache(view.get());
        if (atspi_text_get_n_selections(text.get(), nullptr) != 1)
            return false;
        auto* range = atspi_text_get_selection(text.get(), 0, nullptr);
        bool whole = range && range->start_offset == 0 && range->end_offset == 26 /* UTF-16 units */;
        g_free(range);
        return whole;
    })) << "selecting all is not told to the bus";
}

TEST(Accessibility, theBarsControlsAreNamedAndPressedByReaders)
{
    Desktop desktop;
    auto& bus = SessionBus::shared();
    ::tests::TemporaryDirectory folder;
    auto file = folder.file("film.srt", "a word\nanother word\n");
    Process process({program, file},
                    desktop.environment({{"DBUS_SESSION_BUS_ADDRESS", bus.address()},
                                         {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1"},
                                         {"LANGUAGE", "en"}}));
    auto window = desktop.findWindow("film.srt");
    ASSERT_TRUE(window);
    ASSERT_TRUE(desktop.activate(*window));

    Accessible root(atspi_get_desktop(0)), found;
    auto comes = [&](AtspiRole role, const char* name) {
        return eventually([&] { return (found = findRole(root.get(), role, name)) != nullptr; });
    };
    auto isGone = [&](AtspiRole role, const char* name) {
        return eventually([&] { return !findRole(root.get(), role, name); });
    };
    auto press = [&](const char* name) {
        if (!comes(ATSPI_ROLE_PUSH_BUTTON, name))
            return false;
        Reference<AtspiAction> action(atspi_accessible_get_action_iface(found.get()));
        return action && atspi_action_do_action(action.get(), 0, nullptr);
    };

    EXPECT_TRUE(comes(ATSPI_ROLE_HEADING, "film.srt"));
    EXPECT_TRUE(comes(ATSPI_ROLE_PUSH_BUTTON, "Encoding: UTF-8"));
    EXPECT_FALSE(findRole(root.get(), ATSPI_ROLE_PUSH_BUTTON, "Next match")) << "nothing is searched for";
    ASSERT_TRUE(press("More"));
    EXPECT_TRUE(comes(ATSPI_ROLE_LIST_ITEM, "Wrap lines"));
    EXPECT_FALSE(findRole(root.get(), ATSPI_ROLE_PUSH_BUTTON, "More")) << "what is behind is not read";
    desktop.key("Escape");
    EXPECT_TRUE(isGone(ATSPI_ROLE_LIST_ITEM, "Wrap lines"));

    ASSERT_TRUE(press("Find"));
    ASSERT_TRUE(comes(ATSPI_ROLE_TEXT, "Find"));
    EXPECT_TRUE(hasState(found.get(), ATSPI_STATE_EDITABLE));
    EXPECT_TRUE(eventually([&] { return hasState(found.get(), ATSPI_STATE_FOCUSED); }));
    desktop.type("word");
    EXPECT_TRUE(comes(ATSPI_ROLE_LABEL, "1 of 2"));
    EXPECT_TRUE(press("Next match"));
    EXPECT_TRUE(comes(ATSPI_ROLE_LABEL, "2 of 2"));
    EXPECT_TRUE(press("Previous match"));
    EXPECT_TRUE(comes(ATSPI_ROLE_LABEL, "1 of 2"));
    EXPECT_TRUE(press("Close search"));
    EXPECT_TRUE(isGone(ATSPI_ROLE_TEXT, "Find"));
}

} // namespace
} // namespace endtoend
