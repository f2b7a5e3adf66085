// SPDX-License-Identifier: MIT
#include "platform/dispatch/DisplayLink.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/dispatch/RunLoopDisplayDriver_p.h"
#include "platform/foundation/Precondition.h"

#include <utility>

namespace platform {

DisplayLinkDriver::~DisplayLinkDriver() = default;

// Never destroyed: a token may outlive everything else.
DisplayLink& DisplayLink::shared()
{
    static DisplayLink& link = *new DisplayLink;
    return link;
}

DisplayLink::DisplayLink()
    : runLoopDriver_(std::make_shared<RunLoopDisplayDriver>())
    , driver_(runLoopDriver_)
{
}

DisplayLink::~DisplayLink() = default;

Token DisplayLink::request(Callback callback)
{
    assertOnMainThread();
    precondition(static_cast<bool>(callback), "a frame callback must be callable");
    const auto request = nextRequest_++;
    requests_.emplace(request, std::make_shared<Callback>(std::move(callback)));
    if (!isRunning())
        startDriver();
    return Token([this, request] { remove(request); });
}

void DisplayLink::remove(std::uint64_t request)
{
    assertOnMainThread();
    auto removed = requests_.extract(request); // released last: it may request and cancel
    if (requests_.empty() && !isDelivering_)
        stopDriver();
}

bool DisplayLink::isRunning() const
{
    return isStarted_ && (driver_ != runLoopDriver_ || runLoopDriver_->isArmed());
}

void DisplayLink::setDriver(std::shared_ptr<DisplayLinkDriver> driver)
{
    assertOnMainThread();
    const bool wasStarted = isStarted_;
    stopDriver();
    driver_ = driver ? std::move(driver) : runLoopDriver_;
    if (wasStarted)
        startDriver();
}

void DisplayLink::deliverFrame(Instant frameTime)
{
    assertOnMainThread();
    const bool isOutermost = !std::exchange(isDelivering_, true);
    const auto firstOfNextFrame = nextRequest_;
    for (auto next = requests_.begin(); next != requests_.end() && next->first < firstOfNextFrame;) {
        const auto request = next->first;
        auto callback = next->second; // it may cancel itself
        (*callback)(frameTime);
        callback.reset();
        next = requests_.upper_bound(request);
    }
    if (!isOutermost)
        return;
    isDelivering_ = false;
    if (requests_.empty())
        stopDriver();
}

void DisplayLink::startDriver()
{
    isStarted_ = true;
    driver_->start();
}

void DisplayLink::stopDriver()
{
    if (std::exchange(isStarted_, false))
        driver_->stop();
}

} // namespace platform
