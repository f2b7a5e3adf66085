// SPDX-License-Identifier: MIT
#include "platform/services/PHPhotosAuthorization.h"

#include "platform/dispatch/DispatchQueue.h"
#include "platform/dispatch/RunLoop.h"

#include <utility>

namespace platform {

PHPhotosAuthorization& PHPhotosAuthorization::shared()
{
    static auto& authorization = *new PHPhotosAuthorization; // queues may ask until the process ends
    return authorization;
}

PHPhotosAuthorization::PHPhotosAuthorization()
    : reading_(
          {.key = "PHPhotoLibrary.readWrite", .restriction = "PhotoLibraryRestricted", .canBeLimited = true})
    , adding_(
          {.key = "PHPhotoLibrary.addOnly", .restriction = "PhotoLibraryRestricted", .impliedBy = &reading_})
{
}

const UserPermission& PHPhotosAuthorization::of(PHAccessLevel level) const
{
    return level == PHAccessLevel::addOnly ? adding_ : reading_;
}

UserPermission& PHPhotosAuthorization::of(PHAccessLevel level)
{
    return level == PHAccessLevel::addOnly ? adding_ : reading_;
}

PHAuthorizationStatus PHPhotosAuthorization::status(PHAccessLevel level) const
{
    return static_cast<PHAuthorizationStatus>(of(level).status()); // the numbers are the same
}

void PHPhotosAuthorization::setStatus(PHAuthorizationStatus status, PHAccessLevel level)
{
    of(level).setStatus(static_cast<UserPermissionStatus>(status));
}

void PHPhotosAuthorization::setQuestion(std::shared_ptr<PHPhotosQuestion> question)
{
    assertOnMainThread();
    question_ = std::move(question);
}

void PHPhotosAuthorization::request(PHAccessLevel level, std::shared_ptr<DispatchQueue> queue,
                                    Handler handler)
{
    of(level).request(
        std::move(queue),
        [handler = std::move(handler)](UserPermissionStatus status) {
            handler(static_cast<PHAuthorizationStatus>(status));
        },
        [this, level](UserPermission::Answer answer) {
            auto question = question_ ? question_ : std::make_shared<PHPhotosAlertQuestion>();
            question->ask(level, [answer = std::move(answer)](PHAuthorizationStatus status) {
                answer(static_cast<UserPermissionStatus>(status));
            });
        });
}

} // namespace platform
