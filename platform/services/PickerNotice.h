// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIView.h"

#include <memory>
#include <string>

namespace platform {

class UIActivityIndicatorView;
class UILabel;

// What stands in the middle of a picker's page that has nothing to show: a wheel while it waits, or why there is nothing. Pointers
// go through it. Main thread only.
class PickerNotice : public UIView {
public:
    PickerNotice();
    void setWaiting(bool waits);
    void setText(std::string text); // empty: nothing is said

    void layoutSubviews() override;

private:
    const std::shared_ptr<UILabel> label_;
    const std::shared_ptr<UIActivityIndicatorView> wheel_;
};

} // namespace platform
