// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIView.h"

#include <functional>
#include <memory>
#include <string>

namespace platform {

class UIButton;
class UILabel;

// The bar over a picker's page: a button to leave, a title in the middle, and perhaps a button that finishes. Main thread
// only.
class PickerBar : public UIView {
public:
    static constexpr CGFloat height = 48; // points

    PickerBar();

    const std::string& title() const;
    void setTitle(std::string title);
    const std::shared_ptr<UIButton>& cancelButton() const { return cancel_; }
    // Hidden until it has a title.
    const std::shared_ptr<UIButton>& doneButton() const { return done_; }
    void setDoneTitle(std::string title);

    void layoutSubviews() override;

private:
    const std::shared_ptr<UIButton> cancel_, done_;
    const std::shared_ptr<UILabel> title_;
    const std::shared_ptr<UIView> line_;
};

// The root of a picker's page, which Escape leaves, wherever the keyboard is. Main thread only.
class PickerPage : public UIView {
public:
    PickerPage();
    // Puts the bar at the top of the page's safe area, and gives what is below it.
    CGRect placeBar(PickerBar& bar) const;
    std::function<void()> onEscape;
    // Keys that nothing on the page took. Empty: nobody's.
    std::function<void()> onReturn, onSpace;
    bool pressesBegan(const UIPress& press) override;
    bool performKeyEquivalent(const UIPress& press) override;

private:
    bool take(const UIPress& press);
};

} // namespace platform
