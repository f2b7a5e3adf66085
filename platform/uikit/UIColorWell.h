// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/UIColor.h"
#include "platform/uikit/UIControl.h"

#include <memory>
#include <optional>

namespace platform {

class FocusRing;

// Shows a colour and opens a panel to choose another: some to take, and red, green and blue to mix. Sends valueChanged for
// each that the user chooses. Main thread only.
class UIColorWell : public UIControl {
public:
    UIColorWell();
    explicit UIColorWell(CGRect frame);
    ~UIColorWell() override;

    const std::optional<UIColor>& selectedColor() const { return color_; } // none at first
    void setSelectedColor(std::optional<UIColor> color);                   // tells nobody

    void draw(CGContext& context, CGRect dirty) override;
    void layoutSubviews() override;
    CGSize intrinsicContentSize() const override;
    CGSize sizeThatFits(CGSize available) const override;
    AccessibilityProperties accessibilityNow() const override;

protected:
    void controlStateChanged() override;

private:
    void setUp();
    void open();
    CGRect disc() const;

    std::optional<UIColor> color_;
    std::shared_ptr<FocusRing> ring_;
    bool isOpen_ = false;
};

} // namespace platform
