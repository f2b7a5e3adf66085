// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/GestureArena.h"
#include "platform/uikit/UIWindow.h"

#include <memory>
#include <optional>
#include <vector>

namespace platform {

// What a window keeps to hand events out.
struct UIWindow::Dispatch {
    explicit Dispatch(UIWindow& window)
        : arena(window)
    {
    }
    GestureArena arena;
    std::vector<std::weak_ptr<UIView>>
        hovered;                    // the view under the pointer and those around it, innermost first
    std::optional<CGPoint> pointer; // none while the pointer is elsewhere
    struct Modal {
        std::weak_ptr<UIView> view;
        std::weak_ptr<UIResponder> formerResponder; // who had the keyboard before
    };
    std::vector<Modal> modals; // in order of beginning
};

// A window does one thing at a time.
class UIWindow::PhaseScope {
public:
    PhaseScope(UIWindow& window, Phase phase)
        : window_(window)
    {
        window_.phase_ = phase;
    }
    PhaseScope(const PhaseScope&) = delete; // ends once
    PhaseScope& operator=(const PhaseScope&) = delete;
    ~PhaseScope() { window_.phase_ = Phase::idle; }

private:
    UIWindow& window_;
};

} // namespace platform
