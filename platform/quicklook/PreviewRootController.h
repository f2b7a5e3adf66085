// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIViewController.h"

#include <memory>

namespace platform {

class PreviewBar;
class UITextView;

// The root of a preview's window: the bar, and below it what the extension made, which fills the window and is told by its
// safe area what the bar covers. Main thread only.
class PreviewRootController : public UIViewController {
public:
    PreviewRootController();

    const std::shared_ptr<PreviewBar>& bar() const { return bar_; }
    const std::shared_ptr<UIViewController>& content() const { return content_; }
    // In the place of what was there.
    void setContent(std::shared_ptr<UIViewController> content);
    // The text view that the content shows its text in; null when there is none, or none yet.
    std::shared_ptr<UITextView> textView() const;

    void viewDidLoad() override;
    void viewWillLayoutSubviews() override;

private:
    void addContent();

    std::shared_ptr<PreviewBar> bar_;
    std::shared_ptr<UIViewController> content_;
};

} // namespace platform
