// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIControl.h"

#include <memory>
#include <string>
#include <vector>

namespace platform {

class FocusRing;

// A button that shows what is chosen of a few and opens a menu of them. A click, Space, Return or an arrow up or down opens
// it. Sends valueChanged when the user chose another. Main thread only.
class UIMenuButton : public UIControl {
public:
    UIMenuButton();
    ~UIMenuButton() override;

    const std::vector<std::string>& titles() const { return titles_; }
    void setTitles(std::vector<std::string> titles);
    int selectedIndex() const { return selected_; } // -1: none
    void setSelectedIndex(int index);               // tells nobody; one that there is not selects none

    void draw(CGContext& context, CGRect dirty) override;
    void layoutSubviews() override;
    CGSize intrinsicContentSize() const override;
    CGSize sizeThatFits(CGSize available) const override;
    bool pressesBegan(const UIPress& press) override;
    void tintColorDidChange() override;
    void traitCollectionDidChange(const UITraitCollection& previous) override;
    AccessibilityProperties accessibilityNow() const override;

protected:
    void controlStateChanged() override;

private:
    void open();
    const std::string& title() const;

    std::vector<std::string> titles_;
    std::shared_ptr<FocusRing> ring_;
    int selected_ = -1;
    bool isOpen_ = false;
};

} // namespace platform
