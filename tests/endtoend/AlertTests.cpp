// SPDX-License-Identifier: MIT
// Alerts over a real window: called up and answered by a real mouse, real keys and a reader, and read by the latter.
#include "tests/endtoend/AccessibilityBus.h"

namespace endtoend {
namespace {

class AlertWindow {
public:
    AlertWindow()
        : process_({ZELK_BINARY_DIR "/bin/error-alerts"},
                   desktop.environment({{"DBUS_SESSION_BUS_ADDRESS", SessionBus::shared().address()},
                                        {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1"},
                                        {"LC_ALL", "C.UTF-8"},
                                        {"LANGUAGE", ""}}))
        , root_(atspi_get_desktop(0))
    {
        auto window = desktop.findWindow("Errors and their alerts");
        EXPECT_TRUE(window && desktop.activate(*window));
    }

    Accessible now(AtspiRole role, const char* name) { return findRole(root_.get(), role, name); }
    Accessible find(AtspiRole role, const char* name)
    {
        Accessible found;
        EXPECT_TRUE(eventually([&] { return (found = now(role, name)) != nullptr; })) << name;
        return found;
    }
    bool isGone(AtspiRole role, const char* name)
    {
        return eventually([&] { return !now(role, name); });
    }
    void click(const char* button)
    {
        auto found = find(ATSPI_ROLE_PUSH_BUTTON, button);
        Reference<AtspiComponent> component(found ? atspi_accessible_get_component_iface(found.get())
                                                  : nullptr);
        ASSERT_TRUE(component) << button;
        auto* place = atspi_component_get_extents(component.get(), ATSPI_COORD_TYPE_SCREEN, nullptr);
        desktop.click(place->x + place->width / 2, place->y + place->height / 2);
        g_free(place);
    }

    Desktop desktop;

private:
    Process process_;
    Accessible root_;
};

TEST(Alerts, areReadAndAnsweredByMouseKeysAndReaders)
{
    AlertWindow window;
    window.click("Offline");
    auto alert = window.find(ATSPI_ROLE_ALERT, "An Error Occurred");
    ASSERT_TRUE(alert);
    EXPECT_NE(take(atspi_accessible_get_description(alert.get(), nullptr)).find("internet"),
              std::string::npos);
    EXPECT_TRUE(hasState(alert.get(), ATSPI_STATE_MODAL));
    EXPECT_FALSE(window.now(ATSPI_ROLE_PUSH_BUTTON, "Disk full")) << "what is behind is not read";
    auto dismiss = window.find(ATSPI_ROLE_PUSH_BUTTON, "Dismiss");
    EXPECT_TRUE(eventually([&] { return hasState(dismiss.get(), ATSPI_STATE_FOCUSED); }));
    window.desktop.key("Return");
    EXPECT_TRUE(window.isGone(ATSPI_ROLE_ALERT, nullptr));

    window.click("Photo access refused");
    window.find(ATSPI_ROLE_ALERT, "No Access to Photos");
    window.find(ATSPI_ROLE_PUSH_BUTTON, "Open Settings");
    window.click("Cancel");
    EXPECT_TRUE(window.isGone(ATSPI_ROLE_ALERT, nullptr));

    // Another kind of alert on the same view, called up by a reader; the keyboard begins at the harmless button.
    auto question = window.find(ATSPI_ROLE_PUSH_BUTTON, "Delete project…");
    Reference<AtspiAction> action(atspi_accessible_get_action_iface(question.get()));
    ASSERT_TRUE(action);
    EXPECT_TRUE(atspi_action_do_action(action.get(), 0, nullptr));
    auto cancel = window.find(ATSPI_ROLE_PUSH_BUTTON, "Cancel");
    ASSERT_TRUE(cancel);
    EXPECT_TRUE(eventually([&] { return hasState(cancel.get(), ATSPI_STATE_FOCUSED); }));
    window.desktop.key("Tab");
    window.desktop.key("space");
    window.find(ATSPI_ROLE_LABEL, "Deleted.");
    EXPECT_TRUE(window.isGone(ATSPI_ROLE_ALERT, nullptr));
}

} // namespace
} // namespace endtoend
