// SPDX-License-Identifier: MIT
#include "platform/services/captureAlertQuestion.h"

#include "platform/foundation/Bundle.h"
#include "platform/services/PHPhotosText_p.h"
#include "platform/services/cameraText_p.h"
#include "platform/services/permissionAlert_p.h"

#include <utility>

namespace platform {

void AVCaptureAlertQuestion::ask(AVMediaType mediaType, Answer answer)
{
    using Status = UserPermissionStatus;
    auto isCamera = mediaType == AVMediaType::video;
    auto question = cameraText(isCamera ? CameraText::cameraQuestion : CameraText::microphoneQuestion);
    if (auto place = question.find("%@"); place != question.npos)
        question.replace(place, 2, programName());
    askInAlert(
        question,
        Bundle::main()->stringForInfoDictionaryKey(isCamera ? "NSCameraUsageDescription"
                                                            : "NSMicrophoneUsageDescription"),
        {{photosText(PHPhotosText::allow), Status::authorized},
         {photosText(PHPhotosText::refuse), Status::denied}},
        [answer = std::move(answer)](Status status) { answer(static_cast<AVAuthorizationStatus>(status)); });
}

void useCaptureAlertQuestion()
{
    auto& authorization = AVCaptureAuthorization::shared();
    if (!authorization.hasQuestion())
        authorization.setQuestion(std::make_shared<AVCaptureAlertQuestion>());
}

} // namespace platform
