// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/NSError.h"
#include "platform/uikit/UIViewController.h"

#include <string>

namespace platform {

// What the host shows in place of a preview that could not be made: the file's name and the reason.
class PreviewFailureViewController : public UIViewController {
public:
    PreviewFailureViewController(std::string fileName, NSError error);

    void viewDidLoad() override;

private:
    const std::string fileName_;
    const NSError error_;
};

} // namespace platform
