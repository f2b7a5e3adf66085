// SPDX-License-Identifier: MIT
#include "platform/uikit/UIApplication.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/graphics/CurrentAppearance.h"
#include "platform/graphics/GraphicsRuntime_p.h"
#include "platform/uikit/DesktopURLOpener.h"
#include "platform/uikit/RunLoopPump_p.h"
#include "platform/uikit/SettingsPortal_p.h"
#include "platform/uikit/UIScene.h"
#include "platform/uikit/UIWindow.h"

#include <QtCore/QLocale>
#include <QtGui/QGuiApplication>

#include <algorithm>
#include <optional>

namespace platform {

namespace {

using namespace std::chrono_literals;

// What the first frame can wait for the desktop's settings. Those that come later repaint it.
constexpr Duration settingsPatience = 4ms;

} // namespace

struct UIApplication::State {
    std::optional<RunLoopPump> pump;
    std::optional<SettingsPortal> settings;
    std::optional<int> exitStatus; // asked for before the loop ran
    bool hasWaitedForSettings = false;
    bool isRunning = false;
};

UIApplication& UIApplication::shared()
{
    // Never destroyed: windows that live as long as the process refer to it.
    static auto& application = *new UIApplication;
    return application;
}

UIApplication::UIApplication()
    : state_(std::make_unique<State>())
{
}

UIApplication::~UIApplication() = default;

void UIApplication::setIdentifier(const std::string& identifier)
{
    assertOnMainThread();
    QGuiApplication::setDesktopFileName(QString::fromStdString(identifier));
}

void UIApplication::start()
{
    assertOnMainThread();
    if (state_->pump)
        return;
    // The library looks for the accessibility bus, and would have a session bus started for that where there is none:
    // 5 ms, and a daemon that stays. Before any thread exists that reads the environment.
    if (!SettingsPortal::busIsThere())
        qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
    startGraphics(DisplayMode::window);
    QGuiApplication::setQuitOnLastWindowClosed(false); // `remove` sees to it
    state_->pump.emplace();

    UITraitCollection defaults;
    if (QLocale().textDirection() == Qt::RightToLeft)
        defaults.layoutDirection = UIUserInterfaceLayoutDirection::rightToLeft;
    state_->settings.emplace(defaults, [this] {
        setProcessAppearance(state_->settings->traits().colorAppearance());
        for (const auto& weak : std::vector(windows_)) {
            if (auto window = weak.lock())
                window->surroundingsDidChange();
        }
    });
}

int UIApplication::run()
{
    assertOnMainThread();
    start();
    if (state_->exitStatus)
        return *std::exchange(state_->exitStatus, std::nullopt);
    state_->isRunning = true;
    auto status = QGuiApplication::exec();
    state_->isRunning = false;
    return status;
}

void UIApplication::terminate(int exitStatus)
{
    assertOnMainThread();
    if (state_->isRunning)
        QGuiApplication::exit(exitStatus);
    else
        state_->exitStatus = exitStatus;
}

const UITraitCollection& UIApplication::desktopTraits()
{
    start();
    if (!std::exchange(state_->hasWaitedForSettings, true)) {
        state_->settings->waitForAnswers(settingsPatience);
        setProcessAppearance(state_->settings->traits().colorAppearance());
    }
    return state_->settings->traits();
}

namespace {

// The desktop's opener is made when it is first asked: most programs never do.
URLOpener& openerIn(std::shared_ptr<URLOpener>& slot)
{
    if (!slot)
        slot = std::make_shared<DesktopURLOpener>();
    return *slot;
}

} // namespace

bool UIApplication::canOpenURL(const URL& url) const
{
    assertOnMainThread();
    return urlOpener_ ? urlOpener_->canOpen(url) : DesktopURLOpener().canOpen(url);
}

void UIApplication::open(const URL& url, std::function<void(bool)> completion)
{
    assertOnMainThread();
    openerIn(urlOpener_).open(url, std::move(completion));
}

void UIApplication::setURLOpener(std::shared_ptr<URLOpener> opener)
{
    assertOnMainThread();
    urlOpener_ = std::move(opener);
}

void UIApplication::add(UIWindow& window)
{
    windows_.push_back(std::static_pointer_cast<UIWindow>(window.weak_from_this().lock()));
}

void UIApplication::remove(UIWindow& window)
{
    auto before = windows_.size();
    // A window that is being destroyed is found by having expired.
    std::erase_if(windows_, [&](const auto& weak) {
        auto other = weak.lock();
        return !other || other.get() == &window;
    });
    if (windows_.empty() && before > 0 && state_->isRunning)
        terminate();
}

} // namespace platform
