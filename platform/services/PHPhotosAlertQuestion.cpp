// SPDX-License-Identifier: MIT
#include "platform/services/PHPhotosQuestion.h"

#include "platform/foundation/Bundle.h"
#include "platform/services/PHPhotosText_p.h"
#include "platform/services/permissionAlert_p.h"

#include <utility>
#include <vector>

namespace platform {

void PHPhotosAlertQuestion::ask(PHAccessLevel level, Answer answer)
{
    using Status = UserPermissionStatus;
    auto isAdding = level == PHAccessLevel::addOnly;
    auto question = isAdding ? PHPhotosText::addQuestion : PHPhotosText::accessQuestion;
    auto reason = Bundle::main()->stringForInfoDictionaryKey(isAdding ? "NSPhotoLibraryAddUsageDescription"
                                                                      : "NSPhotoLibraryUsageDescription");
    std::vector<PermissionChoice> choices;
    if (!isAdding)
        choices.push_back({photosText(PHPhotosText::limit), Status::limited});
    choices.push_back({photosText(PHPhotosText::allow), Status::authorized});
    choices.push_back({photosText(PHPhotosText::refuse), Status::denied});
    askInAlert(
        photosText(question, programName()), reason, choices,
        [answer = std::move(answer)](Status status) { answer(static_cast<PHAuthorizationStatus>(status)); });
}

} // namespace platform
