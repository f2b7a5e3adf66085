// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/UIColor.h"
#include "platform/uikit/UIViewController.h"

#include <functional>
#include <memory>
#include <vector>

namespace platform {

class UISlider;

// A popover in which a colour is chosen: swatches to take, and a slider for each of red, green and blue. Main thread only.
class ColorPanelController : public UIViewController {
public:
    // `onChange` comes for each colour chosen, as often as the user likes.
    ColorPanelController(const UIColor& color, std::function<void(const UIColor& color)> onChange);
    ~ColorPanelController() override;

    // Shows it beside `source`, on behalf of the controller around that. False where there is none, or it presents already.
    static bool present(const std::shared_ptr<ColorPanelController>& panel, UIView& source,
                        std::function<void()> onClosed = {});

    void loadView() override;
    void viewDidLayoutSubviews() override;
    void viewDidDisappear(Animated animated) override;

protected:
    std::shared_ptr<UIPresentationController>
    makePresentationController(const std::shared_ptr<UIViewController>& presenting) override;

private:
    class Swatch;
    void take(const ColorComponents& color);
    void mixed();
    void show();

    // main thread only
    ColorComponents color_;
    std::function<void(const UIColor&)> onChange_;
    std::function<void()> onClosed_;
    std::weak_ptr<UIView> source_;
    std::vector<std::shared_ptr<Swatch>> swatches_;
    std::vector<std::shared_ptr<UISlider>> sliders_; // red, green, blue
};

} // namespace platform
