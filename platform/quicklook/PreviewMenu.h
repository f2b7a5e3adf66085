// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIView.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace platform {

struct PreviewMenuItem {
    std::string title;
    std::string shortcut; // as people read it: "Alt+Z"
    bool isChecked = false;
    bool isEnabled = true;
    bool beginsGroup = false; // a line above it
    std::function<void()> action;
};

// A menu below a control of the preview's bar, in front of the window: the pointer, the arrow keys, Return and Escape,
// and assistive technology choose. It goes by itself when something was chosen, after which the action runs, and when
// something outside is pressed. Main thread only.
class PreviewMenu : public UIView {
public:
    // Shows it in the anchor's window and gives it the keyboard, which goes back afterwards.
    static std::shared_ptr<PreviewMenu> present(const UIView& anchor, std::string label,
                                                std::vector<PreviewMenuItem> items);
    void dismiss();

    explicit PreviewMenu(std::vector<PreviewMenuItem> items);
    void layoutSubviews() override;
    bool pressesBegan(const UIPress& press) override;
    void touchesBegan(UITouch& touch) override;

private:
    class Panel;
    class Row;
    void moveFocus(int step);
    void choose(std::size_t index);

    std::vector<PreviewMenuItem> items_;
    std::vector<std::shared_ptr<Row>> rows_;
    std::shared_ptr<Panel> panel_;
    CGRect anchor_; // in the window
};

} // namespace platform
