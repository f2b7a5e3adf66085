// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/UIImage.h"
#include "platform/uikit/UIView.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace platform {

// What a tab bar shows of one tab.
struct UITabBarItem {
    std::string title;
    UIImage image; // painted in the colour of the tab
    bool operator==(const UITabBarItem&) const = default;
};

// The bar below a tab controller's pages: a button for each, of which one is chosen. Arrow keys go from tab to tab while one
// has the keyboard. Made and filled by its controller. Main thread only.
class UITabBar : public UIView {
public:
    static constexpr CGFloat height = 50; // points, without the safe area below

    UITabBar();
    void setItems(std::vector<UITabBarItem> items);
    std::size_t selectedIndex() const { return selected_; }
    void setSelectedIndex(std::size_t index);  // tells nobody
    std::function<void(std::size_t)> onSelect; // by the user; of the chosen one too

    void layoutSubviews() override;
    void draw(CGContext& context, CGRect dirty) override;
    bool pressesBegan(const UIPress& press) override;

private:
    class Tab;

    std::vector<std::shared_ptr<Tab>> tabs_; // in reading order
    std::size_t selected_ = 0;
};

} // namespace platform
