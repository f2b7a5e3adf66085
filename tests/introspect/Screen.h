// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dispatch/VirtualClock.h"
#include "platform/uikit/UIWindow.h"
#include "tests/support/harness/DeclarativeHarness.h"

#include <memory>

namespace introspect {

// A declarative view in a window of no display, on a clock that stands still.
class Screen {
public:
    using Host = std::shared_ptr<harness::AnyHostingController>;

    template <platform::View Root>
    explicit Screen(Root root)
        : Screen(std::move(root), [](const Host& alone) { return alone; })
    {
    }
    // `surround` gives the window's root controller, in which the hosting one stands.
    template <platform::View Root, class Surround>
    Screen(Root root, const Surround& surround)
        : host(harness::AnyHostingController::make(std::move(root)))
    {
        window->setRootViewController(surround(host));
        window->showOffscreen();
        settle();
    }
    // Lets everything happen that is due.
    void settle()
    {
        clock.settle();
        window->layoutNow();
    }
    template <platform::View Root>
    void show(Root root)
    {
        host->setRootView(std::move(root));
        settle();
    }

    platform::VirtualClock clock;
    Host host;
    std::shared_ptr<platform::UIWindow> window =
        std::make_shared<platform::UIWindow>(platform::CGRect::make(0, 0, 400, 300));
};

} // namespace introspect
