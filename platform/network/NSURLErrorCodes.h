// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/NSError.h"

#include <string_view>

namespace platform {

class URL;

// Codes of NSURLErrorDomain that loads fail with. The numbers are the platform's.
inline constexpr long NSURLErrorUnknown = -1;
inline constexpr long NSURLErrorCancelled = -999;
inline constexpr long NSURLErrorBadURL = -1000;
inline constexpr long NSURLErrorTimedOut = -1001;
inline constexpr long NSURLErrorUnsupportedURL = -1002;
inline constexpr long NSURLErrorCannotFindHost = -1003;
inline constexpr long NSURLErrorCannotConnectToHost = -1004;
inline constexpr long NSURLErrorNetworkConnectionLost = -1005;
inline constexpr long NSURLErrorDNSLookupFailed = -1006;
inline constexpr long NSURLErrorHTTPTooManyRedirects = -1007;
inline constexpr long NSURLErrorResourceUnavailable = -1008;
inline constexpr long NSURLErrorNotConnectedToInternet = -1009;
inline constexpr long NSURLErrorRedirectToNonExistentLocation = -1010;
inline constexpr long NSURLErrorBadServerResponse = -1011;
inline constexpr long NSURLErrorZeroByteResource = -1014;
inline constexpr long NSURLErrorCannotDecodeRawData = -1015;
inline constexpr long NSURLErrorCannotParseResponse = -1017;
inline constexpr long NSURLErrorDataNotAllowed = -1020;
inline constexpr long NSURLErrorAppTransportSecurityRequiresSecureConnection = -1022;
inline constexpr long NSURLErrorDataLengthExceedsMaximum = -1103;
inline constexpr long NSURLErrorSecureConnectionFailed = -1200;
inline constexpr long NSURLErrorServerCertificateHasBadDate = -1201;
inline constexpr long NSURLErrorServerCertificateUntrusted = -1202;
inline constexpr long NSURLErrorCannotLoadFromNetwork = -2000;
inline constexpr long NSURLErrorCannotCreateFile = -3000;
inline constexpr long NSURLErrorCannotWriteToFile = -3003;

// Under which the error's user info has the URL that failed.
inline constexpr std::string_view NSURLErrorFailingURLStringErrorKey = "NSErrorFailingURLStringKey";

// The error of `code`, with what it means for people and the URL that failed.
NSError urlError(long code, const URL& url);

} // namespace platform
