// SPDX-License-Identifier: MIT
#include "kit/ui/AccessoryViewAlertController.h"

#include "kit/ui/ContainerView.h"
#include "kit/ui/DeadlineProgress.h"
#include "kit/ui/accessoryConfiguration.h"

#include "platform/dispatch/DispatchQueue.h"
#include "platform/foundation/Precondition.h"
#include "platform/uikit/UIActivityIndicatorView.h"
#include "platform/uikit/UIProgressView.h"

#include <utility>

namespace zelk {

using platform::precondition;

namespace {

constexpr platform::CGFloat actionHeight = 44;

} // namespace

AccessoryViewAlertController::AccessoryViewAlertController(Configuration configuration,
                                                           const Options& options)
    : UIAlertController(configuration.adjustedTitle, configuration.adjustedMessage, options.preferredStyle)
    , config_(std::move(configuration))
    , accessoryView_(options.accessoryView)
{
}

std::shared_ptr<AccessoryViewAlertController> AccessoryViewAlertController::make(Options options)
{
    precondition(options.accessoryView != nullptr, "an alert was given no accessory view");
    auto alert = std::make_shared<AccessoryViewAlertController>(accessoryConfiguration(options), options);
    alert->view()->addSubview(alert->accessoryView_);
    alert->isInInit_ = false;
    return alert;
}

std::shared_ptr<AccessoryViewAlertController> AccessoryViewAlertController::activityIndicator(Texts texts)
{
    auto wheel = std::make_shared<platform::UIActivityIndicatorView>();
    wheel->startAnimating();
    return make({.title = std::move(texts.title),
                 .message = std::move(texts.message),
                 .accessoryView = ContainerView::make(wheel),
                 .accessoryViewPosition = texts.accessoryViewPosition});
}

std::shared_ptr<AccessoryViewAlertController>
AccessoryViewAlertController::progress(Texts texts, const platform::AnyPublisher<platform::Date>& deadlines)
{
    auto bar = std::make_shared<platform::UIProgressView>();
    auto container = ContainerView::make(bar);
    auto towards = std::make_shared<DeadlineProgress>(bar);
    auto subscription =
        deadlines.receiveOn([](auto work) { platform::DispatchQueue::main()->async(std::move(work)); })
            .sink([weak = std::weak_ptr(towards)](const platform::Date& deadline) {
                if (auto progress = weak.lock())
                    progress->setDeadline(deadline);
            });
    // The bar goes on to its deadline after the stream has ended.
    container->cancellable = platform::AnyCancellable(
        [towards, subscription = std::move(subscription)]() mutable { subscription.cancel(); });
    return make({.title = std::move(texts.title),
                 .message = std::move(texts.message),
                 .accessoryView = container,
                 .accessoryViewPosition = texts.accessoryViewPosition});
}

const AccessoryViewAlertController::Configuration& AccessoryViewAlertController::configuration() const
{
    return *config_;
}

void AccessoryViewAlertController::setTitle(std::string title)
{
    precondition(isInInit_,
                 "the title of an alert with an accessory view was replaced, which holds its room");
    UIAlertController::setTitle(std::move(title));
}

void AccessoryViewAlertController::setMessage(std::optional<std::string> message)
{
    precondition(isInInit_,
                 "the message of an alert with an accessory view was replaced, which holds its room");
    UIAlertController::setMessage(std::move(message));
}

bool AccessoryViewAlertController::allowsActionsSideBySide() const
{
    return config_->accessoryViewPosition == AccessoryViewPosition::top;
}

void AccessoryViewAlertController::viewDidLayoutSubviews()
{
    auto card = viewIfLoaded();
    precondition(card && accessoryView_ && config_,
                 "an alert lost its accessory view before it was laid out");
    auto bounds = card->bounds();
    auto frame = accessoryView_->frame();
    frame.size.width = bounds.width();
    accessoryView_->setFrame(frame);
    auto offset = config_->accessoryViewYOffset;
    auto y = config_->accessoryViewPosition == AccessoryViewPosition::top
        ? offset
        : bounds.maxY() - offset - actionHeight * static_cast<double>(actions().size());
    accessoryView_->setCenter({bounds.width() / 2, y});
    UIAlertController::viewDidLayoutSubviews();
}

} // namespace zelk
