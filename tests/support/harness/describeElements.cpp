// SPDX-License-Identifier: MIT
#include "tests/support/harness/Element.h"
#include "tests/support/harness/accessibilityTree.h"

namespace harness {

using namespace platform;

std::string_view roleName(AccessibilityRole role)
{
    using enum AccessibilityRole;
    static constexpr std::array<std::pair<AccessibilityRole, std::string_view>, 26> names{{
        {none, "none"},
        {group, "group"},
        {staticText, "staticText"},
        {textView, "textView"},
        {textField, "textField"},
        {button, "button"},
        {image, "image"},
        {header, "header"},
        {slider, "slider"},
        {toggle, "toggle"},
        {progress, "progress"},
        {list, "list"},
        {listItem, "listItem"},
        {link, "link"},
        {dialog, "dialog"},
        {alert, "alert"},
        {window, "window"},
        {scrollArea, "scrollArea"},
        {spinButton, "spinButton"},
        {radioButton, "radioButton"},
        {menuButton, "menuButton"},
        {menu, "menu"},
        {menuItem, "menuItem"},
        {tab, "tab"},
        {tabList, "tabList"},
        {separator, "separator"},
    }};
    for (const auto& [each, name] : names) {
        if (each == role)
            return name;
    }
    return "?";
}

std::string describeElements(const UIView& root)
{
    std::string text;
    forEachElement(root, [&](const std::shared_ptr<UIView>& view, int depth) {
        const auto properties = view->accessibilityNow();
        text.append(static_cast<std::size_t>(depth) * 2, ' ').append(roleName(properties.role));
        if (!properties.label.empty())
            text.append(" \"").append(properties.label).append("\"");
        if (!properties.value.empty())
            text.append(" = ").append(properties.value);
        for (auto [isSo, word] :
             {std::pair{!properties.isEnabled, " (disabled)"},
              std::pair{properties.isSelected, " (selected)"}, std::pair{properties.isModal, " (modal)"},
              std::pair{properties.isBusy, " (busy)"}}) {
            if (isSo)
                text.append(word);
        }
        text.append("\n");
        return true;
    });
    return text;
}

} // namespace harness
