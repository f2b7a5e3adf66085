// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/NSError.h"

#include <string_view>
#include <utility>

namespace platform {

inline constexpr std::string_view PHPhotosErrorDomain = "PHPhotosErrorDomain";

// Codes of PHPhotosErrorDomain that a photo library on the desktop can meet. The numbers are the platform's.
enum class PHPhotosError : long {
    internalError = -1,
    userCancelled = 3072,
    libraryVolumeOffline = 3114, // the library's folder is gone
    identifierNotFound = 3201,
    multipleIdentifiersFound = 3202,
    changeNotSupported = 3300, // the library is read-only
    invalidResource = 3302,
    missingResource = 3303,
    notEnoughSpace = 3305,
    requestNotSupportedForAsset = 3306,
    accessRestricted = 3310,
    accessUserDenied = 3311,
};

inline NSError nsError(PHPhotosError code, NSError::UserInfo userInfo = {})
{
    return NSError(PHPhotosErrorDomain, static_cast<long>(code), std::move(userInfo));
}

} // namespace platform
