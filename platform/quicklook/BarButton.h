// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIControl.h"

#include <memory>
#include <string>

namespace platform {

class UILabel;

enum class BarSymbol { none, search, previous, next, close, more, disclosure };

// A quiet button of the preview's bar: a symbol, or a short text and a symbol, on a ground that shows only under the
// pointer, while it is pressed, and while it has the keyboard. Main thread only.
class BarButton : public UIControl {
public:
    explicit BarButton(BarSymbol symbol);

    const std::string& title() const;
    void setTitle(std::string title);
    void setTitleColor(UIColor color);

    void draw(CGContext& context, CGRect dirty) override;
    void layoutSubviews() override;
    CGSize intrinsicContentSize() const override;
    CGSize sizeThatFits(CGSize available) const override;
    void pointerEntered() override;
    void pointerExited() override;
    AccessibilityProperties accessibilityNow() const override;

private:
    const BarSymbol symbol_;
    std::shared_ptr<UILabel> label_; // null without a title
    bool isHovered_ = false;
};

} // namespace platform
