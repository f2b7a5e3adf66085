// SPDX-License-Identifier: MIT
#include "kit/foundation/errorClassification.h"

#include "platform/avfoundation/AVError.h"
#include "platform/foundation/ProcessInfo.h"
#include "platform/services/PHPhotosError.h"

#include <cerrno>
#include <string_view>

namespace zelk {

using namespace platform;

namespace {

// What the photo library gave for a refusal before it had a domain of its own.
constexpr long formerPhotosRefusal = 2047;

bool is(const Error& error, std::string_view domain, long code)
{
    return error.bridged().code() == code && error.bridged().domain() == domain;
}
bool is(const Error& error, NSCocoaError code)
{
    return is(error, NSCocoaErrorDomain, static_cast<long>(code));
}
bool is(const Error& error, PHPhotosError code)
{
    return is(error, PHPhotosErrorDomain, static_cast<long>(code));
}

bool photosHasItsOwnDomain()
{
    return ProcessInfo::processInfo().isOperatingSystemAtLeast({15});
}

} // namespace

bool isPhotosPermissionsError(const Error& error)
{
    if (photosHasItsOwnDomain())
        return is(error, PHPhotosError::accessUserDenied) || is(error, PHPhotosError::accessRestricted);
    return is(error, NSCocoaErrorDomain, formerPhotosRefusal);
}

bool isPhotosDiskIsFull(const Error& error)
{
    return photosHasItsOwnDomain() ? is(error, PHPhotosError::notEnoughSpace)
                                   : is(error, NSCocoaError::fileWriteOutOfSpace);
}

bool isAVFoundationDiskIsFull(const Error& error)
{
    return is(error, AVFoundationErrorDomain, static_cast<long>(AVError::diskFull));
}

bool isDiskOutOfSpace(const Error& error)
{
    return isPhotosDiskIsFull(error) || isAVFoundationDiskIsFull(error)
        || is(error, NSCocoaError::fileWriteOutOfSpace) || is(error, NSPOSIXErrorDomain, ENOSPC);
}

bool isNotConnectedToInternetError(const Error& error)
{
    constexpr auto offline = static_cast<long>(NSURLError::notConnectedToInternet);
    return is(error, NSURLErrorDomain, offline) || is(error, kCFErrorDomainCFNetwork, offline);
}

bool isUserCancelled(const Error& error)
{
    return is(error, NSCocoaError::userCancelled);
}

bool isURLCancelled(const Error& error)
{
    return is(error, NSURLErrorDomain, static_cast<long>(NSURLError::cancelled));
}

NSError userCancelled()
{
    return NSCocoaError::userCancelled;
}

} // namespace zelk
