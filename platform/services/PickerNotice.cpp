// SPDX-License-Identifier: MIT
#include "platform/services/PickerNotice.h"

#include "platform/uikit/UIActivityIndicatorView.h"
#include "platform/uikit/UILabel.h"

#include <utility>

namespace platform {

namespace {

constexpr CGFloat margin = 24;

} // namespace

PickerNotice::PickerNotice()
    : label_(std::make_shared<UILabel>())
    , wheel_(std::make_shared<UIActivityIndicatorView>(UIActivityIndicatorViewStyle::large))
{
    setUserInteractionEnabled(false);
    label_->setPreferredFont(FontTextStyle::title3);
    label_->setTextColor(UIColor::secondaryLabel());
    label_->setTextAlignment(TextAlignment::center);
    label_->setNumberOfLines(0);
    label_->setHidden(true);
    addSubview(label_);
    addSubview(wheel_);
}

void PickerNotice::setWaiting(bool waits)
{
    waits ? wheel_->startAnimating() : wheel_->stopAnimating();
}

void PickerNotice::setText(std::string text)
{
    label_->setHidden(text.empty());
    label_->setText(std::move(text));
}

void PickerNotice::layoutSubviews()
{
    UIView::layoutSubviews();
    auto inner = bounds().insetBy(margin, margin);
    label_->setFrame(inner.isNull() ? bounds() : inner);
    wheel_->setCenter(bounds().center());
}

} // namespace platform
