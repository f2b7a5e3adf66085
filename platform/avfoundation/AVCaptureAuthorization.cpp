// SPDX-License-Identifier: MIT
#include "platform/avfoundation/AVCaptureAuthorization.h"

#include "platform/dispatch/DispatchQueue.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/Precondition.h"

#include <utility>

namespace platform {

namespace {

constexpr const char *cameraKey = "AVCaptureDevice.video", *microphoneKey = "AVCaptureDevice.audio";

} // namespace

AVCaptureAuthorization& AVCaptureAuthorization::shared()
{
    static auto& authorization = *new AVCaptureAuthorization; // queues may ask until the process ends
    return authorization;
}

AVCaptureAuthorization::AVCaptureAuthorization()
    : camera_({.key = cameraKey, .restriction = "CameraRestricted"})
    , microphone_({.key = microphoneKey, .restriction = "MicrophoneRestricted"})
{
}

AVAuthorizationStatus AVCaptureAuthorization::status(AVMediaType mediaType) const
{
    if (mediaType != AVMediaType::video && mediaType != AVMediaType::audio)
        return AVAuthorizationStatus::restricted;
    auto& permission = mediaType == AVMediaType::video ? camera_ : microphone_;
    return static_cast<AVAuthorizationStatus>(permission.status()); // the numbers are the same
}

void AVCaptureAuthorization::setStatus(AVAuthorizationStatus status, AVMediaType mediaType)
{
    precondition(mediaType == AVMediaType::video || mediaType == AVMediaType::audio,
                 "permission is given for pictures or for sound");
    (mediaType == AVMediaType::video ? camera_ : microphone_)
        .setStatus(static_cast<UserPermissionStatus>(status));
}

void AVCaptureAuthorization::request(AVMediaType mediaType,
                                     std::function<void(AVAuthorizationStatus)> handler)
{
    if (mediaType != AVMediaType::video && mediaType != AVMediaType::audio)
        return DispatchQueue::main()->async(
            [handler = std::move(handler)] { handler(AVAuthorizationStatus::restricted); });
    (mediaType == AVMediaType::video ? camera_ : microphone_)
        .request(
            DispatchQueue::main(),
            [handler = std::move(handler)](UserPermissionStatus status) {
                handler(static_cast<AVAuthorizationStatus>(status));
            },
            [this, mediaType](UserPermission::Answer answer) {
                if (!question_)
                    return answer(UserPermissionStatus::notDetermined);
                question_->ask(mediaType, [answer = std::move(answer)](AVAuthorizationStatus status) {
                    answer(static_cast<UserPermissionStatus>(status));
                });
            });
}

NSUserDefaults::Observation AVCaptureAuthorization::observe(std::function<void()> onChange)
{
    return NSUserDefaults::standardUserDefaults()->observe(
        [onChange = std::move(onChange)](const NSUserDefaults::ChangedKeys& keys) {
            if (keys.contains(cameraKey) || keys.contains(microphoneKey))
                onChange();
        });
}

void AVCaptureAuthorization::setQuestion(std::shared_ptr<AVCaptureQuestion> question)
{
    assertOnMainThread();
    question_ = std::move(question);
}

} // namespace platform
