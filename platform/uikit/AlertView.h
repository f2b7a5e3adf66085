// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIAlertAction.h"
#include "platform/uikit/UIView.h"

#include <memory>
#include <string>
#include <vector>

namespace platform {

class AlertButton;
class UIAlertController;
class UILabel;
class UIScrollView;

// The card of an alert: title and message, which scroll where they do not fit, and below them the buttons, in a row
// where two short ones fit, else in a column, which scrolls too. In an action sheet the button that cancels stands on
// a card of its own. Main thread only.
class AlertView : public UIView {
public:
    explicit AlertView(UIAlertController& owner);

    // Takes the actions from the owner.
    void setContent(const std::string& title, const std::string& message);
    // Gives the keyboard to the button that Return chooses, unless one of them has it, and shows what scrolls.
    void didAppear();

    CGSize sizeThatFits(CGSize room) const override;
    void layoutSubviews() override;
    bool pressesBegan(const UIPress& press) override;
    void traitCollectionDidChange(const UITraitCollection& previous) override;
    AccessibilityProperties accessibilityNow() const override;

private:
    struct Arrangement;
    Arrangement arrange(CGFloat width, CGFloat height) const;
    CGFloat widthIn(CGFloat room) const;
    void makeButtons(UIAlertController& owner);
    void updateFonts();
    void placeSeparators(const Arrangement& arrangement);
    bool handleKey(const UIPress& press);
    bool moveFocus(int step);
    void setShowsFocus(bool shows);

    // fixed after construction
    const std::weak_ptr<UIAlertController> owner_;
    const std::shared_ptr<UIView> shadow_, cancelShadow_;
    const std::shared_ptr<UIView> plate_;
    const std::shared_ptr<UIView> cancelPlate_; // hidden but in sheets
    const std::shared_ptr<UIScrollView> textArea_;
    const std::shared_ptr<UIScrollView> buttonArea_;
    const std::shared_ptr<UILabel> title_;
    const std::shared_ptr<UILabel> message_;
    const bool isSheet_;
    // main thread only
    std::vector<std::shared_ptr<AlertButton>> buttons_; // as in a column, from the top
    std::vector<std::shared_ptr<UIView>>
        separators_; // one for each button: above it, or between two in a row
    bool showsFocus_ = false;
};

} // namespace platform
