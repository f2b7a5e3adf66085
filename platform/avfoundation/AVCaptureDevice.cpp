// SPDX-License-Identifier: MIT
#include "platform/avfoundation/AVCaptureDevice.h"

#include "platform/avfoundation/AVCaptureAuthorization.h"
#include "platform/avfoundation/CaptureHardware.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/dispatch/RunLoop.h"

#include <algorithm>
#include <utility>

namespace platform {

AVCaptureDevice::AVCaptureDevice(std::string uniqueID, std::string name, AVMediaType mediaType,
                                 AVCaptureDevicePosition position)
    : uniqueID_(std::move(uniqueID))
    , name_(std::move(name))
    , mediaType_(mediaType)
    , position_(position)
{
}

std::vector<std::shared_ptr<AVCaptureDevice>> AVCaptureDevice::devices(AVMediaType mediaType)
{
    std::vector<std::shared_ptr<AVCaptureDevice>> found;
    if (mediaType != AVMediaType::video && mediaType != AVMediaType::audio)
        return found;
    for (auto& each : CaptureHardware::current()->devices(mediaType))
        found.push_back(std::make_shared<AVCaptureDevice>(std::move(each.uniqueID), std::move(each.name),
                                                          mediaType, each.position));
    return found;
}

std::shared_ptr<AVCaptureDevice> AVCaptureDevice::defaultDevice(AVMediaType mediaType,
                                                                AVCaptureDevicePosition position)
{
    auto all = devices(mediaType);
    auto found = std::ranges::find_if(all, [&](const auto& each) { return each->position() == position; });
    if (found != all.end())
        return *found;
    return all.empty() ? nullptr : all.front();
}

Token AVCaptureDevice::observeDevices(std::function<void()> onChange)
{
    assertOnMainThread();
    // The main thread looks whether anybody still wants to know.
    auto wanted = std::make_shared<std::function<void()>>(std::move(onChange));
    auto watch = CaptureHardware::current()->watch([weak = std::weak_ptr(wanted)] {
        DispatchQueue::main()->async([weak] {
            if (auto told = weak.lock())
                (*told)();
        });
    });
    return Token([wanted = std::move(wanted), watch = std::move(watch)]() mutable {
        watch.cancel();
        wanted.reset();
    });
}

bool AVCaptureDevice::isConnected() const
{
    return std::ranges::any_of(CaptureHardware::current()->devices(mediaType_),
                               [&](const auto& each) { return each.uniqueID == uniqueID_; });
}

AVAuthorizationStatus AVCaptureDevice::authorizationStatus(AVMediaType mediaType)
{
    return AVCaptureAuthorization::shared().status(mediaType);
}

void AVCaptureDevice::requestAccess(AVMediaType mediaType, std::function<void(bool)> handler)
{
    AVCaptureAuthorization::shared().request(mediaType,
                                             [handler = std::move(handler)](AVAuthorizationStatus status) {
                                                 handler(status == AVAuthorizationStatus::authorized);
                                             });
}

} // namespace platform
