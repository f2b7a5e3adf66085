// SPDX-License-Identifier: MIT
#include "platform/quicklook/PreviewFailureViewController.h"

#include "platform/uikit/NSLayoutConstraint.h"
#include "platform/uikit/UILabel.h"
#include "platform/uikit/UIView.h"

#include <utility>

namespace platform {

namespace {

constexpr CGFloat margin = 24; // points between the texts and the window's edges
constexpr CGFloat gap = 8;     // points between the two texts

std::shared_ptr<UILabel> makeLabel(std::string text, FontTextStyle style, const UIColor& color)
{
    auto label = std::make_shared<UILabel>();
    label->setText(std::move(text));
    label->setPreferredFont(style);
    label->setTextColor(color);
    label->setTextAlignment(TextAlignment::center);
    label->setNumberOfLines(0);
    label->setLineBreak(LineBreak::word);
    label->setTranslatesAutoresizingMaskIntoConstraints(false);
    return label;
}

} // namespace

PreviewFailureViewController::PreviewFailureViewController(std::string fileName, NSError error)
    : fileName_(std::move(fileName))
    , error_(std::move(error))
{
}

void PreviewFailureViewController::viewDidLoad()
{
    auto reason = error_.localizedFailureReason();
    if (reason.empty())
        reason = error_.localizedDescription();
    auto name = makeLabel(fileName_, FontTextStyle::headline, UIColor::label());
    auto why = makeLabel(reason, FontTextStyle::body, UIColor::secondaryLabel());

    auto& root = *view();
    root.setBackgroundColor(UIColor::systemBackground());
    root.addSubview(name);
    root.addSubview(why);
    auto safeArea = root.safeAreaLayoutGuide();
    NSLayoutConstraint::activateConstraints({
        name->leadingAnchor().constraintEqualTo(safeArea->leadingAnchor(), margin),
        name->trailingAnchor().constraintEqualTo(safeArea->trailingAnchor(), -margin),
        // The two texts meet in the middle of the window.
        name->bottomAnchor().constraintEqualTo(safeArea->centerYAnchor(), -gap / 2),
        why->topAnchor().constraintEqualTo(safeArea->centerYAnchor(), gap / 2),
        why->leadingAnchor().constraintEqualTo(name->leadingAnchor()),
        why->trailingAnchor().constraintEqualTo(name->trailingAnchor()),
    });
}

} // namespace platform
