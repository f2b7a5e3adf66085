// SPDX-License-Identifier: MIT
#include "platform/quicklook/PreviewRootController.h"

#include "platform/quicklook/PreviewBar.h"
#include "platform/uikit/UITextView.h"
#include "platform/uikit/UIView.h"

#include <utility>

namespace platform {

namespace {

std::shared_ptr<UITextView> findTextView(const std::shared_ptr<UIView>& view)
{
    if (auto found = std::dynamic_pointer_cast<UITextView>(view))
        return found;
    for (auto& subview : view->subviews()) {
        if (auto found = findTextView(subview))
            return found;
    }
    return nullptr;
}

} // namespace

PreviewRootController::PreviewRootController()
    : bar_(std::make_shared<PreviewBar>())
{
}

void PreviewRootController::viewDidLoad()
{
    view()->setBackgroundColor(UIColor::systemBackground());
    view()->addSubview(bar_);
    if (content_)
        addContent();
}

void PreviewRootController::setContent(std::shared_ptr<UIViewController> content)
{
    if (content_ && isViewLoaded()) {
        content_->willMove(nullptr);
        content_->view()->removeFromSuperview();
        content_->removeFromParent();
    }
    content_ = std::move(content);
    if (isViewLoaded())
        addContent();
}

void PreviewRootController::addContent()
{
    content_->setAdditionalSafeAreaInsets({PreviewBar::height, 0, 0, 0});
    addChild(content_);
    content_->view()->setFrame(view()->bounds());
    view()->insertSubviewBelow(content_->view(), *bar_);
    content_->didMove(this);
}

void PreviewRootController::viewWillLayoutSubviews()
{
    auto area = view()->bounds();
    bar_->setFrame(CGRect::make(0, 0, area.width(), PreviewBar::height));
    if (content_)
        content_->view()->setFrame(area);
}

std::shared_ptr<UITextView> PreviewRootController::textView() const
{
    auto view = content_ ? content_->viewIfLoaded() : nullptr;
    return view ? findTextView(view) : nullptr;
}

} // namespace platform
