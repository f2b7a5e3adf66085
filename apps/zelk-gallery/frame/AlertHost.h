// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/Binding.h"
#include "platform/swiftui/UIViewControllerRepresentable.h"
#include "platform/uikit/UIViewController.h"

#include <functional>
#include <memory>

namespace gallery {

// A place of no size that presents a controller each time the binding becomes true, and makes it false again.
struct AlertHost : platform::UIViewControllerRepresentable<AlertHost> {
    platform::Binding<bool> isWanted;
    std::function<std::shared_ptr<platform::UIViewController>()> makeController;

    AlertHost(platform::Binding<bool> wanted,
              std::function<std::shared_ptr<platform::UIViewController>()> make)
        : isWanted(std::move(wanted))
        , makeController(std::move(make))
    {
    }
    auto dynamicProperties() { return std::tie(isWanted); }
    std::shared_ptr<platform::UIViewController> makeUIViewController(const auto&) const
    {
        return std::make_shared<platform::UIViewController>();
    }
    void updateUIViewController(platform::UIViewController& host, const auto&) const
    {
        if (!isWanted.get())
            return;
        isWanted.set(false);
        host.present(makeController(), platform::Animated::yes);
    }
};

} // namespace gallery
