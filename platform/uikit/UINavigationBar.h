// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIView.h"

#include <functional>
#include <memory>
#include <string>

namespace platform {

class UIButton;
class UILabel;

// The bar over a navigation controller's pages: the title of the page that is seen, and a button back to the one before
// it, on the side where reading begins. Made and filled by its controller. Main thread only.
class UINavigationBar : public UIView {
public:
    static constexpr CGFloat height = 44; // points, without the safe area above

    UINavigationBar();

    // The back button is there when `hasBack`, with the title of the page before, or the system's own word without one.
    void show(const std::string& title, bool hasBack, const std::string& backTitle);
    std::function<void()> onBack;
    const std::shared_ptr<UIButton>& backButton() const { return back_; }
    const std::shared_ptr<UILabel>& titleLabel() const { return title_; }

    void layoutSubviews() override;
    void draw(CGContext& context, CGRect dirty) override;
    void traitCollectionDidChange(const UITraitCollection& previous) override;

private:
    void makeArrow();

    std::shared_ptr<UILabel> title_;
    std::shared_ptr<UIButton> back_;
};

} // namespace platform
