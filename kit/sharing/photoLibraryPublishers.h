// SPDX-License-Identifier: MIT
#pragma once

#include "platform/combine/AnyPublisher.h"
#include "platform/foundation/URL.h"
#include "platform/services/PHAuthorizationStatus.h"

namespace zelk {

// What a file is to become in the photo library.
enum class AssetType {
    image,
    video,
};

// Streams of the user's photo library: one value and the end, or an error, on the main queue. Each subscription does its
// own work; cancelling one stops what it would deliver, not what the library has begun. Subscribe on any thread.

// Whether the program may use the library. The user is asked when a subscriber comes and nothing is known yet. Fails with
// accessUserDenied of PHPhotosErrorDomain on systems from 15 on, and with code 2047 of NSCocoaErrorDomain before, as the
// system was when the first one failed.
platform::AnyPublisher<platform::Void> authorizationRequestPublisher(platform::PHAccessLevel level);

// Makes a new photo or video from the file. Does not ask for access, which adding is enough of. Fails with the library's
// error (PHPhotoLibrary::performChanges).
platform::AnyPublisher<platform::Void> saveURL(const platform::URL& url, AssetType assetType);

} // namespace zelk
