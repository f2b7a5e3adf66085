// SPDX-License-Identifier: MIT
#pragma once

#include "kit/data/UserDefaultsBacked.h"
#include "kit/theme/Appearance.h"
#include "platform/combine/ObservableObject.h"
#include "platform/foundation/NSUserDefaults.h"
#include "platform/graphics/UIColor.h"
#include "platform/swiftui/Color.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace zelk {

// The application's choice of a tint and of light or dark: kept in its settings, shown by all its windows, told to views
// that have this object from their environment. A change is stored, then announced by objectWillChange(), then windows
// take a new tint in a later turn of the main loop. Light and dark are for the views to ask:
//
//     root | preferredColorScheme(theme->colorScheme())
//
// Main thread, where views observe it; one thread at a time in any case.
class ThemeManager : public platform::ObservableObject {
public:
    // Gives the windows the tint that is stored. The first of the process stops it when the kit's tint is a pattern.
    explicit ThemeManager(
        std::shared_ptr<platform::NSUserDefaults> storage = platform::NSUserDefaults::standardUserDefaults());

    // The stored tint; defaultTintUIColor() where what is stored is no colour.
    platform::UIColor tintUIColor() const;
    // Nothing happens for a colour that has no hexString. What is stored, and read from now on, is that text; the windows
    // take the very colour, which may be dynamic.
    void setTintUIColor(const platform::UIColor& color);
    // Changes a copy and sets it: `theme.modifyTintUIColor([](auto& color) { ... })`.
    template <class Change>
    void modifyTintUIColor(Change change)
    {
        auto color = tintUIColor();
        change(color);
        setTintUIColor(color);
    }

    // The same tint for the declarative layer. Nothing happens for a colour that depends on where it is shown.
    platform::Color tintColor() const { return {tintUIColor()}; }
    void setTintColor(const platform::Color& color);

    // `system` where what is stored is no appearance.
    Appearance appearance() const;
    void setAppearance(Appearance appearance);
    std::optional<platform::ColorScheme> colorScheme() const { return zelk::colorScheme(appearance()); }

    // What zelk_tintColor() was when this was first asked for.
    static const platform::UIColor& defaultTintUIColor();

private:
    UserDefaultsBacked<std::string> storedTintUIColorHexString_;
    UserDefaultsBacked<std::int64_t> storedAppearance_;
    std::optional<platform::UIColor> uiColor_; // what this object stored last, as it reads
};

} // namespace zelk
