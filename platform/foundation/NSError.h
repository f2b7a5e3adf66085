// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Forward.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

// Domains of the port's own errors.
inline constexpr std::string_view NSCocoaErrorDomain = "NSCocoaErrorDomain";
inline constexpr std::string_view NSPOSIXErrorDomain = "NSPOSIXErrorDomain"; // codes are errno values
inline constexpr std::string_view NSURLErrorDomain = "NSURLErrorDomain";
inline constexpr std::string_view kCFErrorDomainCFNetwork = "kCFErrorDomainCFNetwork";

// Keys of an error's user info.
inline constexpr std::string_view NSLocalizedDescriptionKey = "NSLocalizedDescription";
inline constexpr std::string_view NSLocalizedFailureReasonErrorKey = "NSLocalizedFailureReason";
inline constexpr std::string_view NSLocalizedRecoverySuggestionErrorKey = "NSLocalizedRecoverySuggestion";
inline constexpr std::string_view NSHelpAnchorErrorKey = "NSHelpAnchor";
inline constexpr std::string_view NSFilePathErrorKey = "NSFilePath";

// Codes of NSCocoaErrorDomain. The numbers are the platform's.
enum class NSCocoaError : long {
    fileNoSuchFile = 4,
    fileReadUnknown = 256,
    fileReadNoPermission = 257,
    fileReadInvalidFileName = 258,
    fileReadCorruptFile = 259,
    fileReadNoSuchFile = 260,
    fileReadInapplicableStringEncoding = 261,
    fileReadUnsupportedScheme = 262,
    fileReadTooLarge = 263,
    fileReadUnknownStringEncoding = 264,
    fileWriteUnknown = 512,
    fileWriteNoPermission = 513,
    fileWriteInvalidFileName = 514,
    fileWriteFileExists = 516,
    fileWriteInapplicableStringEncoding = 517,
    fileWriteUnsupportedScheme = 518,
    fileWriteOutOfSpace = 640,
    fileWriteVolumeReadOnly = 642,
    userCancelled = 3072,
    propertyListReadCorrupt = 3840,
    propertyListWriteInvalid = 3852,
};

// Codes of NSURLErrorDomain that are told apart here. The numbers are the platform's.
enum class NSURLError : long {
    cancelled = -999,
    notConnectedToInternet = -1009,
};

// What went wrong, as a value: behaviour hangs on domain and code, the texts are for people.
// Copied freely; a copy may cross threads.
class NSError {
public:
    using UserInfo = std::map<std::string, std::string, std::less<>>;

    NSError(std::string_view domain, long code, UserInfo userInfo = {});
    NSError(NSCocoaError code, UserInfo userInfo = {});
    NSError(NSURLError code, UserInfo userInfo = {});

    const std::string& domain() const { return domain_; }
    long code() const { return code_; }
    const UserInfo& userInfo() const { return userInfo_; }

    // A sentence for people: the description given under NSLocalizedDescriptionKey, else the domain and
    // the code. Names files by their last path component only.
    std::string localizedDescription() const;
    // Why, without what: "Permission denied". Empty when nothing was given.
    std::string localizedFailureReason() const;
    // What the user might do about it; nothing when none was given, which is not the same as an empty one.
    std::optional<std::string> localizedRecoverySuggestion() const;

    // Domain and code; the texts do not count.
    friend bool operator==(const NSError& a, const NSError& b)
    {
        return a.code_ == b.code_ && a.domain_ == b.domain_;
    }

private:
    std::string domain_;
    long code_;
    UserInfo userInfo_;
};

} // namespace platform
