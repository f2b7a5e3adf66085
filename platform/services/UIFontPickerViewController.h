// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/UIFont.h"
#include "platform/uikit/UIViewController.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace platform {

class FontListView;
class PickerBar;
class PickerNotice;
class PickerPage;
class UIFontPickerViewController;
class UITextField;

// Hears what came of a font picker, once. Whoever presented it dismisses it. Main thread only.
class UIFontPickerViewControllerDelegate {
public:
    virtual ~UIFontPickerViewControllerDelegate() = default;
    // The font is in selectedFont().
    virtual void fontPickerViewControllerDidPickFont(UIFontPickerViewController&) = 0;
    virtual void fontPickerViewControllerDidCancel(UIFontPickerViewController&) = 0;
};

// Lets the user pick one of the families that are installed, each shown in its own face: those picked last come first, and a
// field narrows the rest by their names. Without a delegate it goes by itself. Main thread only.
class UIFontPickerViewController : public UIViewController {
public:
    UIFontPickerViewController();
    ~UIFontPickerViewController() override;

    void setDelegate(std::weak_ptr<UIFontPickerViewControllerDelegate> delegate);
    std::shared_ptr<UIFontPickerViewControllerDelegate> delegate() const { return delegate_.lock(); }

    // Of the body's size; nothing before one was picked.
    const std::optional<UIFont>& selectedFont() const { return selected_; }

    void loadView() override;
    void viewDidLoad() override;
    void viewDidAppear(Animated animated) override;
    void viewWillLayoutSubviews() override;

private:
    void filter();
    void pick(const std::string& family);
    void cancel();

    std::weak_ptr<UIFontPickerViewControllerDelegate> delegate_;
    std::optional<UIFont> selected_;
    std::vector<std::string> families_, recents_;
    std::shared_ptr<PickerPage> page_;
    std::shared_ptr<PickerBar> bar_;
    std::shared_ptr<UITextField> search_;
    std::shared_ptr<FontListView> list_;
    std::shared_ptr<PickerNotice> notice_;
    bool isOver_ = false;
};

} // namespace platform
