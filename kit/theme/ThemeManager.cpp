// SPDX-License-Identifier: MIT
#include "kit/theme/ThemeManager.h"

#include "kit/foundation/applicationIdentifierPrefix.h"
#include "kit/theme/colorFromHex.h"
#include "kit/theme/hexString.h"
#include "kit/theme/semanticColors.h"
#include "kit/theme/uiColor.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/foundation/Precondition.h"
#include "platform/uikit/UIApplication.h"
#include "platform/uikit/UIWindow.h"
#include "platform/uikit/UIWindowScene.h"

#include <vector>

namespace zelk {

namespace {

std::string keyOf(std::string_view setting)
{
    return applicationIdentifierPrefix() + ".zelkkit.themeManager." + std::string(setting);
}

const std::string& defaultTintHexString()
{
    static const std::string text = [] {
        auto printed = hexString(zelk_tintColor());
        platform::precondition(printed.has_value(),
                               "the kit's tint colour has no hexadecimal form to be stored in");
        return *printed;
    }();
    return text;
}

void applyToAllWindows(const platform::UIColor& color)
{
    platform::DispatchQueue::main()->async([color] {
        std::vector<std::shared_ptr<platform::UIWindow>> windows;
        for (const auto& scene : platform::UIApplication::shared().connectedScenes()) {
            if (auto windowScene = std::dynamic_pointer_cast<platform::UIWindowScene>(scene)) {
                for (auto& window : windowScene->windows())
                    windows.push_back(std::move(window));
            }
        }
        for (const auto& window : windows)
            window->setTintColor(color);
    });
}

} // namespace

ThemeManager::ThemeManager(std::shared_ptr<platform::NSUserDefaults> storage)
    : storedTintUIColorHexString_(defaultTintHexString(), keyOf("tintColor"), storage)
    , storedAppearance_(rawValue(Appearance::system), keyOf("appearance"), storage)
{
    applyToAllWindows(tintUIColor());
}

platform::UIColor ThemeManager::tintUIColor() const
{
    if (uiColor_)
        return *uiColor_;
    return colorFromHex(storedTintUIColorHexString_.wrappedValue()).value_or(defaultTintUIColor());
}

void ThemeManager::setTintUIColor(const platform::UIColor& color)
{
    auto text = hexString(color);
    if (!text)
        return;
    auto keptAlive = weak_from_this().lock(); // an observer may let go of it
    auto given = color;                       // or change what it was given by
    storedTintUIColorHexString_.setWrappedValue(*text);
    uiColor_ = colorFromHex(storedTintUIColorHexString_.wrappedValue());
    objectWillChange().send({});
    applyToAllWindows(given);
}

void ThemeManager::setTintColor(const platform::Color& color)
{
    if (auto plain = uiColor(color))
        setTintUIColor(*plain);
}

Appearance ThemeManager::appearance() const
{
    return appearanceFromRawValue(storedAppearance_.wrappedValue()).value_or(Appearance::system);
}

void ThemeManager::setAppearance(Appearance appearance)
{
    auto keptAlive = weak_from_this().lock();
    storedAppearance_.setWrappedValue(rawValue(appearance));
    objectWillChange().send({});
}

const platform::UIColor& ThemeManager::defaultTintUIColor()
{
    static const platform::UIColor color = zelk_tintColor();
    return color;
}

} // namespace zelk
