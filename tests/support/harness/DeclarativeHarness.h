// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/AnyView.h"
#include "platform/swiftui/UIHostingController.h"
#include "tests/support/harness/ViewHarness.h"

#include <functional>
#include <map>
#include <memory>

namespace harness {

// Hosts a view of any type: tests show hundreds of types, and each hosting controller would be compiled anew.
class AnyHostingController : public platform::UIHostingController<platform::AnyView> {
public:
    template <platform::View Root>
    static std::shared_ptr<AnyHostingController> make(Root root)
    {
        return std::make_shared<AnyHostingController>(platform::AnyView(std::move(root)));
    }
    using UIHostingController::UIHostingController;

    template <platform::View Root>
    void setRootView(Root root)
    {
        UIHostingController::setRootView(platform::AnyView(std::move(root)));
    }
};

// A harness that shows declarative views and counts the work that they cause. Who uses it links the declarative layer.
//
//     DeclarativeHarness harness({320, 200});
//     harness.show(Counter{});
//     auto work = harness.workDuring([&] { harness.find(AccessibilityRole::button, "Add").tap(); });
//     EXPECT_EQ(work.bodies, 1);
class DeclarativeHarness : public ViewHarness {
public:
    using ViewHarness::show;
    using ViewHarness::ViewHarness;

    // Gives the controller that hosts it, for who describes it anew with setRootView.
    template <platform::View Root>
        requires(!std::convertible_to<Root, std::shared_ptr<platform::UIViewController>>)
    std::shared_ptr<AnyHostingController> show(Root root)
    {
        auto controller = AnyHostingController::make(std::move(root));
        show(std::shared_ptr<platform::UIViewController>(controller));
        return controller;
    }

    // The bodies evaluated, the nodes updated, measured, placed, mounted and gone until what `action` did has settled: in
    // all trees on screen, also those that came meanwhile; those that left by then do not count.
    platform::HostStatistics workDuring(const std::function<void()>& action)
    {
        settle();
        auto before = statistics();
        action();
        settle();
        platform::HostStatistics work;
        for (const auto& [controller, now] : statistics()) {
            const auto& then = before[controller]; // nothing yet, for a new one
            work.bodies += now.bodies - then.bodies;
            work.updates += now.updates - then.updates;
            work.measurements += now.measurements - then.measurements;
            work.placements += now.placements - then.placements;
            work.mounted += now.mounted - then.mounted;
            work.unmounted += now.unmounted - then.unmounted;
        }
        return work;
    }

private:
    using Statistics = std::map<std::shared_ptr<platform::UIHostingControllerBase>, platform::HostStatistics>;

    Statistics statistics()
    {
        Statistics all;
        collect(window(), all);
        return all;
    }
    static void collect(const platform::UIView& view, Statistics& all)
    {
        if (auto host = std::dynamic_pointer_cast<platform::UIHostingControllerBase>(view.viewController()))
            all.emplace(host, host->statistics());
        for (const auto& subview : view.subviews())
            collect(*subview, all);
    }
};

} // namespace harness
