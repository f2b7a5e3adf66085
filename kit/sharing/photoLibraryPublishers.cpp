// SPDX-License-Identifier: MIT
#include "kit/sharing/photoLibraryPublishers.h"

#include "platform/dispatch/DispatchQueue.h"
#include "platform/foundation/ProcessInfo.h"
#include "platform/services/PHAssetChangeRequest.h"
#include "platform/services/PHPhotoLibrary.h"
#include "platform/services/PHPhotosError.h"

#include <optional>
#include <utility>

namespace zelk {

using namespace platform;

namespace {

// Before the library's errors had a domain of their own.
constexpr OperatingSystemVersion firstWithPhotosErrors{15};
constexpr long formerCode = 2047;

const Error& accessDenied()
{
    static const auto error = ProcessInfo::processInfo().isOperatingSystemAtLeast(firstWithPhotosErrors)
        ? Error(PHPhotosError::accessUserDenied)
        : Error(NSError(NSCocoaErrorDomain, formerCode));
    return error;
}

void finish(const Subscriber<Void>& subscriber, const std::optional<Error>& error)
{
    if (error)
        return subscriber.complete(Completion::failure(*error));
    subscriber.receive({});
    subscriber.complete(Completion::finished());
}

std::optional<Error> errorOf(PHAuthorizationStatus status)
{
    auto isAllowed = status == PHAuthorizationStatus::authorized || status == PHAuthorizationStatus::limited;
    return isAllowed ? std::nullopt : std::optional(accessDenied());
}

AnyPublisher<Void> onMainQueue(AnyPublisher<Void>::Source source)
{
    return AnyPublisher<Void>(std::move(source)).receiveOn([](auto work) {
        DispatchQueue::main()->async(std::move(work));
    });
}

} // namespace

AnyPublisher<Void> authorizationRequestPublisher(PHAccessLevel level)
{
    return onMainQueue([level](const Subscriber<Void>& subscriber) {
        auto status = PHPhotoLibrary::authorizationStatus(level);
        if (status == PHAuthorizationStatus::notDetermined)
            PHPhotoLibrary::requestAuthorization(
                level, [subscriber](PHAuthorizationStatus answer) { finish(subscriber, errorOf(answer)); });
        else
            finish(subscriber, errorOf(status));
        return AnyCancellable();
    });
}

AnyPublisher<Void> saveURL(const URL& url, AssetType assetType)
{
    return onMainQueue([url, assetType](const Subscriber<Void>& subscriber) {
        PHPhotoLibrary::shared()->performChanges(
            [url, assetType] {
                if (assetType == AssetType::image)
                    PHAssetChangeRequest::creationRequestForAssetFromImage(url);
                else
                    PHAssetChangeRequest::creationRequestForAssetFromVideo(url);
            },
            // Only an error counts as a failure, whatever the flag says.
            [subscriber](bool, const std::optional<Error>& error) { finish(subscriber, error); });
        return AnyCancellable();
    });
}

} // namespace zelk
