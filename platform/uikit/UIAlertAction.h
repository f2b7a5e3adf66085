// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/NSObject.h"

#include <functional>
#include <string>

namespace platform {

enum class UIAlertActionStyle {
    default_,
    cancel,      // leaves things as they are; an alert has at most one
    destructive, // changes or deletes data
};

// One button of an alert, and what it does. Main thread only.
class UIAlertAction : public NSObject {
public:
    using Handler = std::function<void(UIAlertAction&)>;

    // The handler, which may be empty, is called once the alert has gone.
    explicit UIAlertAction(std::string title, UIAlertActionStyle style = UIAlertActionStyle::default_,
                           Handler handler = {});

    const std::string& title() const { return title_; }
    UIAlertActionStyle style() const { return style_; }
    bool isEnabled() const { return isEnabled_; }
    void setEnabled(bool enabled);

private:
    friend class UIAlertController;
    // fixed after construction
    const std::string title_;
    const UIAlertActionStyle style_;
    const Handler handler_;
    // main thread only
    bool isEnabled_ = true;
    std::function<void()> onChange_; // of the alert that it was added to
};

} // namespace platform
