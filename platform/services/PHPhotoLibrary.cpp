// SPDX-License-Identifier: MIT
#include "platform/services/PHPhotoLibrary.h"

#include "platform/dispatch/DispatchQueue.h"
#include "platform/services/PHPhotosAuthorization.h"
#include "platform/services/PHPhotosChanges_p.h"
#include "platform/services/PHPhotosError.h"

#include <utility>

namespace platform {

namespace {

Result<void> requireAccess()
{
    switch (PHPhotoLibrary::authorizationStatus(PHAccessLevel::addOnly)) {
    case PHAuthorizationStatus::authorized:
    case PHAuthorizationStatus::limited:
        return {};
    case PHAuthorizationStatus::restricted:
        return failure(PHPhotosError::accessRestricted);
    case PHAuthorizationStatus::notDetermined:
    case PHAuthorizationStatus::denied:
        break;
    }
    return failure(PHPhotosError::accessUserDenied);
}

} // namespace

const std::shared_ptr<PHPhotoLibrary>& PHPhotoLibrary::shared()
{
    // Never destroyed: its queue works until the process ends.
    static const auto& library = *new std::shared_ptr(std::make_shared<PHPhotoLibrary>(Token{}));
    return library;
}

PHPhotoLibrary::PHPhotoLibrary(Token)
    : queue_(DispatchQueue::make("org.zelk.photo-library"))
{
}

PHAuthorizationStatus PHPhotoLibrary::authorizationStatus(PHAccessLevel level)
{
    return PHPhotosAuthorization::shared().status(level);
}

void PHPhotoLibrary::requestAuthorization(PHAccessLevel level,
                                          std::function<void(PHAuthorizationStatus)> handler)
{
    PHPhotosAuthorization::shared().request(level, shared()->queue_, std::move(handler));
}

void PHPhotoLibrary::performChanges(std::function<void()> changes,
                                    std::function<void(bool, const std::optional<Error>&)> completion)
{
    queue_->async([changes = std::move(changes), completion = std::move(completion)] {
        auto requests = collectPhotosRequests(changes);
        auto done = requireAccess();
        if (done)
            done = carryOut(requests);
        if (completion)
            completion(done.has_value(), done ? std::nullopt : std::optional(done.error()));
    });
}

} // namespace platform
