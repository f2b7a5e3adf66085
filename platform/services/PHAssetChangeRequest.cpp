// SPDX-License-Identifier: MIT
#include "platform/services/PHAssetChangeRequest.h"

#include "platform/services/PHPhotosChanges_p.h"

#include <utility>

namespace platform {

PHAssetChangeRequest::PHAssetChangeRequest(Token, URL file, PHAssetMediaType type)
    : fileURL_(std::move(file))
    , mediaType_(type)
{
}

std::shared_ptr<PHAssetChangeRequest> PHAssetChangeRequest::make(const URL& file, PHAssetMediaType type)
{
    auto request = std::make_shared<PHAssetChangeRequest>(Token{}, file, type);
    addPhotosRequest(request);
    return request;
}

std::shared_ptr<PHAssetChangeRequest>
PHAssetChangeRequest::creationRequestForAssetFromImage(const URL& atFileURL)
{
    return make(atFileURL, PHAssetMediaType::image);
}

std::shared_ptr<PHAssetChangeRequest>
PHAssetChangeRequest::creationRequestForAssetFromVideo(const URL& atFileURL)
{
    return make(atFileURL, PHAssetMediaType::video);
}

} // namespace platform
