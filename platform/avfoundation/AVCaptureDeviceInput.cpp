// SPDX-License-Identifier: MIT
#include "platform/avfoundation/AVCaptureDeviceInput.h"

#include "platform/avfoundation/AVError.h"

#include <utility>

namespace platform {

struct AVCaptureDeviceInput::Key { };

AVCaptureDeviceInput::AVCaptureDeviceInput(const Key&, std::shared_ptr<AVCaptureDevice> device)
    : device_(std::move(device))
{
}

Result<std::shared_ptr<AVCaptureDeviceInput>>
AVCaptureDeviceInput::make(std::shared_ptr<AVCaptureDevice> device)
{
    if (AVCaptureDevice::authorizationStatus(device->mediaType()) != AVAuthorizationStatus::authorized)
        return failure(AVError::applicationIsNotAuthorizedToUseDevice);
    if (!device->isConnected())
        return failure(AVError::deviceNotConnected);
    return std::make_shared<AVCaptureDeviceInput>(Key{}, std::move(device));
}

} // namespace platform
