// SPDX-License-Identifier: MIT
#include "extension/PreviewViewController.h"

#include "extension/ReadOnlyTextView.h"
#include "platform/foundation/String.h"
#include "platform/swiftui/UIHostingController.h"
#include "platform/uikit/NSLayoutConstraint.h"
#include "platform/uikit/UIView.h"

namespace preview {

using namespace platform;

void PreviewViewController::preparePreviewOfFile(const URL& url, CompletionHandler completionHandler)
{
    auto text = String::contentsOf(url);
    if (!text)
        return completionHandler(_convertErrorToNSError(text.error()));

    auto hosting =
        std::make_shared<UIHostingController<ReadOnlyTextView>>(readOnlyTextView(std::move(*text)));
    auto hosted = hosting->view();
    hosted->setTranslatesAutoresizingMaskIntoConstraints(false);
    view()->addSubview(hosted);
    auto safeArea = view()->safeAreaLayoutGuide();
    NSLayoutConstraint::activateConstraints({
        safeArea->topAnchor().constraintEqualTo(hosted->topAnchor()),
        safeArea->bottomAnchor().constraintEqualTo(hosted->bottomAnchor()),
        safeArea->leadingAnchor().constraintEqualTo(hosted->leadingAnchor()),
        safeArea->trailingAnchor().constraintEqualTo(hosted->trailingAnchor()),
    });
    // The child comes last, when its view already stands in the hierarchy, and is sent no didMove: what
    // introspection finds, and when, depends on this order.
    addChild(hosting);
    completionHandler(std::nullopt);
}

} // namespace preview
