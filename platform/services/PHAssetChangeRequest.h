// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/NSObject.h"
#include "platform/foundation/URL.h"
#include "platform/services/PHAssetMediaType.h"

#include <memory>

namespace platform {

// A wish to change the photo library. Made inside a block of PHPhotoLibrary::performChanges, and carried out after it.
class PHAssetChangeRequest : public NSObject {
public:
    // A new photo, or video, with exactly the bytes of the file, which is looked at after the block; it must then be
    // what it is said to be. Requires: inside a block of changes.
    static std::shared_ptr<PHAssetChangeRequest> creationRequestForAssetFromImage(const URL& atFileURL);
    static std::shared_ptr<PHAssetChangeRequest> creationRequestForAssetFromVideo(const URL& atFileURL);

    PHAssetMediaType mediaType() const { return mediaType_; }
    const URL& fileURL() const { return fileURL_; }

private:
    struct Token { }; // makes the constructor ours alone, yet open to std::make_shared
    static std::shared_ptr<PHAssetChangeRequest> make(const URL& file, PHAssetMediaType type);

public:
    PHAssetChangeRequest(Token, URL file, PHAssetMediaType type);

private:
    // fixed after construction
    const URL fileURL_;
    const PHAssetMediaType mediaType_;
};

} // namespace platform
