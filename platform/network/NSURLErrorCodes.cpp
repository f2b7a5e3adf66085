// SPDX-License-Identifier: MIT
#include "platform/network/NSURLErrorCodes.h"

#include "platform/foundation/URL.h"

#include <string>

namespace platform {

namespace {

std::string description(long code)
{
    switch (code) {
    case NSURLErrorCancelled:
        return "cancelled";
    case NSURLErrorBadURL:
        return "bad URL";
    case NSURLErrorTimedOut:
        return "The request timed out.";
    case NSURLErrorUnsupportedURL:
        return "unsupported URL";
    case NSURLErrorCannotFindHost:
    case NSURLErrorDNSLookupFailed:
        return "A server with the specified hostname could not be found.";
    case NSURLErrorCannotConnectToHost:
        return "Could not connect to the server.";
    case NSURLErrorNetworkConnectionLost:
        return "The network connection was lost.";
    case NSURLErrorHTTPTooManyRedirects:
        return "too many HTTP redirects";
    case NSURLErrorResourceUnavailable:
        return "resource unavailable";
    case NSURLErrorNotConnectedToInternet:
        return "The Internet connection appears to be offline.";
    case NSURLErrorRedirectToNonExistentLocation:
        return "redirected to nowhere that can be loaded";
    case NSURLErrorBadServerResponse:
        return "There was a bad response from the server.";
    case NSURLErrorCannotDecodeRawData:
        return "cannot decode raw data";
    case NSURLErrorCannotParseResponse:
        return "cannot parse response";
    case NSURLErrorDataNotAllowed:
        return "A metered connection may not be used for this.";
    case NSURLErrorAppTransportSecurityRequiresSecureConnection:
        return "A secure connection may not lead on to an insecure one.";
    case NSURLErrorDataLengthExceedsMaximum:
        return "resource exceeds maximum size";
    case NSURLErrorSecureConnectionFailed:
        return "A secure connection to the server cannot be made.";
    case NSURLErrorServerCertificateHasBadDate:
        return "The certificate of the server has expired or is not yet valid.";
    case NSURLErrorServerCertificateUntrusted:
        return "The certificate for this server is invalid.";
    case NSURLErrorCannotCreateFile:
        return "Cannot create file";
    case NSURLErrorCannotWriteToFile:
        return "Cannot write to file";
    default:
        return "unknown error";
    }
}

} // namespace

NSError urlError(long code, const URL& url)
{
    return {NSURLErrorDomain,
            code,
            {{std::string(NSLocalizedDescriptionKey), description(code)},
             {std::string(NSURLErrorFailingURLStringErrorKey), url.absoluteString()}}};
}

} // namespace platform
