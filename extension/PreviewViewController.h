// SPDX-License-Identifier: MIT
#pragma once

#include "platform/quicklook/QLPreviewingController.h"
#include "platform/uikit/UIViewController.h"

namespace preview {

// The principal class of the subtitle preview: shows a file's whole text, unchanged, in a read-only text
// view that fills the safe area, or hands back the read error. Keeps no state: every call builds a fresh
// view hierarchy under the controller's own view, on top of what an earlier call built.
class PreviewViewController : public platform::UIViewController, public platform::QLPreviewingController {
public:
    using UIViewController::UIViewController;

    // Reads the file on the calling thread, the main one, and calls `completionHandler` before it returns.
    void preparePreviewOfFile(const platform::URL& url, CompletionHandler completionHandler) override;
};

} // namespace preview
