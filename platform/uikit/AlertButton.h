// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIAlertAction.h"
#include "platform/uikit/UIControl.h"

#include <functional>
#include <memory>

namespace platform {

class UILabel;

// A button of an alert: as wide as the card or half of it, lit while the pointer is over it or presses it.
// Main thread only.
class AlertButton : public UIControl {
public:
    explicit AlertButton(std::shared_ptr<UIAlertAction> action);

    const std::shared_ptr<UIAlertAction>& action() const { return action_; }
    // The one that Return chooses stands out.
    void setDefault(bool isDefault);
    // The ring is for those who go by keys.
    void setShowsFocus(bool shows);
    // The height that the title takes at that width, with room around it.
    CGFloat heightFitting(CGFloat width) const;
    // The width of the title in one line, with room around it.
    CGFloat naturalWidth() const;

    // Offered every key before the button's own.
    std::function<bool(const UIPress&)> onPress;

    void draw(CGContext& context, CGRect dirty) override;
    void layoutSubviews() override;
    bool pressesBegan(const UIPress& press) override;
    bool becomeFirstResponder() override; // comes into sight where the buttons scroll
    void pointerEntered() override;
    void pointerExited() override;
    void didMoveToSuperview() override;
    void tintColorDidChange() override;
    void traitCollectionDidChange(const UITraitCollection& previous) override;
    AccessibilityProperties accessibilityNow() const override;

protected:
    void controlStateChanged() override;

private:
    void updateLook();

    const std::shared_ptr<UIAlertAction> action_;
    const std::shared_ptr<UILabel> label_;
    bool isDefault_ = false;
    bool isHovered_ = false;
    bool showsFocus_ = false;
};

} // namespace platform
